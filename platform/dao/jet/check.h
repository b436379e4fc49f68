// Looks for faults in the structure of a database.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/jet/database.h"

namespace jet {

// The faults, a sentence each; none for a sound file. Every page must have exactly one owner or be free,
// every row and every piece of a long value must be reached exactly once, every index must hold the keys of
// its table in their order, and all counts must be right.
std::vector<std::string> check(Database& database);

}  // namespace jet
