#include "hostcad/window/colours.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace hostcad {
namespace {

uint32_t channelOf(uint32_t colour, int shift) {
    return (colour >> shift) & 0xFF;
}

// From 0, black, to 1, white, as the eye sees it; the square is near enough to how screens show a value.
double lightnessOf(uint32_t colour) {
    auto part = [&](int shift) { return channelOf(colour, shift) / 255.0; };
    return 0.2126 * part(16) * part(16) + 0.7152 * part(8) * part(8) + 0.0722 * part(0) * part(0);
}

// From 1, the same, to 21, black on white.
double contrastOf(uint32_t one, uint32_t other) {
    constexpr double kStray = 0.05;  // light that is on any screen
    const double a = lightnessOf(one) + kStray, b = lightnessOf(other) + kStray;
    return std::max(a, b) / std::min(a, b);
}

uint32_t between(uint32_t from, uint32_t to, uint32_t step, uint32_t steps) {
    uint32_t mixed = 0;
    for (int shift : {16, 8, 0})
        mixed |= (channelOf(from, shift) * (steps - step) + channelOf(to, shift) * step) / steps << shift;
    return mixed;
}

}  // namespace

uint32_t readableOn(const Surface& surface, uint32_t colour) {
    constexpr double kEnough = 3;
    constexpr uint32_t kSteps = 16;
    constexpr uint32_t kWhite = 0xFFFFFF;
    if (colour == kWhite) return surface.ink;
    for (uint32_t step = 0; step < kSteps; ++step)
        if (uint32_t mixed = between(colour, surface.ink, step, kSteps);
            contrastOf(mixed, surface.ground) >= kEnough)
            return mixed;
    return surface.ink;
}

// Nine colours by name, then rings of a hue circle in five shades, and greys.
uint32_t colourOfIndex(int index) {
    constexpr uint32_t kNamed[] = {0xFFFFFF, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                   0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    constexpr uint32_t kGreys[] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
    constexpr int kFirstGrey = 250;
    index = std::abs(index);
    if (index < 10) return kNamed[index];
    if (index >= kFirstGrey) return kGreys[std::min(index - kFirstGrey, 5)];
    constexpr double kValues[] = {1.0, 0.74, 0.5, 0.41, 0.31};
    double hue = (index / 10 - 1) * 15.0;
    double value = kValues[index % 10 / 2];
    double saturation = index % 2 ? 0.33 : 1.0;
    auto channel = [&](double shift) {
        double k = std::fmod(shift + hue / 60, 6);
        return static_cast<uint32_t>(
            255 * (value - value * saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0)) + 0.5);
    };
    return channel(5) << 16 | channel(3) << 8 | channel(1);
}

}  // namespace hostcad
