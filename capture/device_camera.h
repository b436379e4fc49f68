// Cameras that the system knows as video devices.
#pragma once

#include <memory>

#include "capture/camera.h"

namespace capture {

struct Device {
    std::string path;  // /dev/video0
    std::string name;  // as the device calls itself
};
// Those that give pictures which can be read here.
std::vector<Device> findDevices();
// Null for what is none, or is not to be had.
std::unique_ptr<Camera> openDevice(const std::string& path);

}  // namespace capture
