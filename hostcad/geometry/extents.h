// Boxes round entities, in world coordinates.
#pragma once

#include "hostcad/drawing/drawing.h"
#include "platform/plane/box.h"

namespace hostcad {

using plane::Box;

// The box of an entity: exact for what consists of straight lines and arcs, that of the chords for other
// curves, estimated from the number of characters for texts. Empty for what has no place in the plane (RAY,
// XLINE, unknown entities).
Box extentsOf(const Drawing& drawing, ObjectId entity);
// All of a block or space; with visibleOnly without the entities on layers that are off or frozen.
Box extentsOfBlock(const Drawing& drawing, ObjectId block, bool visibleOnly = false);
// The layer of an entity is neither off nor frozen.
bool isVisible(const Drawing& drawing, ObjectId entity);

// The area that a polyline (light or of vertices) or circle encloses, an open one as if it were closed. 0 for
// others.
double enclosedArea(const Drawing& drawing, ObjectId entity);

}  // namespace hostcad
