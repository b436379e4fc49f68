#include "hostcad/geometry/extents.h"

#include <cmath>
#include <numbers>

#include "hostcad/geometry/polyline_points.h"
#include "hostcad/geometry/shape.h"

namespace hostcad {

Box extentsOf(const Drawing& drawing, ObjectId entity) {
    Shape shape;
    shapeOf(drawing, entity, shape);
    return shape.box();
}

Box extentsOfBlock(const Drawing& drawing, ObjectId block, bool visibleOnly) {
    Box box;
    Shape shape;
    for (ObjectId id = drawing.firstEntityOf(block); id; id = drawing.nextEntityOf(block, id)) {
        if (visibleOnly && !isVisible(drawing, id)) continue;
        shapeOf(drawing, id, shape);
        box.add(shape.box());
    }
    return box;
}

bool isVisible(const Drawing& drawing, ObjectId entity) {
    constexpr int64_t kFrozen = 1;
    ObjectId layer = drawing.record("LAYER", textOf(drawing.groups(entity), 8, "0"));
    if (!layer) return true;
    Groups groups = drawing.groups(layer);
    return integerOf(groups, 62, 7) >= 0 && !(integerOf(groups, 70) & kFrozen);
}

double enclosedArea(const Drawing& drawing, ObjectId entity) {
    if (drawing.type(entity) == "CIRCLE") {
        double radius = realOf(drawing.groups(entity), 40);
        return std::numbers::pi * radius * radius;
    }
    std::vector<PolylinePoint> vertices = polylinePoints(drawing, entity).vertices;
    double twice = 0;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const auto& [a, bulge] = vertices[i];
        const Point& b = vertices[(i + 1) % vertices.size()].position;
        twice += a.x * b.y - b.x * a.y;
        // The piece between chord and arc.
        if (auto arc = plane::arcOf(a, b, bulge))
            twice += std::copysign(arc->radius * arc->radius * (arc->sweep - std::sin(arc->sweep)), bulge);
    }
    return std::abs(twice) / 2;
}

}  // namespace hostcad
