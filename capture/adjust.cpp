#include "capture/adjust.h"

#include <algorithm>

namespace capture {
namespace {

template <typename Change>
void changeColours(images::Image& image, Change change) {
    for (size_t i = 0; i < image.pixels.size(); i += images::kPixelBytes)
        for (size_t c = i; c < i + 3; ++c)
            image.pixels[c] = static_cast<uint8_t>(std::clamp(change(int{image.pixels[c]}), 0, 255));
}

}  // namespace

void brighten(images::Image& image, int percent) {
    const int added = 255 * (std::clamp(percent, 0, 100) - 50) / 50;
    changeColours(image, [added](int colour) { return colour + added; });
}

void contrast(images::Image& image, int percent) {
    constexpr int kGrey = 128;
    const int part = std::clamp(percent, 0, 100);
    changeColours(image, [part](int colour) { return kGrey + (colour - kGrey) * part / 50; });
}

images::Image scaledBy(const images::Image& image, Scaling scaling) {
    if (scaling.across == 1 && scaling.down == 1) return image;
    return images::scaled(image, {image.size.width * scaling.across, image.size.height * scaling.down});
}

}  // namespace capture
