#include "hostcad/geometry/linework.h"

#include <algorithm>
#include <utility>

#include "hostcad/geometry/polyline_points.h"
#include "hostcad/geometry/shape.h"

namespace hostcad {

namespace {

// The linework of a selection.
class LineworkReader {
  public:
    explicit LineworkReader(const Drawing& drawing) : drawing_(drawing) {}

    Linework read(const std::vector<ObjectId>& entities) {
        // Of ends that meet the first one counts: what has vertices of its own goes in front.
        for (ObjectId id : entities)
            if (drawing_.exists(id)) addExact(id);
        for (ObjectId id : entities)
            if (drawing_.exists(id)) addShape(id);
        return std::move(linework_);
    }

  private:
    bool isPolyline(ObjectId id) const {
        return drawing_.type(id) == "LWPOLYLINE" || drawing_.type(id) == "POLYLINE";
    }
    // Its arcs are arcs in the plan too.
    bool isFlat(ObjectId id) const {
        const Point normal = pointOf(drawing_.groups(id), 210, {0, 0, 1});
        return normal.x == 0 && normal.y == 0;
    }

    void addExact(ObjectId id) {
        const Groups groups = drawing_.groups(id);
        if (drawing_.type(id) == "LINE")
            linework_.pieces.emplace_back(pointOf(groups, 10), pointOf(groups, 11));
        else if (isPolyline(id) && isFlat(id))
            addPolyline(id);
    }

    void addPolyline(ObjectId id) {
        const PolylinePoints polyline = polylinePoints(drawing_, id);
        const size_t count = polyline.vertices.size();
        if (count < 2) return;
        const Frame frame =
            polyline.inWorld ? Frame{} : plane::extrusionFrame(pointOf(drawing_.groups(id), 210, {0, 0, 1}));
        std::vector<Point> places;
        for (const PolylinePoint& vertex : polyline.vertices) places.push_back(frame(vertex.position));
        const bool endsMeet = plane::distance(places.front(), places.back()) <= plane::kSamePlace;
        const auto first = static_cast<uint32_t>(linework_.pieces.size());
        for (size_t i = 0; i < count - (polyline.closed ? 0 : 1); ++i) {
            const double bulge = polyline.vertices[i].bulge;
            linework_.pieces.emplace_back(places[i], places[(i + 1) % count], frame.z.z < 0 ? -bulge : bulge);
        }
        if (polyline.closed || (endsMeet && count > 2))
            linework_.closed.push_back({first, static_cast<uint32_t>(linework_.pieces.size()) - first});
    }

    void addShape(ObjectId id) {
        constexpr std::string_view kCurves[] = {"ARC", "CIRCLE", "ELLIPSE", "SPLINE"};
        const bool isCurve =
            std::find(std::begin(kCurves), std::end(kCurves), drawing_.type(id)) != std::end(kCurves);
        if (!isCurve && !(isPolyline(id) && !isFlat(id))) return;
        shapeOf(drawing_, id, shape_);
        for (const Segment& segment : shape_.segments)
            linework_.pieces.emplace_back(segment.from, segment.to);
        for (const plane::Arc& arc : shape_.arcs) addArc(arc);
    }

    void addArc(const plane::Arc& arc) {
        if (arc.sweep < plane::kFullTurn - 1e-12) {
            linework_.pieces.emplace_back(arc.first(), arc.last(), plane::bulgeOf(arc.sweep));
            return;
        }
        const Point right = arc.first(), left = arc.at(arc.start + plane::kFullTurn / 2);
        linework_.pieces.emplace_back(right, left, 1);
        linework_.pieces.emplace_back(left, right, 1);
    }

    const Drawing& drawing_;
    Linework linework_;
    Shape shape_;
};

}  // namespace

Linework readLinework(const Drawing& drawing, const std::vector<ObjectId>& entities) {
    return LineworkReader(drawing).read(entities);
}

}  // namespace hostcad
