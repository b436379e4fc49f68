// How a source on a server is signed in to. The connect string that it was really opened with, password
// included, stays in Lisp symbols until the host ends, and is stored nowhere else: what is shown, printed or
// written is the path, which TakePassword has freed of it.
#pragma once

#include <string>

#include "platform/dao/dao.h"

namespace norvane {

// A path that begins "ODBC;".
bool IsOdbcPath(const std::string& path);
// What Open needs as its connect string for a path: "" for a file.
std::string OpenConnectString(const std::string& path);
// The path without a password that stands in it. The password is kept where OpenConnectString finds it.
std::string TakePassword(const std::string& path);
// Keeps the connect string, the name and the user of a source that was opened by a path.
void RememberConnection(const CDaoDatabase& database, const std::string& path);
// The user of an open ODBC source, upper case; "" when it is not known, and for files.
std::string ConnectionUser(const CDaoDatabase& database);

}  // namespace norvane
