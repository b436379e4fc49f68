#include <gif_lib.h>

#include <algorithm>
#include <cstring>

#include "platform/images/formats.h"

namespace images {
namespace {

class GifReader {
  public:
    explicit GifReader(std::string_view bytes) : bytes_(bytes) {
        int error = 0;
        file_ = DGifOpen(this, give, &error);
    }
    ~GifReader() {
        int error = 0;
        if (file_) DGifCloseFile(file_, &error);
    }
    GifReader(const GifReader&) = delete;
    GifReader& operator=(const GifReader&) = delete;

    // Goes to the first picture.
    std::optional<Heading> heading() {
        if (!file_ || !findPicture()) return std::nullopt;
        const GifImageDesc& picture = file_->Image;
        if (!isUsable(picture.Width, picture.Height)) return std::nullopt;
        // A file without a ground has the picture alone.
        ground_ = {file_->SWidth, file_->SHeight};
        if (!isUsable(ground_.width, ground_.height)) ground_ = {picture.Width, picture.Height};
        return Heading{ground_};
    }

    // Behind heading().
    bool read(RowSink& sink) {
        const bool any = readIndices();
        if (!any) return false;
        sink.begin(ground_);
        std::vector<uint8_t> row(static_cast<size_t>(ground_.width) * kPixelBytes);
        for (int y = 0; y < ground_.height; ++y) {
            std::fill(row.begin(), row.end(), uint8_t{0});
            paint(y, row);
            sink.add(row.data());
        }
        return true;
    }

  private:
    static int give(GifFileType* file, GifByteType* to, int count) {
        auto& reader = *static_cast<GifReader*>(file->UserData);
        const size_t given = std::min(reader.bytes_.size(), static_cast<size_t>(std::max(0, count)));
        std::memcpy(to, reader.bytes_.data(), given);
        reader.bytes_.remove_prefix(given);
        return static_cast<int>(given);
    }

    bool findPicture() {
        for (;;) {
            GifRecordType type = UNDEFINED_RECORD_TYPE;
            if (DGifGetRecordType(file_, &type) != GIF_OK) return false;
            if (type == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(file_) == GIF_OK;
            if (type != EXTENSION_RECORD_TYPE || !readExtension()) return false;
        }
    }

    bool readExtension() {
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(file_, &code, &block) != GIF_OK) return false;
        while (block) {
            GraphicsControlBlock control;
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
                transparent_ = control.TransparentColor;
            if (DGifGetExtensionNext(file_, &block) != GIF_OK) return false;
        }
        return true;
    }

    // The number of the colour of each pixel, in the order from the top; -1 where the file has ended.
    bool readIndices() {
        const GifImageDesc& picture = file_->Image;
        const size_t width = static_cast<size_t>(picture.Width);
        indices_.assign(width * static_cast<size_t>(picture.Height), 0);
        rowsRead_.assign(static_cast<size_t>(picture.Height), false);
        struct Pass {
            int first, step;
        };
        static constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        static constexpr Pass kPlain[] = {{0, 1}};
        const Pass* passes = picture.Interlace ? kInterlaced : kPlain;
        const int count = picture.Interlace ? 4 : 1;
        bool any = false;
        for (int pass = 0; pass < count; ++pass)
            for (int y = passes[pass].first; y < picture.Height; y += passes[pass].step) {
                if (DGifGetLine(file_, &indices_[width * static_cast<size_t>(y)], picture.Width) != GIF_OK)
                    return any;
                rowsRead_[static_cast<size_t>(y)] = any = true;
            }
        return any;
    }

    void paint(int y, std::vector<uint8_t>& row) const {
        const GifImageDesc& picture = file_->Image;
        const ColorMapObject* colours = picture.ColorMap ? picture.ColorMap : file_->SColorMap;
        const int64_t from = int64_t{y} - picture.Top;
        if (!colours || from < 0 || from >= picture.Height || !rowsRead_[static_cast<size_t>(from)]) return;
        const uint8_t* indices = &indices_[static_cast<size_t>(from) * static_cast<size_t>(picture.Width)];
        for (int64_t x = 0; x < picture.Width; ++x) {
            const int64_t at = x + picture.Left;
            const int index = indices[x];
            if (at < 0 || at >= ground_.width || index == transparent_ || index >= colours->ColorCount)
                continue;
            const GifColorType& colour = colours->Colors[index];
            const uint8_t pixel[kPixelBytes] = {colour.Red, colour.Green, colour.Blue, 255};
            std::copy_n(pixel, kPixelBytes, &row[static_cast<size_t>(at) * kPixelBytes]);
        }
    }

    std::string_view bytes_;  // what is left of them
    GifFileType* file_ = nullptr;
    Size ground_;
    int transparent_ = NO_TRANSPARENT_COLOR;
    std::vector<uint8_t> indices_;
    std::vector<bool> rowsRead_;
};

}  // namespace

std::optional<Heading> gifHeading(std::string_view bytes) {
    return GifReader(bytes).heading();
}

bool readGif(std::string_view bytes, RowSink& sink) {
    GifReader reader(bytes);
    return reader.heading() && reader.read(sink);
}

}  // namespace images
