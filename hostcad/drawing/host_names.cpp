#include "hostcad/drawing/host_names.h"

#include <map>

namespace hostcad {
namespace {

// The second number of a name is the drawing's serial for an object, and this for a selection set.
constexpr long kSelectionMark = -1;

struct Selections {
    long drawing = 0;
    long last = 0;
    std::map<long, SelectionSet> sets;
};

// The sets of the present drawing: those of another are gone.
Selections& selections() {
    static Selections all;
    long drawing = currentDrawing().serial();
    if (all.drawing != drawing) {
        all.drawing = drawing;
        all.sets.clear();
    }
    return all;
}

}  // namespace

void nameOf(ObjectId id, ads_name name) {
    name[0] = static_cast<long>(id);
    name[1] = id ? currentDrawing().serial() : 0;
}

ObjectId idOf(const ads_name name) {
    const Drawing& drawing = currentDrawing();
    bool named =
        name && name[1] == drawing.serial() && name[0] > 0 && name[0] < static_cast<long>(drawing.idLimit());
    return named ? static_cast<ObjectId>(name[0]) : kNoObject;
}

SelectionSet* selectionOf(const ads_name name) {
    if (!name || name[1] != kSelectionMark) return nullptr;
    auto& sets = selections().sets;
    auto found = sets.find(name[0]);
    return found == sets.end() ? nullptr : &found->second;
}

void nameSelection(SelectionSet set, ads_name name) {
    Selections& all = selections();
    name[0] = ++all.last;
    name[1] = kSelectionMark;
    all.sets.emplace(name[0], std::move(set));
}

bool freeSelection(const ads_name name) {
    return selectionOf(name) && selections().sets.erase(name[0]) != 0;
}

}  // namespace hostcad
