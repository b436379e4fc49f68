#include "hostcad/editor/area_tracing.h"

#include <algorithm>
#include <vector>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "hostcad/geometry/linework.h"
#include "hostcad/lisp/arguments.h"
#include "platform/ads/entities.h"
#include "platform/plane/areas.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

using plane::Ring;

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
    Linework linework = readLinework(currentDrawing(), set->members());
    const plane::IsCancelled isCancelled = [&] { return interpreter.takeCancel(); };
    std::optional<plane::LineworkGraph> graph = plane::graphOf(linework.pieces, isCancelled);
    const double gap = host.variables().real("AREAGAP");
    if (graph && gap > 0 && plane::bridgeGaps(*graph, gap, linework.pieces) > 0)
        graph = plane::graphOf(linework.pieces, isCancelled);
    if (!graph) return {};
    if (graph->isTooDense) {
        host.write("\nToo many pieces of linework lie above each other: no areas are traced.\n");
        return {};
    }
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
