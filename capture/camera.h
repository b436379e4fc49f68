// What takes pictures: a device, or a folder that a telephone has filled.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/images/image.h"

namespace capture {

// What can be set of a picture, in percent; 50 leaves it as it is.
enum class Control { kBrightness, kContrast };
constexpr int kNeutral = 50;

class Camera {
  public:
    virtual ~Camera() = default;
    virtual std::string name() const = 0;
    // The sizes of its pictures, none where it has no choice.
    virtual std::vector<images::Size> resolutions() = 0;
    // Before the first picture; a size that it does not have leaves it what it is.
    virtual void setResolution(images::Size size) = 0;
    // False when it cannot do that itself.
    virtual bool setControl(Control control, int percent) = 0;
    // The picture that is seen at this moment; nothing when the camera has gone. A device takes the time of
    // one picture.
    virtual std::optional<images::Image> next() = 0;
    // Whether what it shows changes by itself.
    virtual bool isLive() const = 0;
    // Of one that is not: to another picture, the one behind or in front of the present one.
    virtual void step(int /*direction*/) {}
};

}  // namespace capture
