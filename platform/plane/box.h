// Boxes along the axes, such as the extents of entities.
#pragma once

#include <algorithm>

#include "platform/plane/point.h"

namespace plane {

struct Box {
    double minX = 1, minY = 0, minZ = 0;
    double maxX = 0, maxY = 0, maxZ = 0;  // empty while max is below min

    bool empty() const { return maxX < minX; }
    double width() const { return maxX - minX; }
    double height() const { return maxY - minY; }
    Point centre() const { return {(minX + maxX) / 2, (minY + maxY) / 2, (minZ + maxZ) / 2}; }

    // Widens the box so far that it holds a point.
    void add(double x, double y, double z = 0) {
        if (empty()) {
            minX = maxX = x, minY = maxY = y, minZ = maxZ = z;
            return;
        }
        minX = std::min(minX, x), maxX = std::max(maxX, x);
        minY = std::min(minY, y), maxY = std::max(maxY, y);
        minZ = std::min(minZ, z), maxZ = std::max(maxZ, z);
    }
    void add(const Point& p) { add(p.x, p.y, p.z); }
    void add(const Box& other) {
        if (other.empty()) return;
        add(other.minX, other.minY, other.minZ);
        add(other.maxX, other.maxY, other.maxZ);
    }
};

// In the plan, of boxes that are not empty: they have a point in common, or one lies within the other. Edges
// belong to boxes.
inline bool meet(const Box& a, const Box& b) {
    return a.minX <= b.maxX && b.minX <= a.maxX && a.minY <= b.maxY && b.minY <= a.maxY;
}
inline bool isWithin(const Box& inner, const Box& outer) {
    return inner.minX >= outer.minX && inner.maxX <= outer.maxX && inner.minY >= outer.minY &&
           inner.maxY <= outer.maxY;
}

}  // namespace plane
