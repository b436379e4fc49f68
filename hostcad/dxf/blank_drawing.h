// New drawings.
#pragma once

#include <memory>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// A drawing without entities: layer 0, the standard styles and line types, model space and one sheet. R12 and
// R2000 are made as such; a later version is an R2000 drawing that will be saved in that version.
std::unique_ptr<Drawing> blankDrawing(DrawingVersion version = DrawingVersion::R2000);

}  // namespace hostcad
