#include "hostcad/window/colours.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace hostcad {

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
