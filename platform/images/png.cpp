#include <png.h>

#include <algorithm>
#include <cstring>

#include "platform/images/formats.h"
#include "platform/images/guard.h"
#include "platform/images/plain_png.h"

namespace images {
namespace {

class PngReader {
  public:
    explicit PngReader(std::string_view bytes) : whole_(bytes), bytes_(bytes) {
        png_ = png_create_read_struct(
            PNG_LIBPNG_VER_STRING, this,
            [](png_structp png, png_const_charp) {
                static_cast<PngReader*>(png_get_error_ptr(png))->guard_.leave();
            },
            [](png_structp, png_const_charp) {});
        if (png_) head_ = png_create_info_struct(png_);
    }
    ~PngReader() { png_destroy_read_struct(&png_, &head_, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    std::optional<Heading> heading() {
        if (!head_ || !guard_.run([this] { readHead(); })) return std::nullopt;
        const int64_t width = png_get_image_width(png_, head_), height = png_get_image_height(png_, head_);
        if (!isUsable(width, height)) return std::nullopt;
        return Heading{{static_cast<int>(width), static_cast<int>(height)}};
    }

    // Behind heading().
    bool read(Size size, RowSink& sink) {
        if (isPlain()) return readPlainPng(chunks(), size, png_get_channels(png_, head_), sink);
        if (!guard_.run([this] { setUp(); })) return false;
        const size_t rowBytes = static_cast<size_t>(size.width) * kPixelBytes;
        if (png_get_rowbytes(png_, head_) != rowBytes) return false;
        sink.begin(size);
        // In an interlaced picture every row comes several times.
        const bool whole = passes_ > 1;
        pixels_.assign(whole ? rowBytes * static_cast<size_t>(size.height) : rowBytes, 0);
        bool any = false, good = true;
        for (int pass = 0; good && pass < passes_; ++pass)
            for (int y = 0; good && y < size.height; ++y) {
                row_ = pixels_.data() + (whole ? rowBytes * static_cast<size_t>(y) : 0);
                good = guard_.run([this] { png_read_row(png_, row_, nullptr); });
                any |= good;
                if (good && !whole) sink.add(row_);
            }
        for (int y = 0; whole && any && y < size.height; ++y)
            sink.add(pixels_.data() + rowBytes * static_cast<size_t>(y));
        return any;
    }

  private:
    static void give(png_structp png, png_bytep to, size_t count) {
        auto& reader = *static_cast<PngReader*>(png_get_io_ptr(png));
        if (count > reader.bytes_.size()) reader.guard_.leave();
        std::memcpy(to, reader.bytes_.data(), count);
        reader.bytes_.remove_prefix(count);
    }

    void readHead() {
        png_set_read_fn(png_, this, give);
        png_set_user_limits(png_, kLongestSide, kLongestSide);
        png_read_info(png_, head_);
    }

    // Whatever the file has, the rows are of eight bits, in colour and with the part that they cover.
    void setUp() {
        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
        passes_ = png_set_interlace_handling(png_);
        png_read_update_info(png_, head_);
    }

    bool isPlain() const {
        const png_byte kind = png_get_color_type(png_, head_);
        const bool isColoured = kind == PNG_COLOR_TYPE_RGB || kind == PNG_COLOR_TYPE_RGBA;
        return isColoured && png_get_bit_depth(png_, head_) == 8 &&
               png_get_interlace_type(png_, head_) == PNG_INTERLACE_NONE &&
               !png_get_valid(png_, head_, PNG_INFO_tRNS);
    }
    // The file from its first IDAT chunk on, whose head was read last.
    std::string_view chunks() const {
        constexpr size_t kChunkHead = 8;
        return whole_.substr(whole_.size() - bytes_.size() - kChunkHead);
    }

    std::string_view whole_;
    std::string_view bytes_;  // what is left of them
    png_structp png_ = nullptr;
    png_infop head_ = nullptr;
    JumpGuard guard_;
    int passes_ = 1;
    uint8_t* row_ = nullptr;
    std::vector<uint8_t> pixels_;
};

}  // namespace

std::optional<Heading> pngHeading(std::string_view bytes) {
    return PngReader(bytes).heading();
}

bool readPng(std::string_view bytes, RowSink& sink) {
    PngReader reader(bytes);
    const std::optional<Heading> heading = reader.heading();
    return heading && reader.read(heading->size, sink);
}

}  // namespace images
