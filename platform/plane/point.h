// Points, which are also vectors. A height is carried along; "in the plan" it does not count.
#pragma once

#include <cmath>

namespace plane {

struct Point {
    double x = 0, y = 0, z = 0;
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Point operator*(Point a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
inline Point crossProduct(Point a, Point b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Point a) {
    return std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z);
}

// The distance in the plan.
inline double distance(Point a, Point b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}
// The direction in the plan, from -pi to pi radians.
inline double direction(Point from, Point to) {
    return std::atan2(to.y - from.y, to.x - from.x);
}
// The point at a direction and distance in the plan, at the same height.
inline Point polar(Point from, double angle, double distance) {
    return {from.x + distance * std::cos(angle), from.y + distance * std::sin(angle), from.z};
}

}  // namespace plane
