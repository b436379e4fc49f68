#include "platform/dao/sqlite/statement.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "platform/dao/dao.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

std::string constraintError(int code, const std::string& message) {
    size_t colon = message.find(": ");
    std::string detail = colon == std::string::npos ? "" : message.substr(colon + 2);
    if (code == SQLITE_CONSTRAINT_CHECK) {
        std::string rule = ruleOfConstraint(detail);
        if (!rule.empty()) return "The value breaks the validation rule " + rule + ".";
        return "The value is too long, or of no length, or breaks a rule of the table (" + detail + ").";
    }
    if (code == SQLITE_CONSTRAINT_NOTNULL) return "The field " + detail + " must have a value.";
    if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY ||
        code == SQLITE_CONSTRAINT_ROWID)
        return "There is a record with this value of " + detail + " already.";
    return "The change breaks a rule of the table: " + message + ".";
}

// Errors of a statement: unknown names and wrong syntax.
std::string statementError(const std::string& message, const std::string& sql) {
    auto tail = [&](std::string_view prefix) { return message.substr(prefix.size()); };
    if (text::startsWith(message, "no such table: "))
        return "Cannot find the table " + tail("no such table: ") + ".";
    if (text::startsWith(message, "no such column: "))
        return "Cannot find the field " + tail("no such column: ") + ".";
    if (text::startsWith(message, "no such function: "))
        return "The function " + tail("no such function: ") + " is not known.";
    if (message.find("syntax error") != std::string::npos || message == "incomplete input")
        return "Syntax error (" + message + ") in the statement: " + sql;
    return "The database cannot do that: " + message + ".";
}

std::string errorText(sqlite3* db, const std::string& sql) {
    const char* file = sqlite3_db_filename(db, "main");
    std::string name = "\"" + std::string(file ? file : "") + "\"";
    std::string message = sqlite3_errmsg(db);
    int code = sqlite3_extended_errcode(db);
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return "The database " + name +
                   " is locked by another process. Please try again when it is free.";
        case SQLITE_READONLY:
            return "The database " + name + " cannot be changed: it is read-only.";
        case SQLITE_NOTADB:
            return "The file " + name + " is no database, or one of an unknown format.";
        case SQLITE_CORRUPT:
            return "The database " + name + " is damaged.";
        case SQLITE_FULL:
            return "The database " + name + " cannot grow: the disk is full.";
        case SQLITE_IOERR:
        case SQLITE_CANTOPEN:
        case SQLITE_PERM: {
            int reason = sqlite3_system_errno(db);
            return "The database " + name + " cannot be read or written" +
                   (reason ? std::string(": ") + std::strerror(reason) + "." : std::string("."));
        }
        case SQLITE_TOOBIG:
            return "The value is too large.";
        case SQLITE_CONSTRAINT:
            return constraintError(code, message);
        default:
            return statementError(message, sql);
    }
}

Variant storedValue(sqlite3_stmt* s, int column) {
    auto text = [&] {
        auto* begin = reinterpret_cast<const char*>(sqlite3_column_text(s, column));
        return std::string(begin ? begin : "", static_cast<size_t>(sqlite3_column_bytes(s, column)));
    };
    switch (sqlite3_column_type(s, column)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER: {
            int64_t number = sqlite3_column_int64(s, column);
            if (number >= std::numeric_limits<int32_t>::min() &&
                number <= std::numeric_limits<int32_t>::max())
                return Variant(static_cast<int32_t>(number));
            return Variant(static_cast<double>(number));
        }
        case SQLITE_FLOAT:
            return Variant(sqlite3_column_double(s, column));
        case SQLITE_BLOB: {
            auto* begin = static_cast<const unsigned char*>(sqlite3_column_blob(s, column));
            return Variant(Binary(begin, begin + sqlite3_column_bytes(s, column)));
        }
        default:
            return Variant(text());
    }
}

template <typename T>
bool fits(int64_t number) {
    return number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max();
}

struct Binder {
    sqlite3_stmt* s;
    int i;
    int operator()(std::monostate) const { return sqlite3_bind_null(s, i); }
    int operator()(bool v) const { return sqlite3_bind_int(s, i, v ? -1 : 0); }
    int operator()(uint8_t v) const { return sqlite3_bind_int(s, i, v); }
    int operator()(int16_t v) const { return sqlite3_bind_int(s, i, v); }
    int operator()(int32_t v) const { return sqlite3_bind_int(s, i, v); }
    int operator()(float v) const { return sqlite3_bind_double(s, i, static_cast<double>(v)); }
    int operator()(double v) const { return sqlite3_bind_double(s, i, v); }
    int operator()(Currency v) const {
        return sqlite3_bind_double(s, i, static_cast<double>(v.tenThousandths) / 10000.0);
    }
    int operator()(Date v) const {
        std::string t = dateAndTime(v);  // text that sorts
        return sqlite3_bind_text(s, i, t.c_str(), static_cast<int>(t.size()), SQLITE_TRANSIENT);
    }
    int operator()(const std::string& v) const {
        return sqlite3_bind_text64(s, i, v.data(), v.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int operator()(const Binary& v) const {
        return sqlite3_bind_blob64(s, i, v.data(), v.size(), SQLITE_STATIC);
    }
};

}  // namespace

void fail(sqlite3* db, const std::string& sql) {
    throw CDaoException(errorText(db, sql));
}

Statement::Statement(sqlite3* db, const std::string& sql) {
    if (sqlite3_prepare_v3(db, sql.c_str(), static_cast<int>(sql.size()), 0, &statement_, nullptr) !=
        SQLITE_OK)
        fail(db, sql);
}

void Statement::bind(int parameter, const Variant& value) {
    if (std::visit(Binder{statement_, parameter}, value.content()) != SQLITE_OK)
        fail(sqlite3_db_handle(statement_));
}

void Statement::bindAll(const std::vector<Variant>& values) {
    int parameter = 1;
    for (const Variant& value : values) bind(parameter++, value);
}

bool Statement::step() {
    int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    std::string error = errorText(sqlite3_db_handle(statement_), sqlite3_sql(statement_));
    reset();
    throw CDaoException(error);
}

void Statement::run() {
    Resetting resetting(*this);
    while (step()) {
    }
}

std::string Statement::text(int column) const {
    auto* begin = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return begin ? std::string(begin, static_cast<size_t>(sqlite3_column_bytes(statement_, column))) : "";
}

Variant Statement::value(int column, int fieldType) const {
    int stored = sqlite3_column_type(statement_, column);
    int64_t number = stored == SQLITE_INTEGER ? sqlite3_column_int64(statement_, column) : 0;
    bool numeric = stored == SQLITE_INTEGER || stored == SQLITE_FLOAT;
    switch (fieldType) {
        case dbBoolean:
            if (stored == SQLITE_INTEGER) return Variant(number != 0);
            break;
        case dbByte:
            if (stored == SQLITE_INTEGER && fits<uint8_t>(number))
                return Variant(static_cast<uint8_t>(number));
            break;
        case dbInteger:
            if (stored == SQLITE_INTEGER && fits<int16_t>(number))
                return Variant(static_cast<int16_t>(number));
            break;
        case dbSingle:
            if (numeric) return Variant(static_cast<float>(sqlite3_column_double(statement_, column)));
            break;
        case dbDouble:
            if (numeric) return Variant(sqlite3_column_double(statement_, column));
            break;
        case dbCurrency: {
            double amount = std::nearbyint(sqlite3_column_double(statement_, column) * 10000.0);
            if (numeric && std::fabs(amount) < 9.2e18) return Variant(Currency{static_cast<int64_t>(amount)});
            break;
        }
        case dbDate: {
            Date date;
            if (stored == SQLITE_TEXT && dateFromText(text(column), date)) return Variant(date);
            break;
        }
        case dbText:
        case dbMemo:
        case dbGUID:
            if (numeric) return Variant(text(column));
            break;
        default:
            break;
    }
    return storedValue(statement_, column);
}

}  // namespace dao::sqlite
