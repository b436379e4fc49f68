// How a source on a server is signed in to. The connect string that it was really opened with, password
// included, stays in Lisp symbols until the host ends, and is stored nowhere else: what is shown, printed or
// written is a DatabasePath, which has none.
#pragma once

#include <string>

#include "platform/dao/dao.h"
#include "platform/dao/database_path.h"

namespace norvane {

// A path that begins "ODBC;".
bool IsOdbcPath(const std::string& path);
// Whether an output database is there. One on a server counts as there.
bool IsOutputThere(const std::string& path);
// What Open needs as its connect string for a path: an empty one for a file.
dao::ConnectString OpenConnectString(const std::string& path);
// What a routine or a file has given, as a path. A password that stands in it is kept where OpenConnectString
// finds it.
dao::DatabasePath TakePassword(const std::string& given);
// Keeps the connect string, the name and the owner of the tables of a source that was opened by a path.
void RememberConnection(const CDaoDatabase& database, const std::string& path);
// Whom the tables of an open ODBC source belong to that are the user's own, upper case: the schema that its
// connect string names, or the user; "" when neither is known, and for files.
std::string TableOwner(const CDaoDatabase& database);

}  // namespace norvane
