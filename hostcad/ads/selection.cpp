// Selection sets and selecting.
#include "hostcad/ads/entity_filter.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "hostcad/editor/object_selection.h"
#include "hostcad/geometry/crossing.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

using namespace hostcad;

namespace {

// The members of the last set that was selected, for "P".
std::vector<ObjectId>& previousSelection() {
    static std::vector<ObjectId> members;
    static long serial = 0;
    if (serial != currentDrawing().serial()) {
        serial = currentDrawing().serial();
        members.clear();
    }
    return members;
}

// The points of a fence or polygon: a list of resbufs.
std::vector<Point> pointsOf(const void* first) {
    std::vector<Point> points;
    for (auto* item = static_cast<const resbuf*>(first); item; item = item->rbnext) {
        bool point = item->restype == RTPOINT || item->restype == RT3DPOINT ||
                     groupKindOf(item->restype) == GroupKind::Point;
        if (point) points.push_back({item->resval.rpoint[0], item->resval.rpoint[1], 0});
    }
    return points;
}

// The corners of the box between two points.
std::vector<Point> boxCorners(const void* first, const void* second) {
    if (!first || !second) return {};
    auto* a = static_cast<const double*>(first);
    auto* b = static_cast<const double*>(second);
    return {{a[0], a[1], 0}, {b[0], a[1], 0}, {b[0], b[1], 0}, {a[0], b[1], 0}};
}

// A way of selecting by place: the points of a fence or polygon and the test of a shape against them. Without
// points nothing is selected.
struct Place {
    std::vector<Point> points;
    bool (*test)(const Shape&, std::span<const Point>) = nullptr;
};

bool readPlace(std::string_view mode, const void* first, const void* second, Place& place) {
    if (mode == "F")
        place = {pointsOf(first), crossesFence};
    else if (mode == "WP")
        place = {pointsOf(first), isInsidePolygon};
    else if (mode == "CP")
        place = {pointsOf(first), touchesPolygon};
    else if (mode == "W")
        place = {boxCorners(first, second), isInsidePolygon};
    else if (mode == "C")
        place = {boxCorners(first, second), touchesPolygon};
    else
        return false;
    return place.points.size() >= (mode == "F" ? 2u : 3u);
}

// Selection by place works on what can be seen: the current space, and layers that are on.
void selectAt(const Drawing& drawing, const Place& place, const EntityFilter& filter, SelectionSet& set) {
    Shape shape;
    ObjectId space = drawing.currentSpace();
    for (ObjectId id = drawing.firstEntityOf(space); id; id = drawing.nextEntityOf(space, id)) {
        if (!filter.matches(drawing, id) || !isVisible(drawing, id)) continue;
        shapeOf(drawing, id, shape);
        if (place.test(shape, place.points)) set.add(id);
    }
}

int select(std::string_view mode, const void* first, const void* second, const EntityFilter& filter,
           SelectionSet& set) {
    const Drawing& drawing = currentDrawing();
    auto addMatching = [&](ObjectId id) {
        if (drawing.exists(id) && filter.matches(drawing, id)) set.add(id);
    };
    if (mode.empty()) {
        SelectionSet chosen;
        int status = Host::current() ? selectObjects(*Host::current(), chosen) : RTERROR;
        if (status != RTNORM) return status;
        for (ObjectId id : chosen.members()) addMatching(id);
    } else if (mode == "I") {
        ImpliedSelection* implied = Host::current() ? &Host::current()->selection() : nullptr;
        if (implied)
            for (ObjectId id : implied->members()) addMatching(id);
        // Whoever has taken it does not get it from the next prompt again.
        if (implied && set.size() > 0) implied->withdraw();
    } else if (mode == "X") {
        for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) addMatching(id);
        for (ObjectId block = drawing.firstBlock(); block; block = drawing.nextBlock(block))
            if (isFurtherSheet(drawing, block))
                for (ObjectId id = drawing.firstPart(block); id; id = drawing.nextPart(id)) addMatching(id);
    } else if (mode == "L") {
        addMatching(drawing.lastEntity());
    } else if (mode == "P") {
        for (ObjectId id : previousSelection()) addMatching(id);
    } else {
        Place place;
        if (!readPlace(mode, first, second, place)) return RTERROR;
        selectAt(drawing, place, filter, set);
    }
    if (set.size() == 0) return RTERROR;
    if (mode != "P") previousSelection() = set.members();
    return RTNORM;
}

}  // namespace

extern "C" {

int acedSSGet(const char* mode, const void* first, const void* second, const resbuf* filter, ads_name set) {
    std::unique_ptr<EntityFilter> wanted = EntityFilter::read(currentDrawing(), filter);
    if (!wanted || !set) return RTERROR;
    // An underscore only says that the mode is in the language of programs.
    std::string name = text::upper(mode ? mode : "");
    if (!name.empty() && name[0] == '_') name.erase(0, 1);
    SelectionSet selected;
    int status = select(name, first, second, *wanted, selected);
    if (status == RTNORM) nameSelection(std::move(selected), set);
    return status;
}

int acedSSFree(const ads_name set) {
    return freeSelection(set) ? RTNORM : RTERROR;
}

int acedSSLength(const ads_name set, long* length) {
    const SelectionSet* selection = selectionOf(set);
    if (!selection || !length) return RTERROR;
    *length = static_cast<long>(selection->size());
    return RTNORM;
}

int acedSSName(const ads_name set, long index, ads_name entity) {
    const SelectionSet* selection = selectionOf(set);
    if (!selection || index < 0 || static_cast<size_t>(index) >= selection->size()) return RTERROR;
    nameOf(selection->at(static_cast<size_t>(index)), entity);
    return RTNORM;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
    bool newSet = !set || ads_name_nil(set);
    bool noEntity = !entity || ads_name_nil(entity);
    ObjectId id = idOf(entity);
    if (!noEntity && !currentDrawing().exists(id)) return RTERROR;
    if (newSet) {
        SelectionSet selection;
        if (id) selection.add(id);
        nameSelection(std::move(selection), result);
        return RTNORM;
    }
    SelectionSet* selection = selectionOf(set);
    if (!selection || noEntity) return RTERROR;
    selection->add(id);
    if (result != set) ads_name_set(set, result);
    return RTNORM;
}

int acedSSDel(const ads_name entity, const ads_name set) {
    SelectionSet* selection = selectionOf(set);
    return selection && selection->remove(idOf(entity)) ? RTNORM : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
    const SelectionSet* selection = selectionOf(set);
    return selection && selection->contains(idOf(entity)) ? RTNORM : RTERROR;
}

int acedSSSetFirst(const ads_name set, const ads_name) {
    Host* host = Host::current();
    const bool isNone = !set || ads_name_nil(set);
    const SelectionSet* selection = isNone ? nullptr : selectionOf(set);
    if (!host || (!isNone && !selection)) return RTERROR;
    host->select(selection ? selection->members() : std::vector<ObjectId>());
    return RTNORM;
}

int acedSSGetFirst(resbuf** grips, resbuf** selection) {
    if (!Host::current()) return RTERROR;
    if (grips) *grips = acutNewRb(RTNIL);
    if (!selection) return RTNORM;
    const std::vector<ObjectId> members = Host::current()->selection().members();
    *selection = acutNewRb(members.empty() ? RTNIL : RTPICKS);
    if (members.empty()) return RTNORM;
    SelectionSet set;
    for (ObjectId id : members) set.add(id);
    nameSelection(std::move(set), (*selection)->resval.rlname);
    return RTNORM;
}

int acedSSShow(const ads_name set) {
    const SelectionSet* selection = selectionOf(set);
    Host* host = Host::current();
    if (!selection || !host) return RTERROR;
    std::vector<EntityName> names;
    for (ObjectId id : selection->members()) nameOf(id, names.emplace_back().data());
    host->view().present(names);
    return RTNORM;
}
}
