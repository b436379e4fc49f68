// The settings of the camera.
#pragma once

namespace norvane {

// Shows what the camera is to do, and what it can do, as its module says.
void RunCameraSettings();

}  // namespace norvane
