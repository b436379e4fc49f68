// What differs between servers in the text of statements: names, functions, dates.
#pragma once

#include <sql.h>

#include <set>
#include <string>
#include <string_view>

namespace dao::odbc {

// Text that the driver tells of itself or its server; "" when it does not.
std::string informationOf(SQLHDBC connection, SQLUSMALLINT what);

struct Dialect {
    // What a server makes of a name without quotes.
    enum class Folding { kUpper, kLower, kNone, kAnyCase };

    Dialect() = default;
    explicit Dialect(SQLHDBC connection);

    std::string quote = "\"";  // round names; "" when there are no quotes
    Folding folding = Folding::kLower;
    std::set<std::string, std::less<>> reserved;  // words that are no names without quotes, in upper case
    bool scalarFunctions = true;                  // {fn UCASE(...)}
    bool owners = true;                           // tables belong to an owner
    bool oneStatement = false;                    // at a time, with all of its records read
    bool postgres = false;
    std::string counter;  // the type of a column that counts by itself, where no list tells it

    std::string quoted(std::string_view name) const;
    // Letters, digits and underscores, and no reserved word.
    bool isPlain(std::string_view name) const;
    // Whether the server takes a name without quotes for the one that it has.
    bool understands(std::string_view written, std::string_view actual) const;
    // A name that the server has, as statements write it: in quotes only where they are needed.
    std::string written(std::string_view actual) const;
    // A name for something new, as the server will have it: found again without quotes where it can be.
    std::string forNew(std::string_view name) const;
};

}  // namespace dao::odbc
