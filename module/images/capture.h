// The companion module of the camera, capture.arx, and its function cf:capture.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace norvane {

// Whether there is one to work with: it is loaded, or stands in the folder of this module, which ends in a
// separator.
bool CaptureIsThere(const std::string& binDirectory);
// Loads it where it is not. False when that fails.
bool LoadCapture(const std::string& binDirectory);

// What is asked of the module about its camera.
enum class CameraList { kResolutions = 3, kScalings = 4, kBrightness = 5, kContrast = 6 };
// None when it has no answer.
std::vector<std::string> AskCamera(CameraList list);

// The four values of a camera: "640x480", "1x1", "50", "60", each of which may be empty.
struct CameraSettings {
    std::string resolution, scaling, brightness, contrast;
};
CameraSettings ReadCameraSettings();
void WriteCameraSettings(const CameraSettings& settings);

// Lets a person choose the camera.
void PickCamera();
// Takes an image, for which a file is proposed. The path of the file that the module has made; nothing when
// none was taken.
std::optional<std::string> CaptureImage(const std::string& proposed);

// A name for the file of a record's nth image: table, key and n, in a folder.
std::string CapturePath(const std::string& folder, const std::string& table, const std::string& key, long n);

}  // namespace norvane
