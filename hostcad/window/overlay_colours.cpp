#include "hostcad/window/overlay_colours.h"

#include "hostcad/drawing/host_names.h"
#include "hostcad/drawing/overlay_sets.h"

namespace hostcad {

std::span<const uint32_t> OverlayColours::ofPlaces() {
    constexpr uint32_t kGiven = 0xFF000000;
    const OverlaySets& sets = overlaySets();
    if (sets.revision() == setsRevision_ && scene_.revision() == sceneRevision_) return colours_;
    setsRevision_ = sets.revision();
    sceneRevision_ = scene_.revision();
    colours_.clear();
    for (const auto& [name, set] : sets.colours())
        for (const auto& [entity, colour] : set.colours) {
            const size_t place = scene_.place(idOf(entity.data()));
            if (place == Scene::kNowhere) continue;
            if (colours_.empty()) colours_.resize(scene_.entities().size());
            colours_[place] = kGiven | colour;
        }
    return colours_;
}

std::vector<const overlay::Legend*> shownLegends() {
    std::vector<const overlay::Legend*> legends;
    for (const auto& [name, set] : overlaySets().colours())
        if (!set.legend.rows.empty()) legends.push_back(&set.legend);
    return legends;
}

}  // namespace hostcad
