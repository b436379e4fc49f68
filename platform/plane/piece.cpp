#include "platform/plane/piece.h"

#include <algorithm>
#include <cmath>

namespace plane {

namespace {

double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}
double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}

// The share of a sweep at which an arc passes a direction; nothing where it does not.
std::optional<double> shareOf(const Arc& arc, double angle) {
    if (!arc.covers(angle)) return {};
    const double ahead = withinTurn(angle - arc.start);
    // What is a little before the start comes out as nearly a full turn.
    if (ahead > arc.sweep) return ahead - arc.sweep < kFullTurn - ahead ? 1.0 : 0.0;
    return ahead / arc.sweep;
}

using Candidates = std::vector<Point>;

void crossLines(const Piece& a, const Piece& b, Candidates& found) {
    const Point along = a.to() - a.from(), other = b.to() - b.from(), between = b.from() - a.from();
    const double denominator = cross(along, other);
    if (denominator == 0) return;
    const double t = cross(between, other) / denominator, u = cross(between, along) / denominator;
    if (t >= 0 && t <= 1 && u >= 0 && u <= 1) found.push_back(a.from() + along * t);
}

// Points of a circle at an offset from a foot, to both sides of it. Within the tolerance of touching there is
// one, the foot itself.
void addPair(Point foot, Point direction, double squaredOffset, bool touches, Candidates& found) {
    if (touches) {
        found.push_back(foot);
    } else if (squaredOffset > 0) {
        const double offset = std::sqrt(squaredOffset);
        found.push_back(foot + direction * offset);
        found.push_back(foot - direction * offset);
    }
}

void crossLineAndArc(const Piece& line, const Arc& arc, double tolerance, Candidates& found) {
    Point along = line.to() - line.from();
    const double size = std::hypot(along.x, along.y);
    if (!(size > 0)) return;
    along = {along.x / size, along.y / size, 0};
    const Point toCentre = arc.centre - line.from();
    const double across = std::abs(cross(along, toCentre));
    const Point foot = line.from() + along * dot(along, toCentre);
    addPair(foot, along, (arc.radius - across) * (arc.radius + across),
            std::abs(arc.radius - across) <= tolerance, found);
}

void crossArcs(const Arc& a, const Arc& b, double tolerance, Candidates& found) {
    const Point between{b.centre.x - a.centre.x, b.centre.y - a.centre.y, 0};
    const double distance = std::hypot(between.x, between.y);
    // One circle: arcs that overlap have their ends on each other.
    if (distance + std::abs(a.radius - b.radius) <= tolerance || distance == 0) return;
    const Point along = between * (1 / distance);
    const double toFoot = (distance + (a.radius - b.radius) * ((a.radius + b.radius) / distance)) / 2;
    const bool touches = std::abs(distance - (a.radius + b.radius)) <= tolerance ||
                         std::abs(distance - std::abs(a.radius - b.radius)) <= tolerance;
    const double footOfTouch = toFoot < 0 ? -a.radius : a.radius;
    addPair(a.centre + along * (touches ? footOfTouch : toFoot), {-along.y, along.x, 0},
            (a.radius - toFoot) * (a.radius + toFoot), touches, found);
}

bool isOneOf(const std::vector<Point>& points, size_t first, Point p, double tolerance) {
    return std::any_of(points.begin() + static_cast<std::ptrdiff_t>(first), points.end(),
                       [&](const Point& q) { return distance(p, q) <= tolerance; });
}

bool samePlan(Point a, Point b) {
    return a.x == b.x && a.y == b.y;
}

bool runsAsOne(const Piece& a, const Piece& b) {
    return (samePlan(a.from(), b.from()) && samePlan(a.to(), b.to()) && a.bulge() == b.bulge()) ||
           (samePlan(a.from(), b.to()) && samePlan(a.to(), b.from()) && a.bulge() == -b.bulge());
}

}  // namespace

Piece::Piece(Point from, Point to, double bulge)
    : from_(from), to_(to), bulge_(bulge), arc_(bulge == 0 ? std::optional<Arc>() : arcOf(from, to, bulge)) {}

Point Piece::at(double share) const {
    if (!arc_) return from_ + (to_ - from_) * share;
    Point p = arc_->at(arc_->start + arc_->sweep * (bulge_ > 0 ? share : 1 - share));
    p.z = from_.z + (to_.z - from_.z) * share;
    return p;
}

double Piece::bulgeOf(double fromShare, double toShare) const {
    if (!arc_) return 0;
    if (fromShare == 0 && toShare == 1) return bulge_;
    if (fromShare == 1 && toShare == 0) return -bulge_;
    return plane::bulgeOf(sweepOf(bulge_) * (toShare - fromShare));
}

Piece::Nearest Piece::nearest(Point p) const {
    if (!arc_) {
        const Point along = to_ - from_;
        const double squared = dot(along, along);
        const double share = squared > 0 ? std::clamp(dot(p - from_, along) / squared, 0.0, 1.0) : 0;
        return {share, distance(p, from_ + along * share)};
    }
    if (const std::optional<double> share = shareOf(*arc_, direction(arc_->centre, p)))
        return {bulge_ > 0 ? *share : 1 - *share, std::abs(distance(arc_->centre, p) - arc_->radius)};
    const double toFrom = distance(p, from_), toTo = distance(p, to_);
    return toFrom <= toTo ? Nearest{0, toFrom} : Nearest{1, toTo};
}

Box Piece::box() const {
    Box box;
    box.add(from_), box.add(to_);
    if (arc_) arc_->addTo(box);
    return box;
}

void addMeetings(const Piece& a, const Piece& b, double tolerance, std::vector<Point>& points) {
    if (runsAsOne(a, b)) return;
    const size_t first = points.size();
    for (const Point& end : {a.from(), a.to()})
        if (b.nearest(end).distance <= tolerance) points.push_back(end);
    for (const Point& end : {b.from(), b.to()})
        if (a.nearest(end).distance <= tolerance && !isOneOf(points, first, end, tolerance))
            points.push_back(end);
    Candidates crossings;
    if (!a.arc() && !b.arc())
        crossLines(a, b, crossings);
    else if (!a.arc())
        crossLineAndArc(a, *b.arc(), tolerance, crossings);
    else if (!b.arc())
        crossLineAndArc(b, *a.arc(), tolerance, crossings);
    else
        crossArcs(*a.arc(), *b.arc(), tolerance, crossings);
    // A touching point may be as far away from both as the tolerance. Close to an end that is on both it is
    // that end: where pieces leave it in nearly the same direction, the crossing is not known any better.
    for (Point& p : crossings)
        if (a.nearest(p).distance <= 2 * tolerance && b.nearest(p).distance <= 2 * tolerance &&
            !isOneOf(points, first, p, 4 * tolerance)) {
            p.z = a.from().z;
            points.push_back(p);
        }
}

}  // namespace plane
