// Block definitions from other drawings.
#pragma once

#include <string>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// Makes a block of the model space of another drawing, with the layers, line types, styles, applications and
// blocks that it needs; what the target has of the same name stays as it is. The block may exist: its
// content is replaced. The number of entities that the target does not take.
int importAsBlock(Drawing& target, const Drawing& source, const std::string& name);

}  // namespace hostcad
