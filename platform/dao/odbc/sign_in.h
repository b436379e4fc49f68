// Connecting to the source of a connect string, with the questions that this may need.
#pragma once

#include <string>

#include "platform/dao/odbc/handles.h"

namespace dao::odbc {

// Connects, and gives the connect string that the source was really opened with, password included. A string
// that names no source, or whose password the server does not take, makes the sign-in box ask, if mayAsk.
// Throws a CDaoException in the driver's words, never with the password in them.
std::string signIn(const Handle& connection, const std::string& connect, bool mayAsk);

}  // namespace dao::odbc
