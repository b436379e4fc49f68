// What is selected and seen in the window, for a panel beside it.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

// The entities of which something is seen in the window, as it is now.
std::vector<EntityName> SeenEntities();
// Whether two lists have the same entities, in any order.
bool SameEntities(std::vector<EntityName> one, std::vector<EntityName> other);

}  // namespace norvane
