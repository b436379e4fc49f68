#include "capture/camera_choice.h"

#include "capture/device_camera.h"
#include "capture/folder_camera.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace capture {
namespace {

constexpr std::string_view kDevice = "camera=";
constexpr std::string_view kFolder = "folder=";

std::string pathOf(const std::string& userFolder) {
    return files::join(userFolder, "capture.ini");
}

}  // namespace

CameraChoice readChoice(const std::string& userFolder) {
    CameraChoice choice;
    for (const std::string& line :
         files::readLines(pathOf(userFolder)).value_or(std::vector<std::string>())) {
        if (text::startsWith(line, kDevice)) choice.device = line.substr(kDevice.size());
        if (text::startsWith(line, kFolder)) choice.folder = line.substr(kFolder.size());
    }
    return choice;
}

bool writeChoice(const std::string& userFolder, const CameraChoice& choice) {
    const std::string line =
        choice.folder.empty() ? std::string(kDevice) + choice.device : std::string(kFolder) + choice.folder;
    return !userFolder.empty() && files::replace(pathOf(userFolder), line + "\n");
}

std::unique_ptr<Camera> openCamera(const CameraChoice& choice) {
    if (!choice.folder.empty()) return openFolder(choice.folder);
    if (!choice.device.empty()) return openDevice(choice.device);
    const std::vector<Device> devices = findDevices();
    return devices.empty() ? nullptr : openDevice(devices.front().path);
}

}  // namespace capture
