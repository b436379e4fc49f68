// What the window says about the entities that are selected.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

struct PropertyGroup {
    std::string caption;
    std::vector<std::pair<std::string, std::string>> values;
};

// Of one entity its properties, the attributes of a block reference and the extended data of each
// application; of several their number by type; of none the drawing's.
std::vector<PropertyGroup> propertiesOf(const Drawing& drawing, const std::set<ObjectId>& selected);

}  // namespace hostcad
