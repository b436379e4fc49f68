// The vertices of polylines, of either kind.
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/frame.h"

namespace hostcad {

struct PolylinePoint {
    Point position;
    double bulge = 0;  // tangent of a quarter of the angle of the arc to the next vertex
};

struct PolylinePoints {
    std::vector<PolylinePoint> vertices;  // in the entity's own coordinates
    bool closed = false;
    bool inWorld = false;  // a 3D polyline: its coordinates are those of the world
};

// Of an LWPOLYLINE, or of a POLYLINE that is no mesh; no vertices for others. The control points of a
// smoothed polyline are left out.
PolylinePoints polylinePoints(const Drawing& drawing, ObjectId entity);

}  // namespace hostcad
