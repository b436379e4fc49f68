// Points: angles, distances, intersections.
#include <cmath>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "platform/plane/angle.h"

namespace hostcad::lisp {

namespace {

// From the x axis, counter-clockwise, from 0 up to a whole turn; heights do not count.
Value angle(Interpreter&, const Arguments& a) {
    Point from = a.point(0), to = a.point(1);
    return Value::real(plane::withinTurn(std::atan2(to.at[1] - from.at[1], to.at[0] - from.at[0])));
}

// In the plane unless both points have heights.
Value distance(Interpreter&, const Arguments& a) {
    Point from = a.point(0), to = a.point(1);
    double dz = from.dimensions == 3 && to.dimensions == 3 ? to.at[2] - from.at[2] : 0;
    return Value::real(std::hypot(to.at[0] - from.at[0], to.at[1] - from.at[1], dz));
}

Value polar(Interpreter&, const Arguments& a) {
    Point p = a.point(0);
    double radians = a.number(1), length = a.number(2);
    p.at[0] += length * std::cos(radians);
    p.at[1] += length * std::sin(radians);
    return Value::point(p.at, p.dimensions);
}

// Of the lines through two pairs of points; unless the last argument is nil, on both segments. Lines with
// heights must meet in space.
Value inters(Interpreter&, const Arguments& a) {
    Point p1 = a.point(0), p2 = a.point(1), p3 = a.point(2), p4 = a.point(3);
    bool onSegments = a.size() < 5 || a.has(4);
    double ux = p2.at[0] - p1.at[0], uy = p2.at[1] - p1.at[1];
    double vx = p4.at[0] - p3.at[0], vy = p4.at[1] - p3.at[1];
    double cross = ux * vy - uy * vx;
    constexpr double kParallel = 1e-14;
    if (std::abs(cross) <= kParallel * std::hypot(ux, uy) * std::hypot(vx, vy)) return {};
    double wx = p3.at[0] - p1.at[0], wy = p3.at[1] - p1.at[1];
    double t = (wx * vy - wy * vx) / cross, s = (wx * uy - wy * ux) / cross;
    constexpr double kSlack = 1e-10;
    auto isOn = [](double along) { return along >= -kSlack && along <= 1 + kSlack; };
    if (onSegments && (!isOn(t) || !isOn(s))) return {};
    double at[3] = {p1.at[0] + t * ux, p1.at[1] + t * uy, p1.at[2] + t * (p2.at[2] - p1.at[2])};
    bool inSpace = p1.dimensions == 3 && p2.dimensions == 3 && p3.dimensions == 3 && p4.dimensions == 3;
    if (!inSpace) return Value::point(at, 2);
    double other = p3.at[2] + s * (p4.at[2] - p3.at[2]);
    constexpr double kSameHeight = 1e-8;
    if (std::abs(other - at[2]) > kSameHeight * std::max(1.0, std::abs(other))) return {};
    return Value::point(at);
}

// Between world, user and display coordinates, which are one and the same here.
Value trans(Interpreter&, const Arguments& a) {
    Point p = a.point(0);
    return Value::point(p.at, p.dimensions);
}

}  // namespace

void defineGeometryFunctions(Interpreter& lisp) {
    lisp.define("ANGLE", 2, 2, angle);
    lisp.define("DISTANCE", 2, 2, distance);
    lisp.define("POLAR", 3, 3, polar);
    lisp.define("INTERS", 4, 5, inters);
    lisp.define("TRANS", 3, 4, trans);
}

}  // namespace hostcad::lisp
