// Connecting to the source of a connect string, with the questions that this may need.
#pragma once

#include "platform/dao/connect_string.h"
#include "platform/dao/odbc/handles.h"

namespace dao::odbc {

// Connects, and gives the connect string that the source was really opened with: with what was asked for, and
// with the user and the schema that the source has by itself. A string that names no source, or whose
// password the server does not take, makes the sign-in box ask, if mayAsk. Throws a CDaoException in the
// driver's words, never with the password in them.
ConnectString signIn(const Handle& connection, ConnectString connect, bool mayAsk);

}  // namespace dao::odbc
