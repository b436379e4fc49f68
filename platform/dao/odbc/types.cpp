#include "platform/dao/odbc/types.h"

#include <sqlext.h>
#include <sqlucode.h>

#include "platform/dao/names.h"
#include "platform/dao/odbc/statement.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

constexpr long kLongestText = 255;
// Digits of the amounts of money that a field holds: 15 in front of the point, 4 behind.
constexpr long kMoneyDigits = 19;
constexpr int kMoneyDecimals = 4;

int numericType(const Column& column) {
    if (column.decimals == kMoneyDecimals && column.size == kMoneyDigits) return dbCurrency;
    if (column.decimals != 0 || column.size <= 0 || column.size > 9) return dbDouble;
    return column.size <= 4 ? dbInteger : dbLong;
}

bool isShort(const Column& column) {
    return column.size > 0 && column.size <= kLongestText;
}

int fieldType(const Column& column) {
    // Some drivers pass yes/no columns off as text.
    if (text::equalNoCase(column.typeName, "bool") || text::equalNoCase(column.typeName, "boolean"))
        return dbBoolean;
    switch (column.sqlType) {
        case SQL_BIT:
            return dbBoolean;
        case SQL_TINYINT:
        case SQL_SMALLINT:
            return dbInteger;
        case SQL_INTEGER:
            return dbLong;
        case SQL_BIGINT:
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return dbDouble;
        case SQL_REAL:
            return dbSingle;
        case SQL_NUMERIC:
        case SQL_DECIMAL:
            return numericType(column);
        case SQL_TYPE_DATE:
        case SQL_TYPE_TIME:
        case SQL_TYPE_TIMESTAMP:
        case SQL_DATE:
        case SQL_TIME:
        case SQL_TIMESTAMP:
            return dbDate;
        case SQL_GUID:
            return dbGUID;
        case SQL_BINARY:
        case SQL_VARBINARY:
            return isShort(column) ? dbBinary : dbLongBinary;
        case SQL_LONGVARBINARY:
            return dbLongBinary;
        case SQL_CHAR:
        case SQL_VARCHAR:
        case SQL_WCHAR:
        case SQL_WVARCHAR:
            return isShort(column) ? dbText : dbMemo;
        default:
            return dbMemo;
    }
}

// The types of a server that hold a field, the best first.
std::vector<SQLSMALLINT> candidates(const CDaoFieldInfo& field) {
    switch (field.type) {
        case dbBoolean:
            return {SQL_BIT, SQL_SMALLINT, SQL_INTEGER};
        case dbByte:
            return {SQL_TINYINT, SQL_SMALLINT, SQL_INTEGER};
        case dbInteger:
            return {SQL_SMALLINT, SQL_INTEGER};
        case dbLong:
            return {SQL_INTEGER, SQL_BIGINT, SQL_DECIMAL, SQL_NUMERIC};
        case dbCurrency:
            return {SQL_NUMERIC, SQL_DECIMAL, SQL_DOUBLE};
        case dbSingle:
            return {SQL_REAL, SQL_FLOAT, SQL_DOUBLE};
        case dbDouble:
            return {SQL_DOUBLE, SQL_FLOAT};
        case dbDate:
            return {SQL_TYPE_TIMESTAMP, SQL_TIMESTAMP};
        case dbBinary:
            return {SQL_VARBINARY, SQL_LONGVARBINARY};
        case dbLongBinary:
            return {SQL_LONGVARBINARY, SQL_VARBINARY};
        case dbMemo:
            return {SQL_WLONGVARCHAR, SQL_LONGVARCHAR, SQL_WVARCHAR, SQL_VARCHAR};
        case dbGUID:
            return {SQL_GUID, SQL_CHAR, SQL_WCHAR, SQL_VARCHAR, SQL_WVARCHAR};
        default:
            return {SQL_WVARCHAR, SQL_VARCHAR};
    }
}

long sizeOf(const CDaoFieldInfo& field) {
    constexpr long kGuidText = 38;  // with its braces
    if (field.type == dbGUID) return kGuidText;
    return field.size > 0 ? field.size : kLongestText;
}

}  // namespace

CDaoFieldInfo fieldOf(const Column& column) {
    CDaoFieldInfo field;
    // A column may have a name that could not be given here.
    field.name = "x";
    field.type = fieldType(column);
    field.size = column.size;
    if (column.counts) field.attributes = dbAutoIncrField;
    field = completed(field);
    field.name = column.name;
    // Whole numbers may be filled in by the server in ways that no driver tells.
    bool filledIn = column.counts || column.hasDefault || field.type == dbInteger || field.type == dbLong;
    field.required = !column.nullable && !filledIn;
    field.allowZeroLength = field.type == dbText || field.type == dbMemo;
    return field;
}

ServerTypes::ServerTypes(SQLHDBC connection, const Dialect& dialect) : counter_(dialect.counter) {
    Statement rows(connection);
    rows.ran(SQLGetTypeInfoW(rows.handle(), SQL_ALL_TYPES));
    while (rows.fetch()) {
        Type type;
        type.name = rows.text(1);
        type.sqlType = static_cast<SQLSMALLINT>(text::toLong(rows.text(2)));
        type.size = text::toLong(rows.text(3));
        type.parameters = rows.text(6);
        type.counts = rows.text(12) == "1";
        // Dates are those of a calendar on the wall, the same wherever they are read.
        if (type.name == "timestamptz") type.name = "timestamp";
        types_.push_back(std::move(type));
    }
}

const ServerTypes::Type* ServerTypes::find(SQLSMALLINT sqlType, bool counts) const {
    for (const Type& type : types_)
        if (type.sqlType == sqlType && type.counts == counts) return &type;
    return nullptr;
}

std::string ServerTypes::columnType(const CDaoFieldInfo& field) const {
    bool counts = field.attributes & dbAutoIncrField;
    if (counts && !counter_.empty()) return counter_;
    for (SQLSMALLINT candidate : candidates(field)) {
        const Type* type = find(candidate, counts);
        if (!type) continue;
        if (type->parameters.empty()) return type->name;
        if (field.type == dbCurrency && type->parameters.find(',') != std::string::npos)
            return type->name + text::format("(%ld,%d)", kMoneyDigits, kMoneyDecimals);
        bool sized = field.type == dbText || field.type == dbBinary || field.type == dbGUID;
        if (!sized) return type->name;
        if (type->size > 0 && type->size < sizeOf(field)) continue;
        return type->name + "(" + std::to_string(sizeOf(field)) + ")";
    }
    throw CDaoException("The server has no type for the field " + field.name + ".");
}

}  // namespace dao::odbc
