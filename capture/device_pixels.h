// Pictures as devices hand them out.
#pragma once

#include <string_view>

#include "platform/images/image.h"

namespace capture {

// Two pixels in four bytes: brightness, blueness, brightness, redness (YUYV). stride: bytes of a row. Rows
// that the bytes do not hold stay empty.
images::Image imageOfYuyv(std::string_view bytes, images::Size size, size_t stride);

}  // namespace capture
