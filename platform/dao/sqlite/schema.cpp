#include "platform/dao/sqlite/schema.h"

#include <algorithm>
#include <utility>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/statement.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

constexpr std::string_view kRulePrefix = "rule ", kTypePrefix = "type ";
constexpr const char* kKeyName = "fid";

}  // namespace

std::string declaredType(const CDaoFieldInfo& field) {
    switch (field.type) {
        case dbBoolean:
            return "BOOLEAN";
        case dbByte:
            return "TINYINT";
        case dbInteger:
            return "SMALLINT";
        case dbLong:
            return "INTEGER";
        case dbCurrency:
            return "CURRENCY";
        case dbSingle:
            return "FLOAT4";
        case dbDouble:
            return "DOUBLE";
        case dbDate:
            return "DATETIME";
        case dbBinary:
            return "BLOB(" + std::to_string(field.size) + ")";
        case dbLongBinary:
            return "BLOB";
        case dbGUID:
            return "TEXT_GUID";
        case dbMemo:
            return "TEXT";
        default:
            return "TEXT(" + std::to_string(field.size) + ")";
    }
}

namespace {

constexpr SqlDialect kDialect = {.doubleQuoted = SqlToken::kName, .backquotedNames = true, .comments = true};

using ColumnTokens = std::vector<SqlToken>;

// The definitions between the outer parentheses of CREATE TABLE, one list of tokens each. They point into the
// statement.
std::vector<ColumnTokens> splitDefinitions(const std::string& sql) {
    std::vector<ColumnTokens> definitions;
    int depth = 0;
    for (const SqlToken& t : sqlTokens(sql, kDialect)) {
        if (t.kind == SqlToken::kBlank) continue;
        if (t.isSymbol(")") && --depth == 0) break;
        if (depth == 1 && t.isSymbol(","))
            definitions.emplace_back();
        else if (depth >= 1)
            definitions.back().push_back(t);
        if (t.isSymbol("(") && ++depth == 1) definitions.emplace_back();
    }
    return definitions;
}

// The type that a constraint names; "" where the declared one is the field's own.
std::string namedType(const ColumnTokens& column) {
    for (size_t i = 0; i + 1 < column.size(); ++i)
        if (column[i].is("CONSTRAINT") && text::startsWith(column[i + 1].text, kTypePrefix))
            return column[i + 1].text.substr(kTypePrefix.size());
    return "";
}

// Whether a column is the key that a table of a GeoPackage must have, and no field.
bool isHiddenKey(const ColumnTokens& column) {
    std::string name = column.empty() ? "" : column[0].text;
    while (name.ends_with('_')) name.pop_back();
    auto has = [&](std::string_view word) {
        return std::any_of(column.begin() + 1, column.end(), [&](const auto& t) { return t.is(word); });
    };
    return name == kKeyName && has("AUTOINCREMENT") && has("NOT");
}

// A name for the key that no field has.
std::string hiddenKeyName(const std::vector<CDaoFieldInfo>& fields) {
    std::string name = kKeyName;
    while (findField(fields, name) >= 0) name += '_';
    return name;
}

// The nearest type that a GeoPackage has.
std::string geoPackageType(const CDaoFieldInfo& field) {
    switch (field.type) {
        case dbBoolean:  // True is -1 here and 1 there
        case dbByte:
            return "SMALLINT";
        case dbCurrency:
            return "DOUBLE";
        case dbSingle:
            return "FLOAT";
        case dbDate:
            return "TEXT";
        case dbGUID:
            return "TEXT(38)";
        default:
            return declaredType(field);
    }
}

// What the CHECKs of a column say about its field.
void readChecks(const ColumnTokens& column, CDaoFieldInfo& field) {
    field.allowZeroLength = isTextType(field.type);
    for (size_t i = 0; i < column.size(); ++i) {
        if (column[i].is("CONSTRAINT") && i + 2 < column.size() && column[i + 2].is("CHECK"))
            if (std::string rule = ruleOfConstraint(column[i + 1].text); !rule.empty())
                field.validationRule = rule;
        if (column[i].is("CHECK") && i + 7 < column.size() && column[i + 2].is("length") &&
            column[i + 6].is("BETWEEN") && column[i + 7].text == "1")
            field.allowZeroLength = false;
        if (column[i].is("AUTOINCREMENT")) field.attributes |= dbAutoIncrField;
    }
}

std::string storedSql(sqlite3* db, const std::string& table) {
    Statement s(db,
                "SELECT sql FROM sqlite_master WHERE name = ?1 COLLATE NOCASE AND type IN ('table', 'view')");
    Variant name(table);
    s.bind(1, name);
    if (!s.step()) noSuchTable(table);
    return s.text(0);
}

// DEFAULT 'NO' as the expression "NO"; numbers stay.
std::string defaultExpression(const std::string& sql) {
    if (sql.size() < 2 || sql.front() != '\'') return sql == "NULL" ? "" : sql;
    std::string content = text::replaceAll(std::string_view(sql).substr(1, sql.size() - 2), "''", "'");
    return inQuotes(content, "\"");
}

long sizeInType(std::string_view declared) {
    size_t open = declared.find('(');
    return open == std::string_view::npos ? 0 : text::toLong(declared.substr(open + 1));
}

}  // namespace

std::string columnDefinition(const CDaoFieldInfo& field, FileKind kind) {
    std::string name = quotedName(field.name);
    if (field.attributes & dbAutoIncrField) return name + " INTEGER PRIMARY KEY AUTOINCREMENT";
    std::string own = declaredType(field), type = kind == FileKind::kGeoPackage ? geoPackageType(field) : own;
    std::string out = name + " " + type;
    if (isTextType(field.type)) out += " COLLATE NOCASE";
    if (field.required) out += " NOT NULL";
    if (!field.defaultValue.empty())
        out += " DEFAULT " + translateDefault(field.defaultValue, isTextType(field.type));
    std::string size = std::to_string(field.size);
    if (field.type == dbText)
        out +=
            " CHECK(length(" + name + ") " + (field.allowZeroLength ? "<= " : "BETWEEN 1 AND ") + size + ")";
    else if (isTextType(field.type) && !field.allowZeroLength)
        out += " CHECK(length(" + name + ") BETWEEN 1 AND 1000000000)";
    if (!field.validationRule.empty())
        out += " CONSTRAINT " + quotedName(std::string(kRulePrefix) + field.validationRule) + " CHECK(" +
               translateRule(field.validationRule, field.name) + ")";
    if (type != own) out += " CONSTRAINT " + quotedName(std::string(kTypePrefix) + own) + " CHECK(1)";
    return out;
}

std::string createTableStatement(const std::string& table, const std::vector<CDaoFieldInfo>& fields,
                                 FileKind kind) {
    std::vector<std::string> columns;
    bool hasKey = std::any_of(fields.begin(), fields.end(),
                              [](const CDaoFieldInfo& field) { return field.attributes & dbAutoIncrField; });
    if (kind == FileKind::kGeoPackage && !hasKey)
        columns.push_back("\n  " + quotedName(hiddenKeyName(fields)) +
                          " INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL");
    for (const CDaoFieldInfo& field : fields) columns.push_back("\n  " + columnDefinition(field, kind));
    return "CREATE TABLE " + quotedName(table) + " (" + text::join(columns, ",") + "\n)";
}

std::string columnList(const std::vector<CDaoFieldInfo>& fields) {
    std::vector<std::string> columns;
    for (const CDaoFieldInfo& field : fields) columns.push_back(quotedName(field.name));
    return text::join(columns, ", ");
}

std::vector<CDaoFieldInfo> describeTable(sqlite3* db, const std::string& table) {
    std::string sql = storedSql(db, table);
    std::vector<ColumnTokens> definitions = splitDefinitions(sql);
    std::vector<CDaoFieldInfo> fields;
    Statement s(db, "PRAGMA table_xinfo(" + quotedName(table) + ")");
    while (s.step()) {
        if (s.integer(6) != 0) continue;  // hidden and computed columns
        CDaoFieldInfo field;
        field.name = s.text(1);
        ColumnTokens definition;
        for (const ColumnTokens& column : definitions)
            if (!column.empty() && column[0].text == field.name) definition = column;
        if (isHiddenKey(definition)) continue;
        std::string named = namedType(definition);
        typeOfColumn(named.empty() ? s.text(2) : named, field);
        // A column of another program may have a name that could not be given here.
        std::string name = std::exchange(field.name, "x");
        field = completed(field);
        field.name = name;
        field.required = s.integer(3) != 0;
        field.defaultValue = defaultExpression(s.text(4));
        field.ordinalPosition = static_cast<int>(fields.size());
        field.allowZeroLength = isTextType(field.type);
        if (!definition.empty()) readChecks(definition, field);
        fields.push_back(std::move(field));
    }
    return fields;
}

bool isOwnTable(sqlite3* db, const std::string& table, FileKind kind) {
    auto sameToken = [](const SqlToken& a, const SqlToken& b) {
        return a.kind == b.kind && a.text == b.text;
    };
    auto sameColumn = [&](const ColumnTokens& a, const ColumnTokens& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameToken);
    };
    std::string stored = storedSql(db, table),
                own = createTableStatement(table, describeTable(db, table), kind);
    std::vector<ColumnTokens> there = splitDefinitions(stored), wanted = splitDefinitions(own);
    return std::equal(there.begin(), there.end(), wanted.begin(), wanted.end(), sameColumn);
}

void typeOfColumn(std::string_view declared, CDaoFieldInfo& field) {
    // The first word that occurs in the type decides.
    static constexpr struct {
        std::string_view word;
        int type;
    } kTypes[] = {
        {"GUID", dbGUID},         {"BOOL", dbBoolean},      {"TINYINT", dbByte},   {"SMALLINT", dbInteger},
        {"INT", dbLong},          {"CURRENCY", dbCurrency}, {"MONEY", dbCurrency}, {"FLOAT4", dbSingle},
        {"FLOA", dbDouble},       {"DOUB", dbDouble},       {"REAL", dbDouble},    {"DEC", dbDouble},
        {"NUM", dbDouble},        {"DATE", dbDate},         {"TIME", dbDate},      {"BLOB", dbLongBinary},
        {"BINARY", dbLongBinary},
    };
    std::string type = text::upper(text::trim(declared));
    long size = sizeInType(type);
    bool sized = size > 0 && size <= 255;
    field.type = sized ? dbText : dbMemo;
    for (const auto& known : kTypes)
        if (type.find(known.word) != std::string::npos) {
            field.type = known.type == dbLongBinary && sized ? dbBinary : known.type;
            break;
        }
    field.size = field.type == dbText || field.type == dbBinary ? size : 0;
}

std::string ruleOfConstraint(std::string_view constraint) {
    return text::startsWith(constraint, kRulePrefix) ? std::string(constraint.substr(kRulePrefix.size()))
                                                     : "";
}

}  // namespace dao::sqlite
