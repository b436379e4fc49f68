// The types of columns in CREATE TABLE and ALTER TABLE, in the words of Access and of SQL.
#pragma once

#include <string>
#include <string_view>

namespace jet {

// The definitions of columns, in parentheses, with words for their types that SQLite's tables have. Throws
// for a type that Access has not, and for a column without one: neither may become a memo unasked.
std::string withKnownTypes(std::string_view definitions);

}  // namespace jet
