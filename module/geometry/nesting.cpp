#include "module/geometry/nesting.h"

#include <algorithm>
#include <numeric>

#include "module/geometry/rings.h"
#include "platform/plane/box.h"

namespace norvane {

namespace {

using plane::Box;
using plane::Point;

enum class Place { kOutside, kOnEdge, kInside };

// Above 0 where c lies to the left of the way from a to b.
double side(Point a, Point b, Point c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool isOnSegment(Point a, Point b, Point p) {
    return side(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
}

Place placeOf(Point p, const Ring& ring) {
    bool inside = false;
    for (size_t i = 0, before = ring.size() - 1; i < ring.size(); before = i++) {
        const Point a = ring[before], b = ring[i];
        if (isOnSegment(a, b, p)) return Place::kOnEdge;
        // A ray to the right of the point passes through this side.
        if ((a.y > p.y) != (b.y > p.y) && (side(a, b, p) > 0) == (b.y > a.y)) inside = !inside;
    }
    return inside ? Place::kInside : Place::kOutside;
}

bool cross(Point a, Point b, Point c, Point d) {
    return (side(a, b, c) > 0) != (side(a, b, d) > 0) && (side(c, d, a) > 0) != (side(c, d, b) > 0) &&
           side(a, b, c) != 0 && side(a, b, d) != 0 && side(c, d, a) != 0 && side(c, d, b) != 0;
}

bool sidesCross(const Ring& a, const Ring& b) {
    for (size_t i = 0; i + 1 < a.size(); ++i)
        for (size_t k = 0; k + 1 < b.size(); ++k)
            if (cross(a[i], a[i + 1], b[k], b[k + 1])) return true;
    return false;
}

// No point outside, one at least inside, and no side through a side of the other.
bool liesWithin(const Ring& inner, const Ring& outer) {
    bool inside = false;
    for (size_t i = 0; i < inner.size(); ++i) {
        const Point next = inner[(i + 1) % inner.size()];
        for (const Point p : {Point(inner[i]), (inner[i] + next) * 0.5}) {
            const Place place = placeOf(p, outer);
            if (place == Place::kOutside) return false;
            inside = inside || place == Place::kInside;
        }
    }
    return inside && !sidesCross(inner, outer);
}

Box boxOf(const Ring& ring) {
    Box box;
    for (const Point& vertex : ring) box.add(vertex);
    return box;
}

}  // namespace

std::vector<int> EnclosingRings(std::span<const Ring> rings) {
    std::vector<Box> boxes;
    std::vector<double> areas;
    for (const Ring& ring : rings) {
        boxes.push_back(boxOf(ring));
        areas.push_back(PolygonArea(ring));
    }
    std::vector<size_t> order(rings.size());
    std::iota(order.begin(), order.end(), size_t{0});
    // From the left; what encloses another begins no further to the right than it.
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return boxes[a].minX != boxes[b].minX ? boxes[a].minX < boxes[b].minX : areas[a] > areas[b];
    });
    std::vector<int> enclosing(rings.size(), kNoRing);
    std::vector<size_t> open;  // those that reach as far to the right as the walk has come
    for (size_t ring : order) {
        std::erase_if(open, [&](size_t other) { return boxes[other].maxX < boxes[ring].minX; });
        for (size_t other : open) {
            const bool isCandidate = areas[other] > areas[ring] && plane::isWithin(boxes[ring], boxes[other]);
            const bool isSmaller =
                enclosing[ring] == kNoRing || areas[other] < areas[static_cast<size_t>(enclosing[ring])];
            if (isCandidate && isSmaller && liesWithin(rings[ring], rings[other]))
                enclosing[ring] = static_cast<int>(other);
        }
        open.push_back(ring);
    }
    return enclosing;
}

}  // namespace norvane
