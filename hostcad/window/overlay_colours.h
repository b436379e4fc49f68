// The colours that programs show in place of those of the entities.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "hostcad/window/scene.h"
#include "platform/ads/overlay.h"

namespace hostcad {

class OverlayColours {
  public:
    // The scene shows the current drawing, and stays the caller's.
    explicit OverlayColours(const Scene& scene) : scene_(scene) {}

    // By place in the scene: 0xFF and the colour, or 0 where the entity shows its own. Empty where all do.
    std::span<const uint32_t> ofPlaces();

  private:
    const Scene& scene_;
    uint64_t setsRevision_ = 0;
    uint64_t sceneRevision_ = 0;
    std::vector<uint32_t> colours_;
};

// The legends of the current drawing that have rows, in the order of their sets.
std::vector<const overlay::Legend*> shownLegends();

}  // namespace hostcad
