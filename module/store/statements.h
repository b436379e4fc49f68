// Names in the statements that go to an engine.
#pragma once

#include <string>

#include "platform/dao/dao.h"

namespace norvane {

// A name in brackets. Throws a CDaoException for a name that has one: statements have no way to write it.
std::string BracketedName(const std::string& name);
// A name in statements: in brackets where it is more than letters, digits and underscores.
std::string StatementName(const std::string& name);
// The name of a table in statements: qualified with its owner in an ODBC source.
std::string QualifiedTable(const CDaoDatabase& database, const std::string& table);

}  // namespace norvane
