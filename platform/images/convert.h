// Pictures written into files.
#pragma once

#include <string_view>

#include "platform/images/image.h"

namespace images {

// Writes a picture file of any format as a JPEG, row by row. The file that is made takes the place of one
// that is there in one step. False when the first cannot be read or the second not be written.
bool convertToJpeg(std::string_view from, std::string_view to);

// Writes a picture as a bitmap of 24 bits; what it does not cover is white. False when that cannot be done.
bool writeBmp(const Image& image, std::string_view path);

}  // namespace images
