// Coordinate systems: of entities with an extrusion direction, and of blocks where they are inserted.
#pragma once

#include <cmath>

#include "platform/plane/point.h"

namespace plane {

// The axes and the origin of a coordinate system, in those of the world.
struct Frame {
    Point x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    Point origin;

    // A direction or point of this system in the world.
    Point direction(Point p) const { return x * p.x + y * p.y + z * p.z; }
    Point operator()(Point p) const { return direction(p) + origin; }
    // A system that is given in coordinates of this one.
    Frame operator*(const Frame& inner) const {
        return {direction(inner.x), direction(inner.y), direction(inner.z), (*this)(inner.origin)};
    }
};

inline Frame translation(Point to) {
    Frame frame;
    frame.origin = to;
    return frame;
}

// Turned about z, in radians, and scaled.
inline Frame turned(double angle, double scaleX, double scaleY, double scaleZ) {
    double c = std::cos(angle), s = std::sin(angle);
    return {{c * scaleX, s * scaleX, 0}, {-s * scaleY, c * scaleY, 0}, {0, 0, scaleZ}, {}};
}

// The system of an entity with an extrusion direction (group 210): its axes follow from the direction alone.
inline Frame extrusionFrame(Point normal) {
    double size = length(normal);
    if (!(size > 0) || (normal.x == 0 && normal.y == 0 && normal.z > 0)) return {};
    normal = normal * (1 / size);
    constexpr double kNearZ = 1.0 / 64;
    bool nearZ = std::abs(normal.x) < kNearZ && std::abs(normal.y) < kNearZ;
    Point x = crossProduct(nearZ ? Point{0, 1, 0} : Point{0, 0, 1}, normal);
    x = x * (1 / length(x));
    return {x, crossProduct(normal, x), normal, {}};
}

}  // namespace plane
