#include "hostcad/editor/area_check.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "hostcad/geometry/frame.h"
#include "hostcad/geometry/linework.h"
#include "hostcad/lisp/arguments.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

using lisp::Value;
using plane::Piece;
using plane::Ring;

Value pointValue(const Point& p) {
    const double at[3] = {p.x, p.y, 0};
    return Value::point(at);
}

// A point within a ring: in the middle between two sides, at half its height.
Point insideOf(const Ring& ring) {
    const Point middle = ring.box.centre();
    // No corner is likely to stand just there.
    const double y = middle.y + ring.box.height() * 0.0123;
    const Piece level({ring.box.minX - 1, y, 0}, {ring.box.maxX + 1, y, 0});
    std::vector<Point> crossings;
    for (size_t i = 0; i < ring.vertices.size(); ++i) {
        const plane::PolylineVertex& from = ring.vertices[i];
        plane::addMeetings(level, Piece(from, ring.vertices[(i + 1) % ring.vertices.size()], from.bulge),
                           plane::kSamePlace, crossings);
    }
    std::sort(crossings.begin(), crossings.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
    for (size_t i = 0; i + 1 < crossings.size(); ++i) {
        const Point between = (crossings[i] + crossings[i + 1]) * 0.5;
        if (ring.contains(between)) return between;
    }
    return middle;
}

class AreaCheck {
  public:
    AreaCheck(const plane::LineworkGraph& graph, const std::vector<Ring>& rings, double distance)
        : graph_(graph),
          rings_(rings),
          finder_(rings),
          isLabelled_(rings.size(), false),
          distance_(distance) {}

    void label(const Point& place, const std::string& text) {
        if (text::trim(text).empty()) return;
        const std::optional<size_t> ring = finder_.smallestRound(place);
        if (!ring) return tell("LABEL", place, {Value::string(text)});
        isLabelled_[*ring] = true;
        std::set<size_t>& areas = areasOf_[text::upper(text)];
        if (areas.insert(*ring).second && areas.size() > 1)
            tell("SEVERAL", place, {Value::string(text), Value::integer(static_cast<int32_t>(areas.size()))});
    }

    Value faults() {
        for (size_t i = 0; i < rings_.size(); ++i)
            if (!isLabelled_[i]) tell("AREA", insideOf(rings_[i]), {});
        for (const plane::FreeEnd& end : plane::freeEnds(graph_, distance_)) tellEnd(end);
        return Value::list(faults_);
    }

  private:
    void tellEnd(const plane::FreeEnd& end) {
        if (!(end.gap <= distance_)) return;
        const Point& place = graph_.nodes[end.node];
        const Point& other = graph_.nodes[end.other];
        const bool sticksOut = other.x == end.nearest.x && other.y == end.nearest.y;
        tell(sticksOut ? "END" : "GAP", place, {Value::real(end.gap)});
    }

    void tell(const char* kind, const Point& place, const std::vector<Value>& more) {
        std::vector<Value> fault{Value::string(kind), pointValue(place)};
        fault.insert(fault.end(), more.begin(), more.end());
        faults_.push_back(Value::list(fault));
    }

    const plane::LineworkGraph& graph_;
    const std::vector<Ring>& rings_;
    const plane::RingFinder finder_;
    std::vector<bool> isLabelled_;                     // by ring
    std::map<std::string, std::set<size_t>> areasOf_;  // by label, in capitals
    const double distance_;
    std::vector<Value> faults_;
};

Value checkAreas(lisp::Interpreter& interpreter, const lisp::Arguments& arguments) {
    const Drawing& drawing = currentDrawing();
    const SelectionSet* set = selectionOf(arguments.selectionSet(0));
    if (!set) lisp::throwBadType("lselsetp", arguments[0]);
    const double distance = arguments.number(1);
    const Linework linework = readLinework(drawing, set->members());
    const std::optional<plane::LineworkGraph> graph =
        plane::graphOf(linework.pieces, [&] { return interpreter.takeCancel(); });
    if (graph && graph->isTooDense)
        Host::current()->write("\nToo many pieces of linework lie above each other: they are not checked.\n");
    if (!graph || graph->isTooDense) return Value::string("cancelled");
    const std::vector<Ring> rings = plane::smallestRings(linework.pieces, *graph, linework.closed);
    AreaCheck check(*graph, rings, distance);
    for (ObjectId id : set->members()) {
        if (!drawing.exists(id) || drawing.type(id) != "TEXT") continue;
        const Groups groups = drawing.groups(id);
        const Frame frame = extrusionFrame(pointOf(groups, 210, {0, 0, 1}));
        check.label(frame(pointOf(groups, 10)), std::string(textOf(groups, 1)));
    }
    return check.faults();
}

}  // namespace

void defineAreaCheck(Host& host) {
    host.lisp().define("CF:SCBCHECK", 2, 2, checkAreas);
}

}  // namespace hostcad
