// The window with what the camera sees.
#pragma once

#include <optional>

#include "capture/adjust.h"
#include "capture/camera.h"

namespace capture {

// What is asked of a picture; values that are not asked for leave it as it is.
struct Wishes {
    images::Size resolution;
    Scaling scaling;
    std::optional<int> brightness, contrast;  // percent
};

// Shows what the camera sees until a person takes it. Nothing when the window was closed, or the camera has
// gone, which is told.
std::optional<images::Image> takePicture(Camera& camera, const Wishes& wishes);

}  // namespace capture
