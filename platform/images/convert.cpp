#include "platform/images/convert.h"

#include <string>

#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/images/jpeg_writer.h"
#include "platform/images/picture_file.h"
#include "platform/images/white_ground.h"

namespace images {

bool convertToJpeg(std::string_view from, std::string_view to) {
    const std::optional<PictureBytes> bytes = readPictureFile(from);
    const std::optional<Heading> heading = bytes ? headingOf(*bytes) : std::nullopt;
    if (!heading) return false;
    JpegWriter writer;
    if (!readRows(*bytes, heading->size, writer)) return false;
    const std::string made = writer.finish();
    return !made.empty() && files::replace(to, made);
}

bool writeBmp(const Image& image, std::string_view path) {
    if (image.empty()) return false;
    constexpr size_t kHead = 54, kColours = 3;
    const auto width = static_cast<size_t>(image.size.width), height = static_cast<size_t>(image.size.height);
    const size_t stride = (width * kColours + 3) / 4 * 4;
    std::string bytes(kHead + stride * height, '\0');
    bytes[0] = 'B', bytes[1] = 'M';
    files::putLittle(&bytes[2], static_cast<uint32_t>(bytes.size()));
    files::putLittle(&bytes[10], uint32_t{kHead});
    files::putLittle(&bytes[14], uint32_t{kHead - 14});
    files::putLittle(&bytes[18], static_cast<int32_t>(width));
    files::putLittle(&bytes[22], static_cast<int32_t>(height));
    files::putLittle(&bytes[26], uint16_t{1});   // planes
    files::putLittle(&bytes[28], uint16_t{24});  // bits
    files::putLittle(&bytes[34], static_cast<uint32_t>(stride * height));
    for (size_t y = 0; y < height; ++y)
        for (size_t x = 0; x < width; ++x) {
            uint8_t colours[kColours];
            putOnWhite(image.pixel(static_cast<int>(x), static_cast<int>(height - 1 - y)), colours);
            for (size_t c = 0; c < kColours; ++c)
                bytes[kHead + y * stride + x * kColours + c] = static_cast<char>(colours[kColours - 1 - c]);
        }
    return files::replace(path, bytes);
}

}  // namespace images
