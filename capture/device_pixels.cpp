#include "capture/device_pixels.h"

#include <algorithm>

namespace capture {
namespace {

// By ITU-R BT.601: brightness from 16 to 235, the two others about 128.
void putColour(int y, int u, int v, uint8_t* pixel) {
    const int light = 298 * (y - 16), blue = u - 128, red = v - 128;
    auto byteOf = [](int value) { return static_cast<uint8_t>(std::clamp((value + 128) >> 8, 0, 255)); };
    pixel[0] = byteOf(light + 409 * red);
    pixel[1] = byteOf(light - 100 * blue - 208 * red);
    pixel[2] = byteOf(light + 516 * blue);
    pixel[3] = 255;
}

}  // namespace

images::Image imageOfYuyv(std::string_view bytes, images::Size size, size_t stride) {
    images::Image image(size);
    const size_t pairs = static_cast<size_t>(size.width) / 2;
    if (stride < pairs * 4) return image;
    for (int y = 0; y < size.height; ++y) {
        const size_t at = static_cast<size_t>(y) * stride;
        if (at + pairs * 4 > bytes.size()) break;
        const auto* row = reinterpret_cast<const uint8_t*>(bytes.data()) + at;
        for (size_t pair = 0; pair < pairs; ++pair, row += 4) {
            uint8_t* pixel = image.pixel(static_cast<int>(pair) * 2, y);
            putColour(row[0], row[1], row[3], pixel);
            putColour(row[2], row[1], row[3], pixel + images::kPixelBytes);
        }
    }
    return image;
}

}  // namespace capture
