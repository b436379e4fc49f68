// Arcs of circles in the plan, and the bulges that stand for them in polylines.
#pragma once

#include <optional>

#include "platform/plane/angle.h"
#include "platform/plane/box.h"
#include "platform/plane/point.h"

namespace plane {

// Counterclockwise from the start angle; a whole circle has the sweep of a full turn.
struct Arc {
    Point centre;
    double radius = 0, start = 0, sweep = 0;

    Point at(double angle) const { return polar(centre, angle, radius); }
    Point first() const { return at(start); }
    Point last() const { return at(start + sweep); }
    // Whether a direction from the centre is within the arc; the ends belong to it.
    bool covers(double angle) const;
    void addTo(Box& box) const;
};

// The bulge of a segment is the tangent of a quarter of its arc's sweep, positive where the arc runs
// counterclockwise from the segment's first end to its second, and 0 for a straight one.
double bulgeOf(double sweep);
// The sweep of a bulge's arc, with its sign.
double sweepOf(double bulge);
// The arc of a segment with a bulge, counterclockwise in either case. None where it is as good as straight,
// or its ends are one point.
std::optional<Arc> arcOf(Point from, Point to, double bulge);

}  // namespace plane
