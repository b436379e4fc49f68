#include "platform/dao/odbc/dialect.h"

#include <algorithm>

#include "platform/dao/odbc/wide_text.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

template <typename Number>
Number numberInfo(SQLHDBC connection, SQLUSMALLINT what, Number otherwise) {
    Number value = otherwise;
    return SQL_SUCCEEDED(SQLGetInfoW(connection, what, &value, sizeof value, nullptr)) ? value : otherwise;
}

Dialect::Folding foldingOf(SQLUSMALLINT identifierCase) {
    switch (identifierCase) {
        case SQL_IC_UPPER:
            return Dialect::Folding::kUpper;
        case SQL_IC_LOWER:
            return Dialect::Folding::kLower;
        case SQL_IC_SENSITIVE:
            return Dialect::Folding::kNone;
        default:
            return Dialect::Folding::kAnyCase;
    }
}

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

std::string folded(std::string_view name, Dialect::Folding folding) {
    if (folding == Dialect::Folding::kUpper) return text::upper(name);
    if (folding == Dialect::Folding::kLower) return text::lower(name);
    return std::string(name);
}

}  // namespace

std::string informationOf(SQLHDBC connection, SQLUSMALLINT what) {
    std::vector<SQLWCHAR> buffer(8192);
    auto room = static_cast<SQLSMALLINT>(buffer.size() * sizeof(SQLWCHAR));
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(SQLGetInfoW(connection, what, buffer.data(), room, &bytes)) || bytes <= 0) return "";
    return fromWide(buffer.data(),
                    std::min(buffer.size() - 1, static_cast<size_t>(bytes) / sizeof(SQLWCHAR)));
}

Dialect::Dialect(SQLHDBC connection) {
    quote = text::trim(informationOf(connection, SQL_IDENTIFIER_QUOTE_CHAR));
    folding = foldingOf(numberInfo<SQLUSMALLINT>(connection, SQL_IDENTIFIER_CASE, SQL_IC_MIXED));
    for (const std::string& words : {std::string(SQL_ODBC_KEYWORDS), informationOf(connection, SQL_KEYWORDS)})
        for (const std::string& word : text::split(words, ','))
            reserved.insert(text::upper(text::trim(word)));
    // Words that many servers reserve and no list tells.
    for (const char* word :
         {"ANALYSE",    "ANALYZE",      "ARRAY",    "DO",     "ILIKE",   "LIMIT",     "OFFSET",
          "PLACING",    "RETURNING",    "VARIADIC", "WINDOW", "LATERAL", "LOCALTIME", "LOCALTIMESTAMP",
          "ASYMMETRIC", "SYMMETRIC",    "FREEZE",   "ISNULL", "NOTNULL", "OVERLAPS",  "SIMILAR",
          "VERBOSE",    "CONCURRENTLY", "BINARY",   "INDEX",  "RENAME"})
        reserved.insert(word);
    scalarFunctions = numberInfo<SQLUINTEGER>(connection, SQL_STRING_FUNCTIONS, 0) & SQL_FN_STR_UCASE;
    owners = numberInfo<SQLUINTEGER>(connection, SQL_SCHEMA_USAGE, 0) & SQL_SU_TABLE_DEFINITION;
    oneStatement = numberInfo<SQLUSMALLINT>(connection, SQL_MAX_CONCURRENT_ACTIVITIES, 0) == 1;
    std::string server = text::upper(informationOf(connection, SQL_DBMS_NAME));
    postgres = text::startsWith(server, "POSTGRESQL");
    if (postgres) counter = "serial";
    if (text::startsWith(server, "SQLITE")) counter = "integer PRIMARY KEY AUTOINCREMENT";
    if (text::startsWith(server, "MYSQL") || text::startsWith(server, "MARIADB"))
        counter = "int AUTO_INCREMENT UNIQUE";
}

std::string Dialect::quoted(std::string_view name) const {
    return quote.empty() ? std::string(name) : inQuotes(name, quote);
}

bool Dialect::isPlain(std::string_view name) const {
    if (name.empty() || !isLetter(name.front())) return false;
    for (char c : name)
        if (!isLetter(c) && !(c >= '0' && c <= '9')) return false;
    return !reserved.contains(text::upper(name));
}

bool Dialect::understands(std::string_view written, std::string_view actual) const {
    if (!isPlain(written)) return false;
    if (folding == Folding::kAnyCase) return text::equalNoCase(written, actual);
    return folded(written, folding) == actual;
}

std::string Dialect::written(std::string_view actual) const {
    return understands(actual, actual) ? std::string(actual) : quoted(actual);
}

std::string Dialect::forNew(std::string_view name) const {
    // A reserved word is kept in the case in which the server would have a word.
    bool word = isPlain(name) || reserved.contains(text::upper(name));
    return word ? folded(name, folding) : std::string(name);
}

}  // namespace dao::odbc
