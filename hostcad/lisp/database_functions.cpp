// A look into databases.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "platform/dao/connect_string.h"
#include "platform/dao/dao.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

// What a source on a server is opened with. A program that has opened it before keeps the whole connect
// string, with the password, in the symbol "@" + what is behind "ODBC;DSN=" or "ODBC;".
dao::ConnectString connectString(Interpreter& lisp, const std::string& database) {
    std::string_view source = dao::sourceOf(database);
    Symbol* known = source.empty() ? nullptr : lisp.find("@" + std::string(source));
    return dao::ConnectString(known && known->value.isString() ? known->value.asString() : database);
}

// A condition for each pair of a field and the text that it must hold, without regard to case.
std::string conditions(const Value& pairs, bool onServer) {
    std::string all;
    for (Items item(pairs); !item.done(); item.next()) {
        if (!(*item).car().isString() || !(*item).cdr().isString())
            throw Error("bad argument type: pairs of field and value are needed");
        const std::string& field = (*item).car().asString();
        std::string value = text::replaceAll((*item).cdr().asString(), "'", "''");
        all += all.empty() ? " WHERE " : " AND ";
        all += onServer ? "UCASE([" + field + "]) = '" + text::upper(value) + "'"
                        : "[" + field + "] = '" + value + "'";
    }
    return all;
}

// (db:record database table '((field . value) ...)): the first record that holds the values, as a list of
// (field . text); nil when there is none. What the engine complains of is the result as a string. The
// database is a file or "ODBC;..."; nothing in it is changed.
Value record(Interpreter& lisp, const Arguments& a) {
    const std::string& database = a.string(0);
    const std::string& table = a.string(1);
    const bool onServer = dao::isConnectString(database);
    std::string statement = "SELECT * FROM [" + table + "]";
    statement += conditions(a.size() > 2 ? a[2] : Value(), onServer);
    try {
        CDaoDatabase opened;
        opened.Open(onServer ? "" : database, false, true,
                    onServer ? connectString(lisp, database) : dao::ConnectString());
        CDaoRecordset records(&opened);
        records.Open(dbOpenSnapshot, statement);
        if (records.IsEOF()) return {};
        ListBuilder list;
        for (int i = 0; i < records.GetFieldCount(); ++i) {
            CDaoFieldInfo field;
            records.GetFieldInfo(i, field);
            list.add(Value::pair(Value::string(field.name), Value::string(toText(records.GetFieldValue(i)))));
        }
        return list.take();
    } catch (const CDaoException& problem) {
        return Value::string(problem.description());
    }
}

}  // namespace

void defineDatabaseFunctions(Interpreter& lisp) {
    lisp.define("DB:RECORD", 2, 3, record);
}

}  // namespace hostcad::lisp
