// What the window says about the entities that are selected.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

class LinkedRecords;

struct PropertyGroup {
    std::string caption;
    std::vector<std::pair<std::string, std::string>> values;
    std::vector<std::string> pictures{};  // files
};

// Of one entity its properties, the attributes of a block reference, the extended data of each application,
// and the record that it is linked to; of several their number by type; of none the drawing's.
std::vector<PropertyGroup> propertiesOf(const Drawing& drawing, const std::vector<ObjectId>& selected,
                                        const LinkedRecords& links);

}  // namespace hostcad
