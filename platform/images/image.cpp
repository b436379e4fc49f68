#include "platform/images/image.h"

#include <algorithm>

namespace images {

Size fitted(Size picture, Size frame) {
    if (picture.width <= 0 || picture.height <= 0 || frame.width <= 0 || frame.height <= 0) return {};
    const int64_t byWidth = int64_t{picture.width} * frame.height;
    const int64_t byHeight = int64_t{picture.height} * frame.width;
    if (byWidth >= byHeight) return {frame.width, std::max(1, static_cast<int>(byHeight / picture.width))};
    return {std::max(1, static_cast<int>(byWidth / picture.height)), frame.height};
}

}  // namespace images
