// The choice of the camera.
#pragma once

#include <optional>

#include "capture/camera_choice.h"

namespace capture {

// Shows the devices, and the folder of pictures in their place. Nothing when it was cancelled.
std::optional<CameraChoice> pickCamera(const CameraChoice& present);

}  // namespace capture
