#include "hostcad/geometry/shape.h"

#include "hostcad/geometry/shape_builder.h"

namespace hostcad {

void Shape::clear() {
    segments.clear();
    endless.clear();
    arcs.clear();
    points.clear();
    areas.clear();
}

Box Shape::box() const {
    Box box;
    for (const Segment& s : segments) box.add(s.from), box.add(s.to);
    for (const Point& p : points) box.add(p);
    for (const auto& area : areas)
        for (const Point& p : area) box.add(p);
    for (const Arc& arc : arcs) arc.addTo(box);
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
    int chords = std::max(2, static_cast<int>(std::ceil(kChordsOfCircle * std::min(sweep, plane::kFullTurn) /
                                                        plane::kFullTurn)));
    auto at = [&](int i) {
        double t = start + sweep * i / chords;
        return center + major * std::cos(t) + minor * std::sin(t);
    };
    for (int i = 0; i < chords; ++i) segment(frame, at(i), at(i + 1));
}

void ShapeBuilder::bulge(const Frame& frame, Point from, Point to, double bulge) {
    if (auto curve = plane::arcOf(from, to, bulge))
        arc(frame, curve->centre, curve->radius, curve->start, curve->sweep);
    else
        segment(frame, from, to);
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
