#include <cstring>

#include "platform/files/byte_order.h"
#include "platform/images/formats.h"

namespace images {
namespace {

constexpr std::string_view kMark("Exif\0\0", 6);
constexpr uint16_t kOrientationTag = 0x0112;
constexpr size_t kEntrySize = 12;

// The directory of a TIFF file, in the byte order that its head tells.
class Tiff {
  public:
    explicit Tiff(std::string_view bytes) : bytes_(bytes), big_(bytes.substr(0, 2) == "MM") {}
    bool isOne() const { return bytes_.size() >= 8 && (big_ || bytes_.substr(0, 2) == "II"); }
    // 0 behind the end.
    uint32_t number(size_t at, size_t size) const {
        uint32_t value = 0;
        if (at > bytes_.size() || size > bytes_.size() - at) return 0;
        for (size_t i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes_[at + (big_ ? i : size - 1 - i)]);
        return value;
    }

  private:
    std::string_view bytes_;
    bool big_;
};

}  // namespace

int exifOrientation(std::string_view block) {
    if (block.substr(0, kMark.size()) != kMark) return 1;
    const Tiff tiff(block.substr(kMark.size()));
    if (!tiff.isOne()) return 1;
    const size_t directory = tiff.number(4, 4);
    const uint32_t entries = tiff.number(directory, 2);
    for (uint32_t i = 0; i < entries; ++i) {
        const size_t entry = directory + 2 + i * kEntrySize;
        if (tiff.number(entry, 2) != kOrientationTag) continue;
        const uint32_t orientation = tiff.number(entry + 8, 2);
        return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
    }
    return 1;
}

}  // namespace images
