// Colours that are told from each other, on a dark and on a light ground.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace norvane {

// 0xRRGGBB. Every one stands out from white and from the dark ground of the window by three to one.
using Colour = uint32_t;

// For classes in their order, from blue over green to red.
std::vector<Colour> ColoursInOrder(size_t count);
// For values that have no order: neighbours differ as much as can be.
std::vector<Colour> ColoursOfKinds(size_t count);
// Of what has no value, or one for which there is no class.
constexpr Colour kOtherColour = 0x808080;

// The colour number from 1 to 255 that comes nearest to a colour, for files of versions that know no others.
int NearestColourNumber(Colour colour);

}  // namespace norvane
