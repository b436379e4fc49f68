// The tables of a database that are the user's own.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

// Whether a table is one of the user's, neither the engine's own nor an attached one: 1 or 0. In an ODBC
// source whose TableOwner is known only the tables of that owner count.
int IsUserTable(const CDaoTableDefInfo& table, const CDaoDatabase& database);
// The names of the user's tables as they stand, in the order of the database.
std::vector<std::string> UserTables(const CDaoDatabase& database);
// Names compare without regard to case, and OWNER.TABLE also matches TABLE.
bool SameTable(const std::string& name, const std::string& wanted);
// The user's table of a name as it stands in the database; "" when there is none.
std::string FindUserTable(const CDaoDatabase& database, const std::string& name);
// A field of a table that is there, without regard to case; nothing when it has none of that name.
std::optional<CDaoFieldInfo> FindField(CDaoDatabase& database, const std::string& table,
                                       const std::string& name);

}  // namespace norvane
