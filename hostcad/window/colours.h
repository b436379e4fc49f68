// Colours of the drawing as the screen and paper show them.
#pragma once

#include <cstdint>

namespace hostcad {

// What a drawing is shown on, and the colour that shows on it best.
struct Surface {
    uint32_t ground;
    uint32_t ink;
};
constexpr Surface kScreen{0x1E2228, 0xFFFFFF};
constexpr Surface kPaper{0xFFFFFF, 0x000000};
// Of entities that are selected, and of the one under the mouse.
constexpr uint32_t kMarkColour = 0xFF9F40;
constexpr uint32_t kHoverColour = 0x80C8FF;

// 0xRRGGBB of a colour number from 1 to 255; 7 is the one that shows on the ground.
uint32_t colourOfIndex(int index);

// The colour, or the nearest one on the way to the ink that can be told from the ground. White is the ink of
// any surface.
uint32_t readableOn(const Surface& surface, uint32_t colour);

// Half way to the ground.
constexpr uint32_t faintOn(const Surface& surface, uint32_t colour) {
    return ((colour >> 1) & 0x7F7F7F) + ((surface.ground >> 1) & 0x7F7F7F);
}

}  // namespace hostcad
