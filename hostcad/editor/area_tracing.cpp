#include "hostcad/editor/area_tracing.h"

#include <algorithm>
#include <vector>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "hostcad/geometry/polyline_points.h"
#include "hostcad/geometry/shape.h"
#include "hostcad/lisp/arguments.h"
#include "platform/ads/entities.h"
#include "platform/plane/areas.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

using plane::Piece;
using plane::Ring;

// The linework of a selection.
class LineworkReader {
  public:
    explicit LineworkReader(const Drawing& drawing) : drawing_(drawing) {}

    std::vector<Piece> pieces;
    std::vector<plane::ClosedPolyline> closed;

    void read(const std::vector<ObjectId>& entities) {
        // Of ends that meet the first one counts: what has vertices of its own goes in front.
        for (ObjectId id : entities)
            if (drawing_.exists(id)) addExact(id);
        for (ObjectId id : entities)
            if (drawing_.exists(id)) addShape(id);
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
            pieces.emplace_back(pointOf(groups, 10), pointOf(groups, 11));
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
        const auto first = static_cast<uint32_t>(pieces.size());
        for (size_t i = 0; i < count - (polyline.closed ? 0 : 1); ++i) {
            const double bulge = polyline.vertices[i].bulge;
            pieces.emplace_back(places[i], places[(i + 1) % count], frame.z.z < 0 ? -bulge : bulge);
        }
        if (polyline.closed || (endsMeet && count > 2))
            closed.push_back({first, static_cast<uint32_t>(pieces.size()) - first});
    }

    void addShape(ObjectId id) {
        constexpr std::string_view kCurves[] = {"ARC", "CIRCLE", "ELLIPSE", "SPLINE"};
        const bool isCurve =
            std::find(std::begin(kCurves), std::end(kCurves), drawing_.type(id)) != std::end(kCurves);
        if (!isCurve && !(isPolyline(id) && !isFlat(id))) return;
        shapeOf(drawing_, id, shape_);
        for (const Segment& segment : shape_.segments) pieces.emplace_back(segment.from, segment.to);
        for (const plane::Arc& arc : shape_.arcs) addArc(arc);
    }

    void addArc(const plane::Arc& arc) {
        if (arc.sweep < plane::kFullTurn - 1e-12) {
            pieces.emplace_back(arc.first(), arc.last(), plane::bulgeOf(arc.sweep));
            return;
        }
        const Point right = arc.first(), left = arc.at(arc.start + plane::kFullTurn / 2);
        pieces.emplace_back(right, left, 1);
        pieces.emplace_back(left, right, 1);
    }

    const Drawing& drawing_;
    Shape shape_;
};

// At the height of its vertices where they have one in common.
bool makeRing(Host& host, const Ring& ring) {
    std::vector<PolylineCorner> corners;
    const double height = ring.vertices.front().z;
    const bool isLevel = std::all_of(ring.vertices.begin(), ring.vertices.end(),
                                     [&](const plane::PolylineVertex& v) { return v.z == height; });
    for (const plane::PolylineVertex& vertex : ring.vertices)
        corners.push_back({{vertex.x, vertex.y, isLevel ? height : 0}, 0, 0, vertex.bulge});
    return makePolyline(host, corners, true);
}

lisp::Value traceAreas(lisp::Interpreter& interpreter, const lisp::Arguments& arguments) {
    Host& host = *Host::current();
    const SelectionSet* set = selectionOf(arguments.selectionSet(1));
    if (!set) lisp::throwBadType("lselsetp", arguments[1]);
    std::vector<Point> seeds;
    for (size_t i = 2; i < arguments.size(); ++i) {
        const lisp::Point seed = arguments.point(i);
        seeds.push_back({seed.at[0], seed.at[1], 0});
    }
    LineworkReader linework(currentDrawing());
    linework.read(set->members());
    const plane::IsCancelled isCancelled = [&] { return interpreter.takeCancel(); };
    std::optional<plane::LineworkGraph> graph = plane::graphOf(linework.pieces, isCancelled);
    const double gap = host.variables().real("AREAGAP");
    if (graph && gap > 0 && plane::bridgeGaps(*graph, gap, linework.pieces) > 0)
        graph = plane::graphOf(linework.pieces, isCancelled);
    if (!graph) return {};
    if (graph->leftOut > 0)
        host.write(text::format("\n%zu pieces of linework without a place in the plane are left out.\n",
                                graph->leftOut));
    const std::vector<Ring> rings = plane::smallestRings(linework.pieces, *graph, linework.closed);
    const plane::RingFinder finder(rings);
    std::vector<bool> isMade(rings.size(), false);
    int32_t made = 0;
    for (const Point& seed : seeds) {
        const std::optional<size_t> ring = finder.smallestRound(seed);
        if (!ring || isMade[*ring]) continue;
        isMade[*ring] = true;
        made += makeRing(host, rings[*ring]) ? 1 : 0;
    }
    return lisp::Value::integer(made);
}

}  // namespace

void defineAreaTracing(Host& host) {
    constexpr int kAnyNumber = -1;
    host.lisp().define("CF:SCBPOLY", 2, kAnyNumber, traceAreas);
}

}  // namespace hostcad
