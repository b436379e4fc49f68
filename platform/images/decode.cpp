#include "platform/images/decode.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/files/files.h"
#include "platform/images/formats.h"
#include "platform/images/picture_file.h"
#include "platform/images/row_reducer.h"

namespace images {
namespace {

// Orientations from 5 on have what lies there as rows stand as columns.
bool liesOnItsSide(int orientation) {
    return orientation >= 5;
}

Size turned(Size size, int orientation) {
    if (liesOnItsSide(orientation)) std::swap(size.width, size.height);
    return size;
}

// Where the eight orientations of Exif have their first row and column.
Image turned(Image image, int orientation) {
    if (orientation == 1 || image.empty()) return image;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBelow = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    Image result(turned(image.size, orientation));
    for (int y = 0; y < result.size.height; ++y)
        for (int x = 0; x < result.size.width; ++x) {
            int column = liesOnItsSide(orientation) ? y : x, row = liesOnItsSide(orientation) ? x : y;
            if (fromRight) column = image.size.width - 1 - column;
            if (fromBelow) row = image.size.height - 1 - row;
            const uint8_t* from = image.pixel(column, row);
            std::copy(from, from + kPixelBytes, result.pixel(x, y));
        }
    return result;
}

}  // namespace

Format formatOf(std::string_view bytes) {
    if (bytes.substr(0, 3) == "\xFF\xD8\xFF") return Format::kJpeg;
    if (bytes.substr(0, 8) == "\x89PNG\r\n\x1A\n") return Format::kPng;
    if (bytes.substr(0, 4) == "GIF8") return Format::kGif;
    if (bytes.substr(0, 2) == "BM") return Format::kBmp;
    return Format::kNone;
}

std::optional<PictureBytes> readPictureFile(std::string_view path, size_t most) {
    constexpr size_t kLargest = size_t{1} << 29;
    std::error_code error;
    const std::filesystem::path file = files::onDisk(path);
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > kLargest) return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    PictureBytes bytes(std::min(static_cast<size_t>(size), most));
    // It may have become shorter at this moment.
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.shrink(static_cast<size_t>(stream.gcount()));
    return bytes;
}

std::optional<Heading> headingOf(std::string_view bytes) {
    switch (formatOf(bytes)) {
        case Format::kJpeg:
            return jpegHeading(bytes);
        case Format::kPng:
            return pngHeading(bytes);
        case Format::kGif:
            return gifHeading(bytes);
        case Format::kBmp:
            return bmpHeading(bytes);
        case Format::kNone:
            break;
    }
    return std::nullopt;
}

bool readRows(std::string_view bytes, Size needed, RowSink& sink) {
    switch (formatOf(bytes)) {
        case Format::kJpeg:
            return readJpeg(bytes, needed, sink);
        case Format::kPng:
            return readPng(bytes, sink);
        case Format::kGif:
            return readGif(bytes, sink);
        case Format::kBmp:
            return readBmp(bytes, sink);
        case Format::kNone:
            break;
    }
    return false;
}

std::optional<Size> sizeOf(std::string_view bytes) {
    const std::optional<Heading> heading = headingOf(bytes);
    if (!heading) return std::nullopt;
    return turned(heading->size, heading->orientation);
}

Image preview(std::string_view bytes, Size frame) {
    const std::optional<Heading> heading = headingOf(bytes);
    if (!heading) return {};
    const Size seen = fitted(turned(heading->size, heading->orientation), frame);
    const Size needed = turned(seen, heading->orientation);
    RowReducer rows(needed);
    if (!readRows(bytes, needed, rows)) return {};
    return turned(scaled(rows.take(), needed), heading->orientation);
}

// Where the beginning of a file does not say it, the whole of it may.
std::optional<Size> sizeOfFile(std::string_view path) {
    constexpr size_t kBeginning = size_t{1} << 18;
    std::optional<PictureBytes> bytes = readPictureFile(path, kBeginning);
    if (const std::optional<Size> size = bytes ? sizeOf(*bytes) : std::nullopt) return size;
    if (bytes && bytes->size() == kBeginning) bytes = readPictureFile(path);
    if (!bytes) return std::nullopt;
    return sizeOf(*bytes);
}

Image previewOfFile(std::string_view path, Size frame) {
    const std::optional<PictureBytes> bytes = readPictureFile(path);
    return bytes ? preview(*bytes, frame) : Image();
}

}  // namespace images
