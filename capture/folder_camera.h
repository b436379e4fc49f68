// A folder of pictures as a camera that shows one after the other.
#pragma once

#include <memory>

#include "capture/camera.h"

namespace capture {

// Null for a folder without a picture. Its pictures stand in the order of their names, and it begins with the
// last.
std::unique_ptr<Camera> openFolder(const std::string& folder);

}  // namespace capture
