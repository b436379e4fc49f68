// What LIST says about an entity.
#pragma once

#include <string>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// Lines of text, each behind a line feed: type, layer, space, handle, geometry, extended data.
std::string listingOf(const Drawing& drawing, ObjectId entity);

}  // namespace hostcad
