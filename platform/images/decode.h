// Picture files: JPEG, PNG, GIF and BMP. What a file is, its first bytes say and not its name.
#pragma once

#include <optional>
#include <string_view>

#include "platform/images/image.h"

namespace images {

// The size of a picture as it is seen, after the turn that its camera has noted; nothing for what is no
// picture.
std::optional<Size> sizeOf(std::string_view bytes);
// The picture in the largest size of its ratio within a frame. A large one is read at a part of its size, a
// file that is cut off gives what there is. Empty for what is no picture.
Image preview(std::string_view bytes, Size frame);

// The same of a file; a file that cannot be read, or is larger than half a gigabyte, has no picture.
std::optional<Size> sizeOfFile(std::string_view path);
Image previewOfFile(std::string_view path, Size frame);

}  // namespace images
