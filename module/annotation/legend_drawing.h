// A legend of colours as entities of the drawing.
#pragma once

#include <string>

#include "platform/ads/overlay.h"
#include "platform/plane/point.h"

namespace norvane {

struct LegendLook {
    plane::Point at;  // its upper left corner
    std::string layer;
    double height = 0;  // of its texts, in drawing units
};

// Draws a box of colour (SOLID) and a text for each row, below the title. The number of entities; the drawing
// refuses those that are missing.
size_t DrawLegend(const overlay::Legend& legend, const LegendLook& look);

}  // namespace norvane
