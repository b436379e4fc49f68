// The shapes of entities by their types.
#include <algorithm>
#include <tuple>

#include "hostcad/geometry/shape_builder.h"
#include "platform/plane/angle.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

constexpr int kDeepestNesting = 16;

std::vector<Point> pointsOf(Groups groups, int code) {
    std::vector<Point> points;
    for (const Group& group : groups)
        if (group.code == code) points.push_back(group.point());
    return points;
}

std::vector<double> realsOf(Groups groups, int code) {
    std::vector<double> values;
    for (const Group& group : groups)
        if (group.code == code) values.push_back(group.asReal());
    return values;
}

size_t characters(std::string_view s) {
    return static_cast<size_t>(std::count_if(s.begin(), s.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

// Widths of characters are not known without the font: most fonts are near this share of their height.
constexpr double kCharacterWidth = 0.9;

}  // namespace

void shapeOf(const Drawing& drawing, ObjectId entity, Shape& shape) {
    shape.clear();
    ShapeBuilder(drawing, shape).entity({}, entity);
}

void ShapeBuilder::entity(const Frame& frame, ObjectId id) {
    if (!take()) return;
    Groups groups = drawing_.groups(id);
    std::string_view type = drawing_.type(id);
    auto own = [&] { return frame * extrusionFrame(pointOf(groups, 210, {0, 0, 1})); };
    if (type == "LINE") {
        segment(frame, pointOf(groups, 10), pointOf(groups, 11));
    } else if (type == "POINT" || type == "SHAPE" || type == "TOLERANCE") {
        point(frame, pointOf(groups, 10));
    } else if (type == "CIRCLE") {
        arc(own(), pointOf(groups, 10), realOf(groups, 40), 0, plane::kFullTurn);
    } else if (type == "ARC") {
        double start = realOf(groups, 50) * plane::kDegree;
        arc(own(), pointOf(groups, 10), realOf(groups, 40), start,
            plane::sweepBetween(start, realOf(groups, 51) * plane::kDegree));
    } else if (type == "LWPOLYLINE" || type == "POLYLINE") {
        polylineEntity(frame, id);
    } else if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF") {
        text(own(), groups, type != "TEXT");
    } else if (type == "MTEXT") {
        paragraph(frame, groups);
    } else if (type == "INSERT") {
        reference(frame, id);
    } else if (type == "DIMENSION" || type == "ACAD_TABLE") {
        blockEntities(frame, textOf(groups, 2));
    } else if (type == "SOLID" || type == "TRACE") {
        Point third = pointOf(groups, 12);
        area(own(), {pointOf(groups, 10), pointOf(groups, 11), pointOf(groups, 13, third), third});
    } else if (type == "3DFACE") {
        Point third = pointOf(groups, 12);
        area(frame, {pointOf(groups, 10), pointOf(groups, 11), third, pointOf(groups, 13, third)});
    } else if (type == "ELLIPSE") {
        ellipseEntity(frame, groups);
    } else if (type == "SPLINE") {
        spline(frame, groups);
    } else if (type == "HATCH") {
        hatch(own(), groups);
    } else if (type == "LEADER") {
        std::vector<PolylinePoint> vertices;
        for (Point p : pointsOf(groups, 10)) vertices.push_back({p, 0});
        polyline(frame, vertices, false);
    } else if (type == "RAY" || type == "XLINE") {
        endless(frame, pointOf(groups, 10), pointOf(groups, 11), type == "XLINE");
    } else if (type == "VIEWPORT") {
        double w = realOf(groups, 40) / 2, h = realOf(groups, 41) / 2;
        Frame center = frame * translation(pointOf(groups, 10));
        polyline(center, {{{-w, -h, 0}}, {{w, -h, 0}}, {{w, h, 0}}, {{-w, h, 0}}}, true);
    } else if (type == "IMAGE") {
        image(frame, groups);
    }
}

void ShapeBuilder::polylineEntity(const Frame& frame, ObjectId id) {
    constexpr int64_t kMeshes = 16 | 64;
    Groups groups = drawing_.groups(id);
    if (drawing_.type(id) == "POLYLINE" && integerOf(groups, 70) & kMeshes) return mesh(frame, id);
    PolylinePoints points = polylinePoints(drawing_, id);
    Frame own = points.inWorld ? frame : frame * extrusionFrame(pointOf(groups, 210, {0, 0, 1}));
    polyline(own, points.vertices, points.closed);
}

void ShapeBuilder::mesh(const Frame& frame, ObjectId id) {
    constexpr int64_t kClosedM = 1, kClosedN = 32, kPolyface = 64, kVertexOfMesh = 64, kControlPoint = 16;
    std::vector<Point> vertices;
    std::vector<Groups> faces;
    for (ObjectId part = drawing_.firstPart(id); part; part = drawing_.nextPart(part)) {
        Groups groups = drawing_.groups(part);
        int64_t flags = integerOf(groups, 70);
        if (flags & kVertexOfMesh && !(flags & kControlPoint))
            vertices.push_back(pointOf(groups, 10));
        else if (!(flags & kVertexOfMesh))
            faces.push_back(groups);
    }
    Groups groups = drawing_.groups(id);
    int64_t flags = integerOf(groups, 70);
    if (flags & kPolyface) {
        for (Groups face : faces) {
            std::vector<PolylinePoint> corners;
            for (int code = 71; code <= 74; ++code) {
                int64_t index = std::abs(integerOf(face, code));
                if (index >= 1 && index <= std::ssize(vertices))
                    corners.push_back({vertices[static_cast<size_t>(index - 1)]});
            }
            polyline(frame, corners, true);
        }
        return;
    }
    int64_t rows = integerOf(groups, 73) > 0 ? integerOf(groups, 73) : integerOf(groups, 71);
    int64_t columns = integerOf(groups, 74) > 0 ? integerOf(groups, 74) : integerOf(groups, 72);
    if (rows < 1 || columns < 1 || rows > 32767 || columns > 32767 || rows * columns > std::ssize(vertices))
        return;
    auto at = [&](int64_t row, int64_t column) {
        return vertices[static_cast<size_t>(row * columns + column)];
    };
    for (int64_t r = 0; r < rows; ++r)
        for (int64_t c = 0; c < columns; ++c) {
            if (r + 1 < rows || flags & kClosedM) segment(frame, at(r, c), at((r + 1) % rows, c));
            if (c + 1 < columns || flags & kClosedN) segment(frame, at(r, c), at(r, (c + 1) % columns));
        }
}

void ShapeBuilder::ellipseEntity(const Frame& frame, Groups groups) {
    Point major = pointOf(groups, 11);
    Point normal = pointOf(groups, 210, {0, 0, 1});
    double size = length(normal);
    if (!(size > 0)) return;
    Point minor = crossProduct(normal * (1 / size), major) * realOf(groups, 40, 1);
    double start = realOf(groups, 41);
    ellipse(frame, pointOf(groups, 10), major, minor, start,
            plane::sweepBetween(start, realOf(groups, 42, plane::kFullTurn)));
}

void ShapeBuilder::text(const Frame& frame, Groups groups, bool attribute) {
    constexpr int64_t kInvisible = 1;
    enum Horizontal { Left, Center, Right, Aligned, Middle, Fit };
    if (attribute && integerOf(groups, 70) & kInvisible) return;
    double height = realOf(groups, 40);
    double width =
        static_cast<double>(characters(textOf(groups, 1))) * height * kCharacterWidth * realOf(groups, 41, 1);
    int64_t horizontal = integerOf(groups, 72);
    int64_t vertical = integerOf(groups, attribute ? 74 : 73);
    Point start = pointOf(groups, 10);
    double angle = realOf(groups, 50) * plane::kDegree;
    double left = 0, bottom = 0;
    if (horizontal == Aligned || horizontal == Fit) {
        Point second = pointOf(groups, 11, start);
        width = distance(start, second);
        angle = direction(start, second);
    } else if (horizontal != Left || vertical != 0) {
        start = pointOf(groups, 11, start);
        if (horizontal == Center || horizontal == Middle) left = -width / 2;
        if (horizontal == Right) left = -width;
        if (vertical == 2 || horizontal == Middle) bottom = -height / 2;
        if (vertical == 3) bottom = -height;
    }
    Frame at = frame * translation(start) * turned(angle, 1, 1, 1);
    area(at,
         {{left, bottom}, {left + width, bottom}, {left + width, bottom + height}, {left, bottom + height}});
}

void ShapeBuilder::paragraph(const Frame& frame, Groups groups) {
    constexpr double kLineSpacing = 5.0 / 3;
    double height = realOf(groups, 40);
    double limit = realOf(groups, 41);
    double lines = 0, widest = 0;
    // The text stands in groups 3 and, its end, 1. "\P" begins a new line.
    std::string all;
    for (const Group& group : groups)
        if (group.code == 3 || group.code == 1) all += group.text();
    for (const std::string& line : text::split(text::replaceAll(all, "\\P", "\n"), '\n')) {
        double width = static_cast<double>(characters(line)) * height * kCharacterWidth;
        lines += limit > 0 ? std::max(1.0, std::ceil(width / limit)) : 1;
        widest = std::max(widest, limit > 0 ? std::min(width, limit) : width);
    }
    double tall = height + (lines - 1) * height * kLineSpacing;
    int64_t attachment = std::clamp<int64_t>(integerOf(groups, 71, 1), 1, 9) - 1;
    double left = -widest * static_cast<double>(attachment % 3) / 2;
    double top = tall * static_cast<double>(attachment / 3) / 2;
    const Group* along = find(groups, 11);
    double angle = along ? std::atan2(along->y(), along->x()) : realOf(groups, 50) * plane::kDegree;
    Frame at = frame * translation(pointOf(groups, 10)) * turned(angle, 1, 1, 1);
    area(at, {{left, top - tall}, {left + widest, top - tall}, {left + widest, top}, {left, top}});
}

void ShapeBuilder::image(const Frame& frame, Groups groups) {
    Point corner = pointOf(groups, 10), size = pointOf(groups, 13);
    Point across = pointOf(groups, 11) * size.x, up = pointOf(groups, 12) * size.y;
    area(frame, {corner, corner + across, corner + across + up, corner + up});
}

void ShapeBuilder::reference(const Frame& frame, ObjectId id) {
    Groups groups = drawing_.groups(id);
    Frame at = frame * extrusionFrame(pointOf(groups, 210, {0, 0, 1})) * translation(pointOf(groups, 10)) *
               turned(realOf(groups, 50) * plane::kDegree, 1, 1, 1);
    Frame scale = turned(0, realOf(groups, 41, 1), realOf(groups, 42, 1), realOf(groups, 43, 1));
    int64_t columns = std::max<int64_t>(1, integerOf(groups, 70, 1)),
            rows = std::max<int64_t>(1, integerOf(groups, 71, 1));
    for (int64_t r = 0; r < rows && budget_ > 0; ++r)
        for (int64_t c = 0; c < columns && budget_ > 0; ++c) {
            Point step{static_cast<double>(c) * realOf(groups, 44),
                       static_cast<double>(r) * realOf(groups, 45), 0};
            take();
            blockEntities(at * translation(step) * scale, textOf(groups, 2));
        }
    for (ObjectId part = drawing_.firstPart(id); part; part = drawing_.nextPart(part)) entity(frame, part);
}

void ShapeBuilder::blockEntities(const Frame& frame, std::string_view name) {
    ObjectId block = drawing_.block(name);
    if (!block || drawing_.isSpace(block) || depth_ >= kDeepestNesting) return;
    ++depth_;
    Frame inner = frame * translation(pointOf(drawing_.groups(block), 10) * -1);
    for (ObjectId id = drawing_.firstPart(block); id && budget_ > 0; id = drawing_.nextPart(id)) {
        constexpr int64_t kConstant = 2;
        // Definitions of attributes do not show, unless their text is the same in every reference.
        if (drawing_.type(id) == "ATTDEF" && !(integerOf(drawing_.groups(id), 70) & kConstant)) continue;
        entity(inner, id);
    }
    --depth_;
}

// --- Splines ------------------------------------------------------------------------------------------

namespace {

// A point of a rational B-spline, by the recursion of its control points.
Point splinePoint(double t, size_t degree, const std::vector<double>& knots,
                  const std::vector<Point>& control, const std::vector<double>& weights) {
    size_t span = degree;
    while (span + 1 < control.size() && knots[span + 1] <= t) ++span;
    struct Weighted {
        Point p;
        double w;
    };
    std::vector<Weighted> d(degree + 1);
    for (size_t j = 0; j <= degree; ++j) {
        size_t i = span - degree + j;
        double w = weights.size() == control.size() ? weights[i] : 1;
        d[j] = {control[i] * w, w};
    }
    for (size_t r = 1; r <= degree; ++r)
        for (size_t j = degree; j >= r; --j) {
            size_t i = span - degree + j;
            double width = knots[i + degree - r + 1] - knots[i];
            double a = width > 0 ? (t - knots[i]) / width : 0;
            d[j] = {d[j - 1].p * (1 - a) + d[j].p * a, d[j - 1].w * (1 - a) + d[j].w * a};
        }
    return d[degree].w != 0 ? d[degree].p * (1 / d[degree].w) : d[degree].p;
}

}  // namespace

void ShapeBuilder::spline(const Frame& frame, Groups groups) {
    constexpr size_t kChordsOfSpan = 8, kHighestDegree = 25;
    std::vector<Point> control = pointsOf(groups, 10);
    std::vector<double> knots = realsOf(groups, 40), weights = realsOf(groups, 41);
    auto degree = static_cast<size_t>(std::clamp<int64_t>(integerOf(groups, 71, 3), 0, 1000));
    bool regular = degree >= 1 && degree <= kHighestDegree && control.size() > degree &&
                   knots.size() == control.size() + degree + 1 && std::is_sorted(knots.begin(), knots.end());
    std::vector<PolylinePoint> chords;
    if (regular) {
        double first = knots[degree], last = knots[control.size()];
        size_t count = kChordsOfSpan * (control.size() - degree);
        for (size_t i = 0; i <= count; ++i) {
            double t = first + (last - first) * static_cast<double>(i) / static_cast<double>(count);
            chords.push_back({splinePoint(t, degree, knots, control, weights)});
        }
    } else {
        std::vector<Point> fit = pointsOf(groups, 11);
        for (Point p : fit.empty() ? control : fit) chords.push_back({p});
    }
    polyline(frame, chords, false);
}

// --- Hatches ------------------------------------------------------------------------------------------

void ShapeBuilder::hatch(const Frame& frame, Groups groups) {
    // The boundary begins with the number of paths (91) and ends at the style (75). Each path begins with its
    // kind (92).
    auto isPath = [](const Group& g) { return g.code == 92; };
    auto first = std::find_if(groups.begin(), groups.end(), [](const Group& g) { return g.code == 91; });
    auto stop = std::find_if(first, groups.end(),
                             [](const Group& g) { return g.code == 75 || g.code >= kFirstXDataCode; });
    Frame plane = frame * translation({0, 0, pointOf(groups, 10).z});
    for (auto path = std::find_if(first, stop, isPath); path != stop;) {
        auto next = std::find_if(path + 1, stop, isPath);
        hatchPath(plane, Groups(path, next));
        path = next;
    }
}

void ShapeBuilder::hatchPath(const Frame& frame, Groups path) {
    constexpr int64_t kOfVertices = 2;
    if (path[0].asInteger() & kOfVertices) {
        std::vector<PolylinePoint> vertices;
        for (const Group& group : path) {
            if (group.code == 10)
                vertices.push_back({{group.x(), group.y(), 0}});
            else if (group.code == 42 && !vertices.empty())
                vertices.back().bulge = group.asReal();
        }
        return polyline(frame, vertices, true);
    }
    // Each edge begins with its type (72).
    auto isEdge = [](const Group& g) { return g.code == 72; };
    for (auto edge = std::find_if(path.begin(), path.end(), isEdge); edge != path.end();) {
        auto next = std::find_if(edge + 1, path.end(), isEdge);
        hatchEdge(frame, Groups(edge, next));
        edge = next;
    }
}

void ShapeBuilder::hatchEdge(const Frame& frame, Groups edge) {
    enum Type { Line = 1, CircularArc, EllipticArc, Spline };
    Point first = pointOf(edge, 10), second = pointOf(edge, 11);
    double start = realOf(edge, 50) * plane::kDegree, end = realOf(edge, 51) * plane::kDegree;
    // Clockwise edges give their angles mirrored.
    if (integerOf(edge, 73, 1) == 0) std::tie(start, end) = std::pair(-end, -start);
    switch (integerOf(edge, 72)) {
        case Line:
            return segment(frame, first, second);
        case CircularArc:
            return arc(frame, first, realOf(edge, 40), start, plane::sweepBetween(start, end));
        case EllipticArc:
            return ellipse(frame, first, second, crossProduct({0, 0, 1}, second) * realOf(edge, 40), start,
                           plane::sweepBetween(start, end));
        case Spline:
            return spline(frame, edge);
        default:
            return;
    }
}

}  // namespace hostcad
