// What is wrong with linework and its labels before areas are linked.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"
#include "platform/plane/point.h"

namespace norvane {

struct AreaFault {
    plane::Point place;
    std::string text;  // "Label FAR at 900.00,900.00 in no area"
};

struct AreaFaults {
    bool isCancelled = false;
    std::vector<AreaFault> list;
};

// Looks through the linework and texts of a set, for gaps and ends up to a distance above 0. A host that
// cannot check areas finds nothing.
AreaFaults FindAreaFaults(const ads_name set, double distance);

// (gis:area-faults SET DISTANCE): the faults as lists of place and text; nil for none, "cancelled" when the
// person has pressed Escape.
void GiveAreaFaults(Call& call);

}  // namespace norvane
