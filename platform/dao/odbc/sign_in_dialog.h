// The box that asks for what a connect string does not say: the data source, the user, the password.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/connect_string.h"

namespace dao::odbc {

// Number of the dialog, for scripts that answer it.
constexpr int kSignInDialog = 1601;

// Asks, with what the string says filled in, and puts the answers into it. reason: why the source could not
// be opened so far; "" for the first question. False when the person does not want to, or nobody is there.
bool askToSignIn(ConnectString& connect, const std::vector<std::string>& sources, const std::string& reason);

}  // namespace dao::odbc
