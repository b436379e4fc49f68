// Statements in the dialect of Access, as SQLite understands them.
//
// Names may stand in brackets, text in single or double quotes, dates between # signs; True, False, Yes and
// No are -1 and 0 in conditions; UCASE and LCASE are functions of the engine. A word that is no word of SQL
// is a name, so that a misspelt field is an error and never silently a text. TOP n, DISTINCTROW and Mod are
// known, and the patterns of LIKE with * and ? (% stands for * as well, _ for itself). A ? elsewhere is a
// parameter. COLLATE NOCASE may stand behind a value.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dao {

struct AccessStatement {
    bool select = false;
    std::string sql;  // the whole statement for SQLite
    size_t parameters = 0;

    // Set when a SELECT reads plain columns of one table, so that each of its records is a record of the
    // table.
    bool plain = false;
    std::string table;
    std::vector<std::string> columns;     // "*" alone for all
    std::string where;                    // "" for none
    std::string orderBy;                  // "" for none
    std::vector<std::string> equalities;  // columns that must equal a literal
    // What follows "SELECT columns" in a SELECT of other columns of the same records. condition: one more
    // that they must fulfil; "" for none.
    std::string fromClause(const std::string& condition = "") const;

    // Of an INSERT: its table, the columns that it names (none where it means all of them), and where in sql
    // their list belongs.
    std::string insertTable;
    std::vector<std::string> insertColumns;
    size_t insertColumnsAt = 0;
};

// Whether the columns of a plain SELECT are "*" alone.
bool isAllColumns(const std::vector<std::string>& columns);

// All throw a CDaoException for text that is no statement, translateSelect and translateChange for one of the
// other kind.
AccessStatement translateStatement(std::string_view sql);
AccessStatement translateSelect(std::string_view sql);
AccessStatement translateChange(std::string_view sql);
// The SELECT of all records of a table.
AccessStatement translateTable(std::string_view table);

// A validation rule of a field ("YES" Or "NO", >= 0 And < 100) as a condition of SQLite.
std::string translateRule(std::string_view rule, const std::string& field);
// The default of a field as an expression of SQLite.
std::string translateDefault(std::string_view expression, bool isText);

}  // namespace dao
