#include "hostcad/geometry/shape.h"

#include <numbers>

#include "hostcad/geometry/shape_builder.h"

namespace hostcad {

constexpr double kFullTurn = 2 * std::numbers::pi;

bool Arc::covers(double angle) const {
    constexpr double kSlack = 1e-9;  // radians; ends belong to the arc
    double ahead = std::fmod(angle - start, kFullTurn);
    if (ahead < 0) ahead += kFullTurn;
    return ahead <= sweep + kSlack || ahead >= kFullTurn - kSlack;
}

void Shape::clear() {
    segments.clear();
    endless.clear();
    arcs.clear();
    points.clear();
    areas.clear();
}

Box Shape::box() const {
    Box box;
    auto add = [&](Point p) { box.add(p.x, p.y, p.z); };
    for (const Segment& s : segments) add(s.from), add(s.to);
    for (const Point& p : points) add(p);
    for (const auto& area : areas)
        for (const Point& p : area) add(p);
    for (const Arc& arc : arcs) {
        add(arc.at(arc.start));
        add(arc.at(arc.start + arc.sweep));
        for (int quarter = 0; quarter < 4; ++quarter) {
            double angle = quarter * kFullTurn / 4;
            if (arc.covers(angle)) add(arc.at(angle));
        }
    }
    return box;
}

// --- Pieces -------------------------------------------------------------------------------------------

void ShapeBuilder::segment(const Frame& frame, Point from, Point to) {
    if (take()) shape_.segments.push_back({frame(from), frame(to)});
}

void ShapeBuilder::point(const Frame& frame, Point p) {
    if (take()) shape_.points.push_back(frame(p));
}

void ShapeBuilder::area(const Frame& frame, std::vector<Point> corners) {
    if (!take()) return;
    for (Point& p : corners) p = frame(p);
    shape_.areas.push_back(std::move(corners));
}

void ShapeBuilder::endless(const Frame& frame, Point from, Point direction, bool bothWays) {
    constexpr double kFar = 1e10;
    double size = length(direction);
    if (!(size > 0) || !take()) return;
    Point reach = direction * (kFar / size);
    shape_.endless.push_back({frame(bothWays ? from - reach : from), frame(from + reach)});
}

void ShapeBuilder::arc(const Frame& frame, Point center, double radius, double start, double sweep) {
    // An arc stays one if the plan shows its plane turned, mirrored or evenly scaled, and nothing else.
    constexpr double kEven = 1e-9;
    double xx = frame.x.x * frame.x.x + frame.x.y * frame.x.y;
    double yy = frame.y.x * frame.y.x + frame.y.y * frame.y.y;
    double xy = frame.x.x * frame.y.x + frame.x.y * frame.y.y;
    bool flat = frame.x.z == 0 && frame.y.z == 0;
    if (!flat || std::abs(xx - yy) > kEven * (xx + yy) || std::abs(xy) > kEven * (xx + yy))
        return ellipse(frame, center, {radius, 0, 0}, {0, radius, 0}, start, sweep);
    if (!take()) return;
    bool mirrored = frame.x.x * frame.y.y - frame.x.y * frame.y.x < 0;
    Point first = frame.direction({std::cos(start), std::sin(start), 0});
    Point last = frame.direction({std::cos(start + sweep), std::sin(start + sweep), 0});
    Point begin = mirrored ? last : first;
    shape_.arcs.push_back(
        {frame(center), std::abs(radius) * std::sqrt(xx), std::atan2(begin.y, begin.x), sweep});
}

void ShapeBuilder::ellipse(const Frame& frame, Point center, Point major, Point minor, double start,
                           double sweep) {
    constexpr int kChordsOfCircle = 64;
    int chords =
        std::max(2, static_cast<int>(std::ceil(kChordsOfCircle * std::min(sweep, kFullTurn) / kFullTurn)));
    auto at = [&](int i) {
        double t = start + sweep * i / chords;
        return center + major * std::cos(t) + minor * std::sin(t);
    };
    for (int i = 0; i < chords; ++i) segment(frame, at(i), at(i + 1));
}

void ShapeBuilder::bulge(const Frame& frame, Point from, Point to, double bulge) {
    double chord = std::hypot(to.x - from.x, to.y - from.y);
    if (std::abs(bulge) < 1e-12 || !(chord > 0) || !std::isfinite(bulge)) return segment(frame, from, to);
    // The centre lies on the perpendicular through the middle of the chord.
    double radius = chord * (1 + bulge * bulge) / (4 * std::abs(bulge));
    double offset = (1 - bulge * bulge) / (4 * bulge);
    Point center{(from.x + to.x) / 2 - offset * (to.y - from.y),
                 (from.y + to.y) / 2 + offset * (to.x - from.x), from.z};
    Point begin = bulge > 0 ? from : to;
    arc(frame, center, radius, std::atan2(begin.y - center.y, begin.x - center.x),
        4 * std::atan(std::abs(bulge)));
}

void ShapeBuilder::polyline(const Frame& frame, const std::vector<PolylinePoint>& vertices, bool closed) {
    if (vertices.size() == 1) point(frame, vertices[0].position);
    for (size_t i = 0; i + 1 < vertices.size(); ++i)
        bulge(frame, vertices[i].position, vertices[i + 1].position, vertices[i].bulge);
    if (closed && vertices.size() > 1)
        bulge(frame, vertices.back().position, vertices.front().position, vertices.back().bulge);
}

bool ShapeBuilder::take() {
    if (budget_ == 0) return false;
    --budget_;
    return true;
}

}  // namespace hostcad
