// What an entity covers in the plan: straight lines, arcs, points and filled polygons in world coordinates.
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/extents.h"
#include "hostcad/geometry/frame.h"
#include "platform/plane/arc.h"

namespace hostcad {

struct Segment {
    Point from, to;
};

using plane::Arc;

struct Shape {
    std::vector<Segment> segments;
    std::vector<Segment> endless;  // rays and construction lines, cut far away
    std::vector<Arc> arcs;
    std::vector<Point> points;
    std::vector<std::vector<Point>> areas;  // filled: texts by their boxes, solids

    bool empty() const {
        return segments.empty() && endless.empty() && arcs.empty() && points.empty() && areas.empty();
    }
    void clear();
    // The box round everything but endless lines.
    Box box() const;
};

// The shape of an entity. Straight lines and arcs are exact where their plane is that of the plan, other
// curves are chords, texts are boxes by the number of their characters, references the shapes of what they
// refer to. Empty for entities that the host does not know.
void shapeOf(const Drawing& drawing, ObjectId entity, Shape& shape);

}  // namespace hostcad
