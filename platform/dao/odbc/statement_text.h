// Statements as they come from the classes of dao.h, as a server has to have them.
//
// A name may stand in brackets, and is found without regard to case: each name of a table or column that the
// server would not take for the one that it has is replaced by that one, in quotes. Functions that have other
// names on some servers are put into escapes, {fn UCASE(PT_ID)}. Whatever else a statement holds stays as it
// is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/odbc/dialect.h"

namespace dao::odbc {

// What there is on a server.
class Catalogue {
  public:
    struct Table {
        std::string owner;  // "" where there are none
        std::string name;
        bool isView = false;
        bool needsOwner = false;  // the server would look for the bare name elsewhere
    };
    virtual ~Catalogue() = default;
    // A table by its name and, unless it is "", its owner, without regard to case; null when there is none.
    virtual const Table* find(std::string_view owner, std::string_view name) = 0;
    virtual const std::vector<std::string>& columnsOf(const Table& table) = 0;
};

struct ServerStatement {
    std::string sql;
    // Set when it is a SELECT of columns of this one table, so that its records are those of the table.
    const Catalogue::Table* table = nullptr;
};

// passThrough: text in double quotes is a name of the server's, and dates are its own affair. Otherwise such
// text is a literal unless it names a collation, and #2004-05-31# is a date.
ServerStatement translateForServer(std::string_view sql, const Dialect& dialect, Catalogue& catalogue,
                                   bool passThrough);

}  // namespace dao::odbc
