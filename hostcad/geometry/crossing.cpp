#include "hostcad/geometry/crossing.h"

#include <algorithm>

namespace hostcad {
namespace {

// Positive when c is left of the line from a to b.
double side(Point a, Point b, Point c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool inBoxOf(Point a, Point b, Point p) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

bool isOn(Point a, Point b, Point p) {
    return side(a, b, p) == 0 && inBoxOf(a, b, p);
}

bool boxesMeet(const Segment& s, const Segment& t) {
    return std::max(std::min(s.from.x, s.to.x), std::min(t.from.x, t.to.x)) <=
               std::min(std::max(s.from.x, s.to.x), std::max(t.from.x, t.to.x)) &&
           std::max(std::min(s.from.y, s.to.y), std::min(t.from.y, t.to.y)) <=
               std::min(std::max(s.from.y, s.to.y), std::max(t.from.y, t.to.y));
}

bool opposite(double a, double b) {
    return (a > 0 && b < 0) || (a < 0 && b > 0);
}

// The segments cross within both, not only at an end.
bool cross(const Segment& s, const Segment& t) {
    return opposite(side(s.from, s.to, t.from), side(s.from, s.to, t.to)) &&
           opposite(side(t.from, t.to, s.from), side(t.from, t.to, s.to));
}

bool meet(const Segment& s, const Segment& t) {
    if (!boxesMeet(s, t)) return false;
    return cross(s, t) || isOn(s.from, s.to, t.from) || isOn(s.from, s.to, t.to) ||
           isOn(t.from, t.to, s.from) || isOn(t.from, t.to, s.to);
}

bool meet(const Arc& arc, const Segment& s) {
    double dx = s.to.x - s.from.x, dy = s.to.y - s.from.y;
    double size = std::hypot(dx, dy);
    if (!(size > 0)) {
        return distance(arc.centre, s.from) == arc.radius && arc.covers(direction(arc.centre, s.from));
    }
    dx /= size, dy /= size;
    double cx = arc.centre.x - s.from.x, cy = arc.centre.y - s.from.y;
    double along = cx * dx + cy * dy;
    double across = cx * dy - cy * dx;
    double rest = arc.radius * arc.radius - across * across;
    if (rest < 0) return false;
    for (double t : {along - std::sqrt(rest), along + std::sqrt(rest)})
        if (t >= 0 && t <= size && arc.covers(std::atan2(t * dy - cy, t * dx - cx))) return true;
    return false;
}

// Calls test with each edge of a line or polygon until it says true.
template <class Test>
bool anyEdge(std::span<const Point> points, bool closed, Test test) {
    for (size_t i = 0; i + 1 < points.size(); ++i)
        if (test(Segment{points[i], points[i + 1]})) return true;
    return closed && points.size() > 1 && test(Segment{points.back(), points.front()});
}

bool meetsEdges(const Shape& shape, std::span<const Point> points, bool closed) {
    return anyEdge(points, closed, [&](const Segment& edge) {
        auto meets = [&](const Segment& s) { return meet(s, edge); };
        return std::any_of(shape.segments.begin(), shape.segments.end(), meets) ||
               std::any_of(shape.endless.begin(), shape.endless.end(), meets) ||
               std::any_of(shape.arcs.begin(), shape.arcs.end(),
                           [&](const Arc& arc) { return meet(arc, edge); }) ||
               std::any_of(shape.points.begin(), shape.points.end(),
                           [&](Point p) { return isOn(edge.from, edge.to, p); }) ||
               std::any_of(shape.areas.begin(), shape.areas.end(), [&](const auto& area) {
                   return anyEdge(area, true, meets) || containsPoint(area, edge.from);
               });
    });
}

Box boxOf(std::span<const Point> points) {
    Box box;
    for (const Point& p : points) box.add(p);
    return box;
}

}  // namespace

bool containsPoint(std::span<const Point> polygon, Point p) {
    bool inside = false;
    for (size_t i = 0; i < polygon.size(); ++i) {
        Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        if (isOn(a, b, p)) return true;
        if ((a.y > p.y) == (b.y > p.y)) continue;
        // The edge crosses the height of the point: left or right of it?
        if ((side(a, b, p) > 0) == (b.y > a.y)) inside = !inside;
    }
    return inside;
}

bool crossesFence(const Shape& shape, std::span<const Point> fence) {
    if (shape.endless.empty() && !meet(shape.box(), boxOf(fence))) return false;
    return meetsEdges(shape, fence, false);
}

bool touchesPolygon(const Shape& shape, std::span<const Point> polygon) {
    if (shape.endless.empty() && !meet(shape.box(), boxOf(polygon))) return false;
    if (meetsEdges(shape, polygon, true)) return true;
    // Nothing meets the edge, so each piece is inside as a whole or not at all.
    auto inside = [&](Point p) { return containsPoint(polygon, p); };
    auto beginsInside = [&](const Segment& s) { return inside(s.from); };
    return std::any_of(shape.segments.begin(), shape.segments.end(), beginsInside) ||
           std::any_of(shape.endless.begin(), shape.endless.end(), beginsInside) ||
           std::any_of(shape.arcs.begin(), shape.arcs.end(),
                       [&](const Arc& a) { return inside(a.first()); }) ||
           std::any_of(shape.points.begin(), shape.points.end(), inside) ||
           std::any_of(shape.areas.begin(), shape.areas.end(),
                       [&](const auto& a) { return !a.empty() && inside(a[0]); });
}

bool isInsidePolygon(const Shape& shape, std::span<const Point> polygon) {
    if (shape.empty() || !shape.endless.empty()) return false;
    if (!isWithin(shape.box(), boxOf(polygon))) return false;
    auto within = [&](const Segment& s) {
        return containsPoint(polygon, s.from) && containsPoint(polygon, s.to) &&
               !anyEdge(polygon, true, [&](const Segment& edge) { return cross(s, edge); });
    };
    auto arcWithin = [&](const Arc& arc) {
        constexpr int kChords = 64;
        for (int i = 0; i < kChords; ++i)
            if (!within({arc.at(arc.start + arc.sweep * i / kChords),
                         arc.at(arc.start + arc.sweep * (i + 1) / kChords)}))
                return false;
        return true;
    };
    return std::all_of(shape.segments.begin(), shape.segments.end(), within) &&
           std::all_of(shape.arcs.begin(), shape.arcs.end(), arcWithin) &&
           std::all_of(shape.points.begin(), shape.points.end(),
                       [&](Point p) { return containsPoint(polygon, p); }) &&
           std::all_of(shape.areas.begin(), shape.areas.end(), [&](const auto& area) {
               return !anyEdge(area, true, [&](const Segment& s) { return !within(s); });
           });
}

}  // namespace hostcad
