// The drawing that the host works on. There is always one: an empty one until a host takes
// its place, which begins with a blank drawing.
#pragma once

#include <memory>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

Drawing& currentDrawing();
// Takes the drawing over; the old one is gone, and with it all its names and selection sets.
void setCurrentDrawing(std::unique_ptr<Drawing> drawing);

}  // namespace hostcad
