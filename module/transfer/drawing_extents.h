// Where the entities of the drawing stand.
#pragma once

#include "platform/plane/box.h"

namespace norvane {

// A box in the plan round the points by which the entities of model space are placed: enough to tell whether
// something else is anywhere near. Empty for an empty drawing.
plane::Box DrawingExtents();

}  // namespace norvane
