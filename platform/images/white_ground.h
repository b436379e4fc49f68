// Pixels for files that know no ground to shine through.
#pragma once

#include <cstdint>

namespace images {

// The three colours of a pixel as it is seen on white.
inline void putOnWhite(const uint8_t* pixel, uint8_t* colours) {
    const int covers = pixel[3];
    for (int c = 0; c < 3; ++c)
        colours[c] = static_cast<uint8_t>((pixel[c] * covers + 255 * (255 - covers) + 127) / 255);
}

}  // namespace images
