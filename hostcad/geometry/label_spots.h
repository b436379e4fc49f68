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
    // In order of preference. Beside: none, what the label stands beside is the entity's box. Inside: points
    // surely inside of what encloses an area. Along: the middle of the line, and the middles of its halves.
    std::array<LabelSpot, 3> spots;
    uint8_t count = 0;
    bool hasPlace = false;  // else there is nothing to label: no lines, or none that end
};

// The spots of an entity for a wish, which need not be possible (see platform/ads/overlay.h). With a box that
// is not empty, those of the part of its inside or course that is within the box; there may be none.
LabelSpots labelSpots(const Drawing& drawing, ObjectId entity, overlay::Placement wish,
                      const Box& within = {});

}  // namespace hostcad
