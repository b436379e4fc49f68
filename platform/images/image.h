// Pictures in memory, and how they fit into a frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace images {

struct Size {
    int width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

// The largest size of a picture's ratio within a frame, cut to whole pixels and never under one. Small
// pictures are enlarged. A picture or frame without an extent gives none.
Size fitted(Size picture, Size frame);

constexpr int kPixelBytes = 4;

// Pixels row by row from the top, four bytes each: red, green, blue, and how much of what is behind they
// cover (255: all of it).
struct Image {
    Size size;
    std::vector<uint8_t> pixels;

    Image() = default;
    explicit Image(Size s)
        : size(s), pixels(static_cast<size_t>(s.width) * static_cast<size_t>(s.height) * kPixelBytes) {}

    bool empty() const { return pixels.empty(); }
    uint8_t* pixel(int x, int y) { return pixels.data() + offset(x, y); }
    const uint8_t* pixel(int x, int y) const { return pixels.data() + offset(x, y); }

  private:
    size_t offset(int x, int y) const {
        return (static_cast<size_t>(y) * static_cast<size_t>(size.width) + static_cast<size_t>(x)) *
               kPixelBytes;
    }
};

// The picture in another size: pixels that come together are averaged, those between are blended.
Image scaled(const Image& image, Size size);

}  // namespace images
