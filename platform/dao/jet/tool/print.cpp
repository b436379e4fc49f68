#include "platform/dao/jet/tool/print.h"

#include <charconv>
#include <cmath>
#include <ostream>

#include "platform/text/text.h"

namespace jet {
namespace {

std::string hex(const dao::Binary& bytes) {
    std::string out;
    for (unsigned char byte : bytes) out += text::format("%02X", byte);
    return out;
}

// Numbers and booleans as they stand; other values as text that is still to be quoted.
struct Printed {
    std::string text;
    bool quoted = false;
};

struct Print {
    Printed operator()(std::monostate) const { return {}; }
    Printed operator()(bool v) const { return {v ? "true" : "false"}; }
    Printed operator()(uint8_t v) const { return {std::to_string(v)}; }
    Printed operator()(int16_t v) const { return {std::to_string(v)}; }
    Printed operator()(int32_t v) const { return {std::to_string(v)}; }
    Printed operator()(float v) const { return {dao::exactText(v), !std::isfinite(v)}; }
    Printed operator()(double v) const { return {dao::exactText(v), !std::isfinite(v)}; }
    Printed operator()(dao::Currency v) const { return {dao::exactText(v)}; }
    Printed operator()(dao::Date v) const { return {dao::toText(Value(v)), true}; }
    Printed operator()(const std::string& v) const { return {v, true}; }
    Printed operator()(const dao::Binary& v) const { return {hex(v), true}; }
};

std::string csvQuoted(const std::string& s) {
    return "\"" + text::replaceAll(s, "\"", "\"\"") + "\"";
}

std::string jsonQuoted(const std::string& s) {
    std::string out = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\')
            out += std::string("\\") + c;
        else if (c >= 0 && c < 32)
            out += text::format("\\u%04X", c);
        else
            out += c;
    }
    return out + "\"";
}

std::string sizeText(const Column& column) {
    if (column.type == Type::kText || column.type == Type::kBinary)
        return "(" + std::to_string(column.size) + ")";
    if (column.type == Type::kDecimal)
        return "(" + std::to_string(column.precision) + ", " + std::to_string(column.scale) + ")";
    return "";
}

void printColumn(const Column& column, std::ostream& out) {
    out << "  " << column.name << "  " << typeName(column.type) << sizeText(column);
    if (column.autonumber) out << ", autonumber";
    if (column.required) out << ", required";
    bool isText = column.type == Type::kText || column.type == Type::kMemo;
    if (isText && !column.allowZeroLength) out << ", no zero length";
    if (!column.defaultValue.empty()) out << ", default " << column.defaultValue;
    if (!column.validationRule.empty()) out << ", rule " << column.validationRule;
    if (!column.validationText.empty()) out << ", \"" << column.validationText << "\"";
    out << "\n";
}

void printIndex(const Index& index, std::ostream& out) {
    out << (index.primary      ? "  primary key "
            : index.ofRelation ? "  relation "
                               : "  index ")
        << index.name << " (";
    for (size_t i = 0; i < index.columns.size(); ++i)
        out << (i ? ", " : "") << index.columns[i].column
            << (index.columns[i].ascending ? "" : " descending");
    out << ")" << (index.unique && !index.primary ? ", unique" : "")
        << (index.ignoreNulls ? ", ignores Null" : "") << "\n";
}

// Calls a function with each record of a table.
template <typename Visit>
void forEachRecord(Database& database, const std::string& table, Visit visit) {
    Database::Reading reading(database);
    std::shared_ptr<Records> records = database.records(table);
    std::vector<size_t> order = records->definition().userOrder();
    for (Walk walk(records); walk.next();) visit(*records, walk.view(), order);
}

}  // namespace

const char* typeName(Type type) {
    switch (type) {
        case Type::kBoolean:
            return "Yes/No";
        case Type::kByte:
            return "Byte";
        case Type::kInteger:
            return "Integer";
        case Type::kLong:
            return "Long";
        case Type::kCurrency:
            return "Currency";
        case Type::kSingle:
            return "Single";
        case Type::kDouble:
            return "Double";
        case Type::kDate:
            return "Date/Time";
        case Type::kBinary:
            return "Binary";
        case Type::kText:
            return "Text";
        case Type::kOle:
            return "OLE";
        case Type::kMemo:
            return "Memo";
        case Type::kGuid:
            return "GUID";
        case Type::kDecimal:
            return "Decimal";
        case Type::kLargeBinary:
            return "Large binary";
    }
    return "unknown";
}

void printTables(Database& database, std::ostream& out) {
    for (const TableInfo& table : database.tables()) {
        if (table.system) continue;
        out << table.name;
        if (table.linked) out << "  linked: " << table.connect;
        out << "\n";
    }
}

void printSchema(Database& database, const std::string& table, std::ostream& out) {
    Database::Reading reading(database);
    for (const TableInfo& info : database.tables()) {
        if (table.empty() ? info.system : !text::equalNoCase(info.name, table)) continue;
        out << info.name << "\n";
        if (info.linked) {
            out << "  linked: " << info.connect << "\n";
            continue;
        }
        for (const Column& column : database.columns(info.name)) printColumn(column, out);
        for (const Index& index : database.indexes(info.name)) printIndex(index, out);
    }
    if (!table.empty() && !database.hasTable(table)) throw Error("Cannot find the table " + table + ".");
}

void printText(Database& database, const std::string& table, std::ostream& out) {
    Database::Reading reading(database);
    std::shared_ptr<Records> records = database.records(table);
    std::string line;
    for (size_t column : records->definition().userOrder())
        line += (line.empty() ? "" : ",") + records->definition().columns[column].name;
    out << line << "\n";
    forEachRecord(database, table, [&](Records& of, const RowView& row, const std::vector<size_t>& order) {
        line.clear();
        for (size_t i = 0; i < order.size(); ++i) {
            if (i) line += ',';
            Printed value = std::visit(Print(), of.value(row, order[i]).content());
            line += value.quoted ? csvQuoted(value.text) : value.text;
        }
        line += '\n';
        out << line;
    });
}

void printJson(Database& database, const std::string& table, std::ostream& out) {
    forEachRecord(database, table, [&](Records& of, const RowView& row, const std::vector<size_t>& order) {
        std::string line;
        for (size_t column : order) {
            Value value = of.value(row, column);
            if (value.isNull()) continue;
            Printed printed = std::visit(Print(), value.content());
            line += (line.empty() ? "{" : ", ") + jsonQuoted(of.definition().columns[column].name) + ": " +
                    (printed.quoted ? jsonQuoted(printed.text) : printed.text);
        }
        out << (line.empty() ? "{" : line) << "}\n";
    });
}

void printRecords(CDaoDatabase& database, const std::string& sql, std::ostream& out) {
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, sql); !records.IsEOF(); records.MoveNext()) {
        for (int i = 0; i < records.GetFieldCount(); ++i) {
            Value value = records.GetFieldValue(i);
            std::string text = std::visit(Print(), value.content()).text;
            if (value.is<bool>()) text = value.get<bool>() ? "-1" : "0";
            // A real is told from a whole number.
            bool real = value.is<double>() || value.is<float>();
            if (real && text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
            out << (i ? "|" : "") << text;
        }
        out << "\n";
    }
}

}  // namespace jet
