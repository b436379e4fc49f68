// The linework of a drawing: the pieces that areas are made of.
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "platform/plane/areas.h"

namespace hostcad {

struct Linework {
    std::vector<plane::Piece> pieces;
    std::vector<plane::ClosedPolyline> closed;
};

// The lines, arcs, circles, polylines, ellipses and splines among some entities, in world coordinates;
// ellipses, splines and what is tilted as chords. Polylines whose ends meet are closed.
Linework readLinework(const Drawing& drawing, const std::vector<ObjectId>& entities);

}  // namespace hostcad
