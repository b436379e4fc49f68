#include "platform/images/png_filters.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

namespace images {
namespace {

// Calls with the number of each byte of a pixel. The numbers are constants, so that what is kept for each
// byte can be in a register.
template <size_t kPixel, class Work>
inline void forEachByte(const Work& work) {
    [&]<size_t... numbers>(std::index_sequence<numbers...>) {
        (work(std::integral_constant<size_t, numbers>()), ...);
    }
    (std::make_index_sequence<kPixel>());
}

template <size_t kPixel>
void undoSub(uint8_t* row, size_t bytes) {
    std::array<uint8_t, kPixel> left{};
    for (const uint8_t* end = row + bytes; row != end; row += kPixel)
        forEachByte<kPixel>([&](auto c) { row[c] = left[c] = static_cast<uint8_t>(row[c] + left[c]); });
}

void undoUp(uint8_t* row, const uint8_t* above, size_t bytes) {
    // Eight bytes are added at a time, those of the odd places apart from those of the even ones.
    constexpr uint64_t kOdd = 0xFF00FF00FF00FF00, kEven = 0x00FF00FF00FF00FF;
    size_t i = 0;
    for (; i + sizeof kOdd <= bytes; i += sizeof kOdd) {
        uint64_t a = 0, b = 0;
        std::memcpy(&a, row + i, sizeof a);
        std::memcpy(&b, above + i, sizeof b);
        const uint64_t sum = (((a & kEven) + (b & kEven)) & kEven) | (((a & kOdd) + (b & kOdd)) & kOdd);
        std::memcpy(row + i, &sum, sizeof sum);
    }
    for (; i < bytes; ++i) row[i] = static_cast<uint8_t>(row[i] + above[i]);
}

template <size_t kPixel>
void undoAverage(uint8_t* row, const uint8_t* above, size_t bytes) {
    std::array<uint8_t, kPixel> left{};
    for (const uint8_t* end = row + bytes; row != end; row += kPixel, above += kPixel)
        forEachByte<kPixel>(
            [&](auto c) { row[c] = left[c] = static_cast<uint8_t>(row[c] + (left[c] + above[c]) / 2); });
}

// Of the three neighbours the one that is nearest to left + up - corner.
inline int nearest(int left, int up, int corner) {
    const int toLeft = std::abs(up - corner), toUp = std::abs(left - corner),
              toCorner = std::abs(left + up - 2 * corner);
    const int other = toUp <= toCorner ? up : corner;
    return toLeft <= std::min(toUp, toCorner) ? left : other;
}

template <size_t kPixel>
void undoPaeth(uint8_t* row, const uint8_t* above, size_t bytes) {
    std::array<int, kPixel> left{}, corner{};
    for (const uint8_t* end = row + bytes; row != end; row += kPixel, above += kPixel)
        forEachByte<kPixel>([&](auto c) {
            const int up = above[c];
            left[c] = (row[c] + nearest(left[c], up, corner[c])) & 0xFF;
            corner[c] = up;
            row[c] = static_cast<uint8_t>(left[c]);
        });
}

template <size_t kPixel>
bool undo(uint8_t kind, uint8_t* row, const uint8_t* above, size_t bytes) {
    enum : uint8_t { kNone, kSub, kUp, kAverage, kPaeth };
    switch (kind) {
        case kNone:
            return true;
        case kSub:
            undoSub<kPixel>(row, bytes);
            return true;
        case kUp:
            undoUp(row, above, bytes);
            return true;
        case kAverage:
            undoAverage<kPixel>(row, above, bytes);
            return true;
        case kPaeth:
            undoPaeth<kPixel>(row, above, bytes);
            return true;
        default:
            return false;
    }
}

}  // namespace

bool undoPngFilter(uint8_t kind, uint8_t* row, const uint8_t* above, size_t bytes, size_t pixelBytes) {
    return pixelBytes == 3 ? undo<3>(kind, row, above, bytes) : undo<4>(kind, row, above, bytes);
}

}  // namespace images
