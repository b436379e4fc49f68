// Vertices of polylines.
#pragma once

#include "platform/plane/point.h"

namespace plane {

struct PolylineVertex : Point {
    PolylineVertex() = default;
    PolylineVertex(Point at, double bulgeToNext = 0) : Point(at), bulge(bulgeToNext) {}
    double bulge = 0;  // of the segment to the next vertex
};

}  // namespace plane
