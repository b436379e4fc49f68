#include "hostcad/geometry/label_spots.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "hostcad/geometry/frame.h"
#include "hostcad/geometry/polyline_points.h"
#include "hostcad/geometry/shape.h"
#include "platform/plane/angle.h"

namespace hostcad {
namespace {

using overlay::Placement;

constexpr double kFarAway = 1e15;  // beyond it coordinates have no digits left
constexpr double kArcStep = plane::kFullTurn / 32;

bool isMesh(const Drawing& drawing, ObjectId id) {
    constexpr int64_t kMeshes = 16 | 64;
    return drawing.type(id) == "POLYLINE" && integerOf(drawing.groups(id), 70) & kMeshes;
}

bool isClosed(const PolylinePoints& line) {
    if (line.vertices.size() < 3) return false;
    const Point& first = line.vertices.front().position;
    const Point& last = line.vertices.back().position;
    return line.closed || (first.x == last.x && first.y == last.y);
}

bool isClosed(const Shape& shape) {
    if (shape.segments.size() < 3) return false;
    const Point& first = shape.segments.front().from;
    const Point& last = shape.segments.back().to;
    const Box box = shape.box();
    return distance(first, last) <= 1e-9 * std::max(box.width(), box.height());
}

Placement placementOf(const Drawing& drawing, ObjectId id, const Shape& shape) {
    const std::string_view type = drawing.type(id);
    for (std::string_view area : {"CIRCLE", "HATCH", "SOLID", "TRACE", "3DFACE"})
        if (type == area) return Placement::Inside;
    if (type == "LWPOLYLINE" || (type == "POLYLINE" && !isMesh(drawing, id)))
        return isClosed(polylinePoints(drawing, id)) ? Placement::Inside : Placement::Along;
    if (type == "SPLINE" || type == "ELLIPSE") return isClosed(shape) ? Placement::Inside : Placement::Along;
    if (type == "LINE" || type == "ARC" || type == "LEADER") return Placement::Along;
    return Placement::Beside;
}

void addArc(const Arc& arc, bool isTurned, std::vector<Point>& points) {
    if (!(arc.sweep >= 0 && arc.sweep <= 2 * plane::kFullTurn)) return;
    const int steps = std::max(2, static_cast<int>(arc.sweep / kArcStep));
    for (int i = 0; i <= steps; ++i)
        points.push_back(arc.at(arc.start + arc.sweep * (isTurned ? steps - i : i) / steps));
}

// --- Areas -------------------------------------------------------------------------------------------------

struct Chord {
    double from = 0, to = 0;

    double length() const { return to - from; }
    double middle() const { return (from + to) / 2; }
};

// What is inside of edges, by the even-odd rule, and within a box.
class Area {
  public:
    Area(const Shape& shape, const Box& box) : box_(box) {
        edges_ = shape.segments;
        std::vector<Point> points;
        for (const Arc& arc : shape.arcs) {
            points.clear();
            addArc(arc, false, points);
            addLine(points);
        }
        for (std::vector<Point> corners : shape.areas) {
            if (!corners.empty()) corners.push_back(corners.front());
            addLine(corners);
        }
        // What is no number has no order.
        std::erase_if(edges_, [](const Segment& edge) {
            return !std::isfinite(edge.from.x + edge.from.y + edge.to.x + edge.to.y);
        });
    }

    // Points in the middle of the area: where it is wide, and far from its top and bottom. None where it has
    // no inside.
    bool findMiddle(LabelSpots& found) {
        constexpr int kLevels = 16;
        double best = 0;
        Point at;
        for (int level = 1; level < kLevels; ++level) {
            const double y = box_.minY + box_.height() * level / kLevels;
            for (const Chord& chord : chordsAt(y, true)) {
                const double score = chord.length() * std::min(level, kLevels - level);
                if (score <= best) continue;
                best = score;
                at = {chord.middle(), y};
            }
        }
        if (best <= 0) return false;
        // As far from one side as from the other: first up and down, then to the left and right.
        if (auto chord = chordRound(at.y, at.x, false)) at.y = chord->middle();
        const std::optional<Chord> across = chordRound(at.x, at.y, true);
        if (across) at.x = across->middle();
        const std::optional<Chord> upright = chordRound(at.y, at.x, false);
        found.spots[found.count++] = {at.x, at.y};
        if (upright) {
            found.spots[found.count++] = {at.x, (at.y + upright->to) / 2};
            found.spots[found.count++] = {at.x, (at.y + upright->from) / 2};
        }
        return true;
    }

  private:
    void addLine(const std::vector<Point>& points) {
        for (size_t i = 1; i < points.size(); ++i) edges_.push_back({points[i - 1], points[i]});
    }

    // What of a level (else upright) line through the plan is inside.
    const std::vector<Chord>& chordsAt(double at, bool isLevel) {
        crossings_.clear();
        for (const Segment& edge : edges_) {
            double a = edge.from.y, b = edge.to.y, from = edge.from.x, to = edge.to.x;
            if (!isLevel) std::swap(a, from), std::swap(b, to);
            // A corner belongs to one of its two edges.
            if ((a > at) != (b > at)) crossings_.push_back(from + (to - from) * (at - a) / (b - a));
        }
        chords_.clear();
        if (crossings_.size() % 2 != 0) return chords_;  // the edges have a gap
        std::sort(crossings_.begin(), crossings_.end());
        const double low = isLevel ? box_.minX : box_.minY, high = isLevel ? box_.maxX : box_.maxY;
        for (size_t i = 0; i + 1 < crossings_.size(); i += 2) {
            const Chord chord{std::max(low, crossings_[i]), std::min(high, crossings_[i + 1])};
            if (chord.length() > 0) chords_.push_back(chord);
        }
        return chords_;
    }

    std::optional<Chord> chordRound(double place, double at, bool isLevel) {
        for (const Chord& chord : chordsAt(at, isLevel))
            if (chord.from <= place && place <= chord.to) return chord;
        return {};
    }

    Box box_;
    std::vector<Segment> edges_;
    std::vector<double> crossings_;
    std::vector<Chord> chords_;
};

// --- Lines -------------------------------------------------------------------------------------------------

// The points of a line in their order, arcs as chords.
std::vector<Point> courseOf(const Drawing& drawing, ObjectId id, const Shape& shape) {
    std::vector<Point> points;
    const PolylinePoints line = polylinePoints(drawing, id);
    if (line.vertices.empty()) {
        for (const Segment& s : shape.segments) {
            if (points.empty()) points.push_back(s.from);
            points.push_back(s.to);
        }
        for (const Arc& arc : shape.arcs) addArc(arc, false, points);
        return points;
    }
    for (size_t i = 0; i < line.vertices.size(); ++i) {
        const auto& [at, bulge] = line.vertices[i];
        points.push_back(at);
        const bool isLast = i + 1 == line.vertices.size();
        if (isLast && !line.closed) break;
        const Point& next = line.vertices[isLast ? 0 : i + 1].position;
        if (auto arc = plane::arcOf(at, next, bulge))
            addArc(*arc, bulge < 0, points);
        else if (isLast)
            points.push_back(next);
    }
    if (!line.inWorld) {
        const Frame own = extrusionFrame(hostcad::pointOf(drawing.groups(id), 210, {0, 0, 1}));
        for (Point& p : points) p = own(p);
    }
    return points;
}

// Cuts a piece to what is within a box; false when nothing is.
bool cut(Point& a, Point& b, const Box& box) {
    const Point way = b - a, start = a;
    double from = 0, to = 1;
    auto cutBetween = [&](double at, double by, double low, double high) {
        if (by == 0) return low <= at && at <= high;
        const auto [enters, leaves] = std::minmax({(low - at) / by, (high - at) / by});
        from = std::max(from, enters), to = std::min(to, leaves);
        return from < to;
    };
    if (!cutBetween(a.x, way.x, box.minX, box.maxX) || !cutBetween(a.y, way.y, box.minY, box.maxY))
        return false;
    if (from > 0) a = start + way * from;
    if (to < 1) b = start + way * to;
    return true;
}

// The longest part of a line that is within a box without a break.
std::vector<Point> longestPart(const std::vector<Point>& points, const Box& box) {
    std::vector<Point> longest, part;
    double most = 0, length = 0;
    auto end = [&] {
        if (length > most) longest = part, most = length;
        part.clear();
        length = 0;
    };
    for (size_t i = 1; i < points.size(); ++i) {
        Point a = points[i - 1], b = points[i];
        if (!cut(a, b, box)) {
            end();
            continue;
        }
        if (part.empty()) part.push_back(a);
        part.push_back(b);
        length += distance(a, b);
        if (b.x != points[i].x || b.y != points[i].y) end();
    }
    end();
    return longest;
}

Point pointAt(const std::vector<Point>& points, const std::vector<double>& begun, double length) {
    const auto behind = std::upper_bound(begun.begin(), begun.end(), length);
    const size_t i = std::clamp<size_t>(static_cast<size_t>(behind - begun.begin()), 1, points.size() - 1);
    const double whole = begun[i] - begun[i - 1];
    const double part = whole > 0 ? (length - begun[i - 1]) / whole : 0;
    return points[i - 1] + (points[i] - points[i - 1]) * part;
}

// Text from one point to the other, or the other way round where it would be upside down.
LabelSpot spotAlong(Point at, Point from, Point to) {
    const double away = distance(from, to);
    if (!(away > 0)) return {at.x, at.y};
    double x = (to.x - from.x) / away, y = (to.y - from.y) / away;
    if (x < 0 || (x == 0 && y < 0)) x = -x, y = -y;
    return {at.x, at.y, static_cast<float>(x), static_cast<float>(y)};
}

bool findAlong(const std::vector<Point>& points, LabelSpots& found) {
    if (points.size() < 2) return false;
    std::vector<double> begun{0};
    for (size_t i = 1; i < points.size(); ++i)
        begun.push_back(begun.back() + distance(points[i - 1], points[i]));
    const double length = begun.back();
    if (!(length > 0) || !std::isfinite(length)) return false;
    // The direction of a fifth of the line: that of a small piece may be any.
    constexpr double kReach = 0.1;
    for (double part : {0.5, 0.25, 0.75}) {
        const Point at = pointAt(points, begun, part * length);
        const Point before = pointAt(points, begun, (part - kReach) * length);
        const Point behind = pointAt(points, begun, (part + kReach) * length);
        found.spots[found.count++] = spotAlong(at, before, behind);
    }
    return true;
}

}  // namespace

LabelSpots labelSpots(const Drawing& drawing, ObjectId entity, Placement wish, const Box& within) {
    LabelSpots found;
    Shape shape;
    shapeOf(drawing, entity, shape);
    Box box = shape.box();
    if (box.empty()) return found;
    for (double v : {box.minX, box.minY, box.maxX, box.maxY})
        if (!(std::abs(v) <= kFarAway)) return found;
    const bool isPart = !within.empty();
    if (isPart) {
        box.minX = std::max(box.minX, within.minX), box.maxX = std::min(box.maxX, within.maxX);
        box.minY = std::max(box.minY, within.minY), box.maxY = std::min(box.maxY, within.maxY);
    }
    found.hasPlace = true;
    const Placement own = placementOf(drawing, entity, shape);
    found.placement = wish == Placement::ByEntity ? own : wish;
    if (found.placement == Placement::Inside) {
        const bool hasInside = own == Placement::Inside && Area(shape, box).findMiddle(found);
        if (hasInside || isPart) return found;
        const Point centre = box.centre();
        found.spots[found.count++] = {centre.x, centre.y};
    } else if (found.placement == Placement::Along && own != Placement::Beside) {
        const std::vector<Point> course = courseOf(drawing, entity, shape);
        if (findAlong(isPart ? longestPart(course, box) : course, found) || isPart) return found;
        found.placement = Placement::Beside;
    } else {
        found.placement = Placement::Beside;
    }
    return found;
}

}  // namespace hostcad
