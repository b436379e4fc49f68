// Colours of the drawing as the screen shows them.
#pragma once

#include <cstdint>

namespace hostcad {

// What is behind the drawing.
constexpr uint32_t kGroundColour = 0x1E2228;
// Of entities that are selected, and of the one under the mouse.
constexpr uint32_t kMarkColour = 0xFF9F40;
constexpr uint32_t kHoverColour = 0x80C8FF;

// 0xRRGGBB of a colour number from 1 to 255; 7 is the one that shows on the ground.
uint32_t colourOfIndex(int index);

// Half way to the ground.
constexpr uint32_t faint(uint32_t colour) {
    return ((colour >> 1) & 0x7F7F7F) + ((kGroundColour >> 1) & 0x7F7F7F);
}

}  // namespace hostcad
