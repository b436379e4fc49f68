// Labels and colours that are shown with the drawing.
#include "platform/ads/overlay.h"

#include <cmath>
#include <map>
#include <utility>

#include "hostcad/drawing/host_names.h"
#include "hostcad/drawing/overlay_sets.h"
#include "hostcad/editor/host.h"
#include "hostcad/geometry/label_spots.h"

using hostcad::overlaySets;

namespace overlay {
namespace {

void showThem() {
    if (hostcad::Host* host = hostcad::Host::current()) host->view().redraw();
}

template <class Set>
const Set* find(const std::map<std::string, Set>& sets, const std::string& name) {
    const auto found = sets.find(name);
    return found == sets.end() ? nullptr : &found->second;
}

template <class Set>
std::vector<std::string> namesOf(const std::map<std::string, Set>& sets) {
    std::vector<std::string> names;
    for (const auto& [name, set] : sets) names.push_back(name);
    return names;
}

}  // namespace

void setLabels(const std::string& name, LabelSet set) {
    overlaySets().setLabels(name, std::move(set));
    showThem();
}

void setColours(const std::string& name, ColourSet set) {
    overlaySets().setColours(name, std::move(set));
    showThem();
}

const LabelSet* labels(const std::string& name) {
    return find(overlaySets().labels(), name);
}

const ColourSet* colours(const std::string& name) {
    return find(overlaySets().colours(), name);
}

std::vector<std::string> labelSets() {
    return namesOf(overlaySets().labels());
}

std::vector<std::string> colourSets() {
    return namesOf(overlaySets().colours());
}

LabelCounts labelCounts() {
    hostcad::Host* host = hostcad::Host::current();
    return host ? host->view().labelCounts() : LabelCounts{};
}

bool spotOf(const EntityName& entity, LabelSpot& spot) {
    const hostcad::Drawing& drawing = hostcad::currentDrawing();
    const hostcad::ObjectId id = hostcad::idOf(entity.data());
    if (!id || !drawing.exists(id)) return false;
    const hostcad::LabelSpots spots = hostcad::labelSpots(drawing, id, Placement::ByEntity);
    if (!spots.hasPlace) return false;
    if (spots.count == 0) {
        const hostcad::Box box = hostcad::extentsOf(drawing, id);
        spot = {spots.placement, box.maxX, box.centre().y, 0};
        return true;
    }
    const hostcad::LabelSpot& first = spots.spots[0];
    spot = {spots.placement, first.x, first.y, std::atan2(first.alongY, first.alongX)};
    return true;
}

}  // namespace overlay
