#include "module/images/capture.h"

#include "module/cad/ads_owners.h"
#include "module/cad/lisp_symbols.h"
#include "module/cad/loaded_modules.h"
#include "module/settings/dialog_state.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kModule = "capture";
constexpr const char* kFunction = "cf:capture";
constexpr const char* kPathSymbol = "path_image_ZGEO";
constexpr const char* kAbsent = "NULL";
enum Request : short { kCapture = 1, kPick = 2 };

std::string modulePath(const std::string& binDirectory) {
    return files::join(binDirectory, std::string(kModule) + ".arx");
}

// The two numbers of "640x480"; what is missing is told by a word.
std::pair<std::string, std::string> twoNumbers(const std::string& text) {
    const size_t cross = text.find('x');
    auto orAbsent = [](std::string_view part) { return part.empty() ? kAbsent : std::string(part); };
    const std::string_view all = text;
    return {orAbsent(text::trim(all.substr(0, cross))),
            cross == std::string::npos ? kAbsent : orAbsent(text::trim(all.substr(cross + 1)))};
}

bool call(resbuf* arguments, ResultBuffers& result) {
    const ResultBuffers list(arguments);
    return list && acedInvoke(list.get(), result.out()) == RTNORM;
}

bool callWithSettings(Request request) {
    const CameraSettings settings = ReadCameraSettings();
    const auto [width, height] = twoNumbers(settings.resolution);
    const auto [across, down] = twoNumbers(settings.scaling);
    const std::string brightness = settings.brightness.empty() ? kAbsent : settings.brightness;
    const std::string contrast = settings.contrast.empty() ? kAbsent : settings.contrast;
    ResultBuffers result;
    return call(acutBuildList(RTSTR, kFunction, RTSHORT, request, RTSTR, width.c_str(), RTSTR, height.c_str(),
                              RTSTR, across.c_str(), RTSTR, down.c_str(), RTSTR, brightness.c_str(), RTSTR,
                              contrast.c_str(), 0),
                result);
}

// What no name of a file takes.
std::string nameOf(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ' ||
            std::string_view("\\/:*?\"<>|").find(c) != std::string::npos)
            c = '_';
    return text;
}

}  // namespace

bool CaptureIsThere(const std::string& binDirectory) {
    return IsArxLoaded(kModule) || files::exists(modulePath(binDirectory));
}

bool LoadCapture(const std::string& binDirectory) {
    return IsArxLoaded(kModule) || acedArxLoad(modulePath(binDirectory).c_str()) == RTNORM;
}

std::vector<std::string> AskCamera(CameraList list) {
    std::vector<std::string> values;
    ResultBuffers result;
    if (!call(acutBuildList(RTSTR, kFunction, RTSHORT, static_cast<int>(list), 0), result)) return values;
    for (const resbuf* item = result.get(); item; item = item->rbnext)
        if (item->restype == RTSTR) values.emplace_back(item->resval.rstring);
    return values;
}

CameraSettings ReadCameraSettings() {
    std::vector<std::string> parts = text::split(readState(state::kCameraSettings), '|');
    parts.resize(4);
    return {parts[0], parts[1], parts[2], parts[3]};
}

void WriteCameraSettings(const CameraSettings& s) {
    writeState(text::join({s.resolution, s.scaling, s.brightness, s.contrast}, "|"), state::kCameraSettings);
}

void PickCamera() {
    ResultBuffers result;
    call(acutBuildList(RTSTR, kFunction, RTSHORT, kPick, 0), result);
}

std::optional<std::string> CaptureImage(const std::string& proposed) {
    SetLispString(kPathSymbol, proposed);
    callWithSettings(kCapture);
    std::string path;
    GetLispValue(path, kPathSymbol);
    if (path.empty() || !files::exists(path)) return std::nullopt;
    return path;
}

std::string CapturePath(const std::string& folder, const std::string& table, const std::string& key, long n) {
    return files::join(folder, nameOf(table) + "_" + nameOf(key) + "_" + std::to_string(n) + ".bmp");
}

}  // namespace norvane
