// Which camera a person has chosen. It is kept in capture.ini in the folder of a person's settings.
#pragma once

#include <memory>
#include <string>

#include "capture/camera.h"

namespace capture {

// A device by its path, or a folder; neither: the first device that there is.
struct CameraChoice {
    std::string device;
    std::string folder;
};

CameraChoice readChoice(const std::string& userFolder);
// False when it cannot be kept.
bool writeChoice(const std::string& userFolder, const CameraChoice& choice);

// The camera that was chosen; null when it is not to be had.
std::unique_ptr<Camera> openCamera(const CameraChoice& choice);

}  // namespace capture
