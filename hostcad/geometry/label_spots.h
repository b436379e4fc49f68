// Where labels of an entity may stand in the plan.
#pragma once

#include <array>
#include <cstdint>

#include "hostcad/geometry/extents.h"
#include "platform/ads/overlay.h"

namespace hostcad {

struct LabelSpot {
    double x = 0, y = 0;
    // The direction of text along a line, of length 1: above -90 and up to 90 degrees, so that it can be
    // read.
    float alongX = 1, alongY = 0;
};

struct LabelSpots {
    overlay::Placement placement = overlay::Placement::Beside;
    // In order of preference. Beside: none, the box is what the label stands beside. Inside: points surely
    // inside of what encloses an area. Along: the middle of the line, and the middles of its halves.
    std::array<LabelSpot, 3> spots;
    uint8_t count = 0;
    Box box;  // of the entity; empty where it has no place

    bool hasPlace() const { return !box.empty(); }
};

// The spots of an entity for a wish, which need not be possible (see platform/ads/overlay.h).
LabelSpots labelSpots(const Drawing& drawing, ObjectId entity, overlay::Placement wish);

}  // namespace hostcad
