#include "module/geometry/point_in_polygon.h"

#include <algorithm>

namespace norvane {

namespace {

using plane::Point;

constexpr double kOnEdge = 1e-6;

double distanceToEdge(Point p, Point from, Point to) {
    const double dx = to.x - from.x, dy = to.y - from.y;
    const double squared = dx * dx + dy * dy;
    const double along =
        squared > 0 ? std::clamp(((p.x - from.x) * dx + (p.y - from.y) * dy) / squared, 0.0, 1.0) : 0;
    return std::hypot(from.x + along * dx - p.x, from.y + along * dy - p.y);
}

}  // namespace

bool PointInPolygon(Point p, std::span<const plane::PolylineVertex> vertices) {
    if (vertices.empty()) return false;
    bool isInside = false;
    Point from = vertices.back();
    for (const Point& to : vertices) {
        if (distanceToEdge(p, from, to) < kOnEdge) return true;
        const Point &low = from.y < to.y ? from : to, &high = from.y < to.y ? to : from;
        // A ray to the left of the point passes through this edge; of its ends the lower one belongs to it.
        if (low.y <= p.y && p.y < high.y && low.x + (high.x - low.x) * (p.y - low.y) / (high.y - low.y) < p.x)
            isInside = !isInside;
        from = to;
    }
    return isInside;
}

}  // namespace norvane
