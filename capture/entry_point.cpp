// The module of the camera: one function, cf:capture, whose first argument says what is wanted. 1 takes a
// picture and puts it where the symbol path_image_ZGEO says (the symbol is empty afterwards where none was
// taken), 2 lets a person choose the camera, 3 to 6 give lists of what there is to choose from.
#include <algorithm>
#include <string>
#include <vector>

#include "capture/camera_choice.h"
#include "capture/capture_window.h"
#include "capture/pick_dialog.h"
#include "platform/ads/editor.h"
#include "platform/ads/runtime.h"
#include "platform/images/convert.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace capture {
namespace {

constexpr const char* kFunction = "cf:capture";
constexpr const char* kPathSymbol = "path_image_ZGEO";
constexpr int kPercentStep = 10;
constexpr int kLongestSide = 8192;  // of a camera's pictures; one of twice that would fill the memory
enum Request { kCapture = 1, kPick = 2, kResolutions = 3, kScalings = 4, kBrightness = 5, kContrast = 6 };

std::string symbolText(const char* name) {
    resbuf* value = nullptr;
    std::string text;
    if (acedGetSym(name, &value) == RTNORM && value && value->restype == RTSTR && value->resval.rstring)
        text = value->resval.rstring;
    acutRelRb(value);
    return text;
}

void setSymbol(const char* name, const std::string& text) {
    resbuf* value = acutBuildList(RTSTR, text.c_str(), 0);
    acedPutSym(name, value);
    acutRelRb(value);
}

void tell(const std::string& text) {
    ui::ask({"Capture", text, ui::kBoxAlert, ui::kOk});
}

std::unique_ptr<Camera> presentCamera() {
    std::unique_ptr<Camera> camera = openCamera(readChoice(symbolText("usrdir$")));
    if (!camera) tell("No camera is there. Connect one, or pick another camera or a folder of pictures.");
    return camera;
}

// The six texts of a call: two sizes, brightness and contrast. A word in place of a number asks for nothing.
Wishes wishesOf(const std::vector<std::string>& texts) {
    auto number = [&](size_t i) {
        const std::optional<double> value = i < texts.size() ? text::wholeReal(texts[i]) : std::nullopt;
        return value ? std::optional(static_cast<int>(std::clamp(*value, 0.0, 65535.0))) : std::nullopt;
    };
    Wishes wishes;
    auto isSide = [](std::optional<int> side) { return side && *side > 0 && *side <= kLongestSide; };
    if (isSide(number(0)) && isSide(number(1))) wishes.resolution = {*number(0), *number(1)};
    wishes.scaling = {std::clamp(number(2).value_or(1), 1, 2), std::clamp(number(3).value_or(1), 1, 2)};
    wishes.brightness = number(4);
    wishes.contrast = number(5);
    return wishes;
}

void capture(const std::vector<std::string>& texts) {
    const std::string path = symbolText(kPathSymbol);
    setSymbol(kPathSymbol, "");
    const std::unique_ptr<Camera> camera = presentCamera();
    if (!camera) return;
    const std::optional<images::Image> image = takePicture(*camera, wishesOf(texts));
    if (!image) return;
    if (!images::writeBmp(*image, path)) return tell("The picture could not be written as " + path + ".");
    setSymbol(kPathSymbol, path);
}

void pick() {
    const std::string folder = symbolText("usrdir$");
    const std::optional<CameraChoice> choice = pickCamera(readChoice(folder));
    if (choice && !writeChoice(folder, *choice)) tell("The choice could not be kept.");
}

std::vector<std::string> listOf(int request) {
    std::vector<std::string> values;
    if (request == kScalings) return {"1x1", "1x2", "2x2"};
    if (request == kBrightness || request == kContrast)
        for (int percent = 0; percent <= 100; percent += kPercentStep)
            values.push_back(std::to_string(percent));
    if (request == kResolutions)
        if (const std::unique_ptr<Camera> camera = presentCamera())
            for (images::Size size : camera->resolutions())
                values.push_back(std::to_string(size.width) + "x" + std::to_string(size.height));
    return values;
}

void giveList(const std::vector<std::string>& values) {
    if (values.empty()) {
        acedRetNil();
        return;
    }
    resbuf* list = nullptr;
    for (size_t i = values.size(); i-- > 0;) {
        resbuf* item = acutBuildList(RTSTR, values[i].c_str(), 0);
        item->rbnext = list;
        list = item;
    }
    acedRetList(list);
    acutRelRb(list);
}

void handleCall() {
    resbuf* arguments = acedGetArgs();
    const int request = arguments && arguments->restype == RTSHORT ? arguments->resval.rint : 0;
    std::vector<std::string> texts;
    for (const resbuf* item = arguments ? arguments->rbnext : nullptr; item; item = item->rbnext)
        if (item->restype == RTSTR && item->resval.rstring) texts.emplace_back(item->resval.rstring);
    acutRelRb(arguments);
    if (request == kCapture)
        capture(texts);
    else if (request == kPick)
        pick();
    else if (request >= kResolutions && request <= kContrast)
        giveList(listOf(request));
}

}  // namespace
}  // namespace capture

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case AcRx::kInitAppMsg:
            acrxUnlockApplication(packet);
            break;
        case AcRx::kLoadDwgMsg:
            acedDefun(capture::kFunction, 0);
            break;
        case AcRx::kUnloadDwgMsg:
            acedUndef(capture::kFunction, 0);
            break;
        case AcRx::kInvkSubrMsg:
            capture::handleCall();
            break;
        default:
            break;
    }
    return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() {
    return kApiVersion;
}
