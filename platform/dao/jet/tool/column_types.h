// The types of columns in CREATE TABLE and ALTER TABLE, in the words of Access and of SQL.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jet {

struct Definitions {
    // Those of the columns, in parentheses, with words for their types that SQLite's tables have, and without
    // the primary key.
    std::string columns;
    std::vector<std::string> primaryKey;  // the names of its columns; empty when there is none
};

// Reads the definitions of a table's columns, in parentheses. Throws for a type that Access has not, for a
// column without one (neither may become a memo unasked), and for a second primary key.
Definitions readDefinitions(std::string_view definitions);

}  // namespace jet
