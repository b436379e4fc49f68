#include <algorithm>
#include <cstring>

#include "platform/files/byte_order.h"
#include "platform/images/formats.h"

namespace images {
namespace {

using files::getLittle;

constexpr size_t kFileHead = 14;
constexpr size_t kCoreHead = 12;  // the oldest one, of another shape
constexpr size_t kInfoHead = 40;
constexpr size_t kMasksEnd = 56;  // of heads that have the masks among them
enum Compression : uint32_t { kPlain = 0, kRle8 = 1, kRle4 = 2, kMasked = 3, kMaskedWithAlpha = 6 };

// Where a colour stands in a pixel of 16 or 32 bits.
class Mask {
  public:
    explicit Mask(uint32_t bits = 0) : bits_(bits) {
        while (bits_ && !(bits_ >> shift_ & 1)) ++shift_;
    }
    uint8_t of(uint32_t pixel, uint8_t without) const {
        if (!bits_) return without;
        const uint64_t most = bits_ >> shift_;
        return static_cast<uint8_t>((uint64_t{(pixel & bits_) >> shift_} * 255 + most / 2) / most);
    }

  private:
    uint32_t bits_;
    int shift_ = 0;
};

struct BmpHead {
    Size size;
    bool topDown = false;
    int bits = 0;
    uint32_t compression = kPlain;
    Mask red, green, blue, alpha;
    std::string_view palette;
    size_t colourBytes = 4;  // of one colour of the palette
    std::string_view pixels;
};

bool readMasks(std::string_view bytes, size_t headSize, BmpHead& head) {
    const bool masked = head.compression == kMasked || head.compression == kMaskedWithAlpha;
    if (!masked) {
        if (head.bits == 16) head.red = Mask(0x7C00), head.green = Mask(0x03E0), head.blue = Mask(0x001F);
        if (head.bits == 32) head.red = Mask(0xFF0000), head.green = Mask(0xFF00), head.blue = Mask(0xFF);
        return true;
    }
    constexpr size_t kAt = kFileHead + kInfoHead;
    const bool hasAlpha = head.compression == kMaskedWithAlpha || headSize >= kMasksEnd;
    if (bytes.size() < kAt + (hasAlpha ? 16 : 12)) return false;
    head.red = Mask(getLittle<uint32_t>(&bytes[kAt]));
    head.green = Mask(getLittle<uint32_t>(&bytes[kAt + 4]));
    head.blue = Mask(getLittle<uint32_t>(&bytes[kAt + 8]));
    if (hasAlpha) head.alpha = Mask(getLittle<uint32_t>(&bytes[kAt + 12]));
    return true;
}

bool fits(const BmpHead& head) {
    switch (head.compression) {
        case kPlain:
            return head.bits == 1 || head.bits == 4 || head.bits == 8 || head.bits == 16 || head.bits == 24 ||
                   head.bits == 32;
        case kRle8:
            return head.bits == 8 && !head.topDown;
        case kRle4:
            return head.bits == 4 && !head.topDown;
        case kMasked:
        case kMaskedWithAlpha:
            return head.bits == 16 || head.bits == 32;
        default:
            return false;
    }
}

std::optional<BmpHead> readHead(std::string_view bytes) {
    if (bytes.size() < kFileHead + kCoreHead || bytes.substr(0, 2) != "BM") return std::nullopt;
    const size_t pixelsAt = getLittle<uint32_t>(&bytes[10]);
    const size_t headSize = getLittle<uint32_t>(&bytes[kFileHead]);
    const bool isCore = headSize == kCoreHead;
    if (!isCore && (headSize < kInfoHead || bytes.size() < kFileHead + kInfoHead)) return std::nullopt;
    BmpHead head;
    int64_t width = 0, height = 0;
    size_t colours = 0;
    if (isCore) {
        width = getLittle<uint16_t>(&bytes[18]);
        height = getLittle<uint16_t>(&bytes[20]);
        head.bits = getLittle<uint16_t>(&bytes[24]);
        head.colourBytes = 3;
    } else {
        width = getLittle<int32_t>(&bytes[18]);
        height = getLittle<int32_t>(&bytes[22]);
        head.bits = getLittle<uint16_t>(&bytes[28]);
        head.compression = getLittle<uint32_t>(&bytes[30]);
        colours = getLittle<uint32_t>(&bytes[46]);
    }
    head.topDown = height < 0;
    height = std::abs(height);
    if (!isUsable(width, height) || !fits(head) || !readMasks(bytes, headSize, head)) return std::nullopt;
    head.size = {static_cast<int>(width), static_cast<int>(height)};
    if (head.bits <= 8) {
        const size_t most = size_t{1} << head.bits;
        if (colours == 0 || colours > most) colours = most;
        const size_t at = kFileHead + headSize;
        if (at <= bytes.size()) head.palette = bytes.substr(at, colours * head.colourBytes);
    }
    if (pixelsAt < bytes.size()) head.pixels = bytes.substr(pixelsAt);
    return head;
}

class BmpReader {
  public:
    explicit BmpReader(const BmpHead& head)
        : head_(head),
          stride_((static_cast<size_t>(head.size.width) * static_cast<size_t>(head.bits) + 31) / 32 * 4),
          row_(static_cast<size_t>(head.size.width) * kPixelBytes) {}

    bool read(RowSink& sink) {
        if (head_.pixels.empty()) return false;
        const bool packed = head_.compression == kRle8 || head_.compression == kRle4;
        if (packed) unpack();
        sink.begin(head_.size);
        for (int y = 0; y < head_.size.height; ++y) {
            const auto line = static_cast<size_t>(head_.topDown ? y : head_.size.height - 1 - y);
            std::fill(row_.begin(), row_.end(), uint8_t{0});
            if (packed)
                paintIndices(line);
            else
                paintPlain(line);
            sink.add(row_.data());
        }
        return true;
    }

  private:
    void setPixel(size_t x, uint8_t red, uint8_t green, uint8_t blue, uint8_t covers = 255) {
        const uint8_t pixel[kPixelBytes] = {red, green, blue, covers};
        std::copy_n(pixel, kPixelBytes, &row_[x * kPixelBytes]);
    }

    // A colour that the palette has not is black.
    void setIndexed(size_t x, size_t index) {
        const size_t at = index * head_.colourBytes;
        if (at + 3 > head_.palette.size()) return setPixel(x, 0, 0, 0);
        auto byte = [&](size_t i) { return static_cast<uint8_t>(head_.palette[at + i]); };
        setPixel(x, byte(2), byte(1), byte(0));
    }

    // As many pixels of a line as the file has.
    void paintPlain(size_t line) {
        const size_t at = line * stride_;
        if (at >= head_.pixels.size()) return;
        const std::string_view bytes = head_.pixels.substr(at, stride_);
        const auto bits = static_cast<size_t>(head_.bits);
        const size_t width = std::min(static_cast<size_t>(head_.size.width), bytes.size() * 8 / bits);
        const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
        for (size_t x = 0; x < width; ++x) {
            if (bits <= 8) {
                const size_t place = x * bits;
                setIndexed(x, data[place / 8] >> (8 - bits - place % 8) & ((1u << bits) - 1));
            } else if (bits == 24) {
                setPixel(x, data[x * 3 + 2], data[x * 3 + 1], data[x * 3]);
            } else {
                const uint32_t pixel =
                    bits == 16 ? getLittle<uint16_t>(data + x * 2) : getLittle<uint32_t>(data + x * 4);
                setPixel(x, head_.red.of(pixel, 0), head_.green.of(pixel, 0), head_.blue.of(pixel, 0),
                         head_.alpha.of(pixel, 255));
            }
        }
    }

    void paintIndices(size_t line) {
        const auto width = static_cast<size_t>(head_.size.width);
        for (size_t x = 0; x < width; ++x)
            if (const int index = indices_[line * width + x]; index >= 0)
                setIndexed(x, static_cast<size_t>(index));
    }

    // Runs, pieces as they are, and jumps, from the lowest line on. What is jumped over stays uncovered.
    void unpack() {
        const auto width = static_cast<size_t>(head_.size.width);
        const auto height = static_cast<size_t>(head_.size.height);
        indices_.assign(width * height, -1);
        const auto* data = reinterpret_cast<const uint8_t*>(head_.pixels.data());
        const size_t end = head_.pixels.size();
        const bool half = head_.compression == kRle4;
        size_t x = 0, line = 0;
        auto put = [&](size_t index) {
            if (x < width && line < height) indices_[line * width + x] = static_cast<int16_t>(index);
            ++x;
        };
        for (size_t at = 0; at + 1 < end && line < height;) {
            const size_t count = data[at], value = data[at + 1];
            at += 2;
            if (count > 0) {
                for (size_t i = 0; i < count; ++i) put(half ? (i % 2 ? value & 15 : value >> 4) : value);
            } else if (value == 0) {
                x = 0, ++line;
            } else if (value == 1) {
                return;
            } else if (value == 2) {
                if (at + 1 >= end) return;
                x += data[at], line += data[at + 1];
                at += 2;
            } else {
                const size_t bytes = half ? (value + 1) / 2 : value;
                if (at + bytes > end) return;
                for (size_t i = 0; i < value; ++i)
                    put(half ? (i % 2 ? data[at + i / 2] & 15 : data[at + i / 2] >> 4) : data[at + i]);
                at += bytes + bytes % 2;
            }
        }
    }

    const BmpHead& head_;
    size_t stride_;
    std::vector<uint8_t> row_;
    std::vector<int16_t> indices_;  // of a packed picture, by line of the file; -1 for none
};

}  // namespace

std::optional<Heading> bmpHeading(std::string_view bytes) {
    const std::optional<BmpHead> head = readHead(bytes);
    if (!head) return std::nullopt;
    return Heading{head->size};
}

bool readBmp(std::string_view bytes, RowSink& sink) {
    const std::optional<BmpHead> head = readHead(bytes);
    return head && BmpReader(*head).read(sink);
}

}  // namespace images
