#include "hostcad/drawing/overlay_sets.h"

#include <utility>

#include "hostcad/drawing/current_drawing.h"

namespace hostcad {

void OverlaySets::setLabels(const std::string& name, overlay::LabelSet set) {
    ++revision_;
    if (set.labels.empty())
        labels_.erase(name);
    else
        labels_[name] = std::move(set);
}

void OverlaySets::setColours(const std::string& name, overlay::ColourSet set) {
    ++revision_;
    if (set.colours.empty() && set.legend.rows.empty())
        colours_.erase(name);
    else
        colours_[name] = std::move(set);
}

void OverlaySets::clear() {
    ++revision_;
    labels_.clear();
    colours_.clear();
}

OverlaySets& overlaySets() {
    static OverlaySets sets;
    static long drawing = 0;
    if (drawing != currentDrawing().serial()) {
        drawing = currentDrawing().serial();
        sets.clear();
    }
    return sets;
}

}  // namespace hostcad
