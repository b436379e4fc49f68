#include "capture/device_camera.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "capture/device_pixels.h"
#include "platform/files/descriptor.h"
#include "platform/images/decode.h"

namespace capture {
namespace {

constexpr uint32_t kFormats[] = {V4L2_PIX_FMT_MJPEG, V4L2_PIX_FMT_JPEG, V4L2_PIX_FMT_YUYV};
constexpr int kPatience = 3000;  // milliseconds for a picture
constexpr uint32_t kBuffers = 4;

// Asks the driver, again where a signal came in between.
template <typename Argument>
bool ask(const files::Descriptor& device, unsigned long request, Argument& argument) {
    int result = 0;
    do result = ::ioctl(device.get(), request, &argument);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

// The first of our formats that the device has; 0 for none.
uint32_t formatOf(const files::Descriptor& device) {
    std::vector<uint32_t> has;
    v4l2_fmtdesc format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    for (; ask(device, VIDIOC_ENUM_FMT, format); ++format.index) has.push_back(format.pixelformat);
    for (uint32_t wanted : kFormats)
        if (std::find(has.begin(), has.end(), wanted) != has.end()) return wanted;
    return 0;
}

std::string nameOf(const files::Descriptor& device) {
    v4l2_capability abilities{};
    if (!ask(device, VIDIOC_QUERYCAP, abilities)) return "";
    const uint32_t all =
        abilities.capabilities & V4L2_CAP_DEVICE_CAPS ? abilities.device_caps : abilities.capabilities;
    if (!(all & V4L2_CAP_VIDEO_CAPTURE) || !(all & V4L2_CAP_STREAMING)) return "";
    const auto* name = reinterpret_cast<const char*>(abilities.card);
    return {name, std::find(name, name + sizeof abilities.card, '\0')};
}

files::Descriptor openPath(const std::string& path) {
    return files::Descriptor(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
}

// A buffer of the driver in our memory.
class Mapped {
  public:
    Mapped(const files::Descriptor& device, const v4l2_buffer& buffer)
        : size_(buffer.length),
          start_(::mmap(nullptr, buffer.length, PROT_READ, MAP_SHARED, device.get(), buffer.m.offset)) {}
    ~Mapped() {
        if (good()) ::munmap(start_, size_);
    }
    Mapped(const Mapped&) = delete;
    Mapped& operator=(const Mapped&) = delete;
    bool good() const { return start_ != MAP_FAILED; }
    std::string_view bytes(size_t used) const {
        return {static_cast<const char*>(start_), std::min(used, size_)};
    }

  private:
    size_t size_;
    void* start_;
};

class DeviceCamera : public Camera {
  public:
    DeviceCamera(files::Descriptor device, std::string name)
        : device_(std::move(device)), name_(std::move(name)), format_(formatOf(device_)) {}
    ~DeviceCamera() override {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (streaming_) ask(device_, VIDIOC_STREAMOFF, type);
    }

    std::string name() const override { return name_; }
    bool isLive() const override { return true; }

    std::vector<images::Size> resolutions() override {
        std::vector<images::Size> sizes;
        v4l2_frmsizeenum entry{};
        entry.pixel_format = format_;
        for (; ask(device_, VIDIOC_ENUM_FRAMESIZES, entry); ++entry.index) {
            if (entry.type == V4L2_FRMSIZE_TYPE_DISCRETE) {
                sizes.push_back(
                    {static_cast<int>(entry.discrete.width), static_cast<int>(entry.discrete.height)});
                continue;
            }
            // Any size within a range: those that are usual.
            const v4l2_frmsize_stepwise& range = entry.stepwise;
            for (images::Size usual : {images::Size{320, 240}, {640, 480}, {1280, 720}, {1920, 1080}})
                if (usual.width >= static_cast<int>(range.min_width) &&
                    usual.width <= static_cast<int>(range.max_width) &&
                    usual.height >= static_cast<int>(range.min_height) &&
                    usual.height <= static_cast<int>(range.max_height))
                    sizes.push_back(usual);
            break;
        }
        return sizes;
    }

    void setResolution(images::Size size) override { wanted_ = size; }

    bool setControl(Control control, int percent) override {
        v4l2_queryctrl range{};
        range.id = control == Control::kBrightness ? V4L2_CID_BRIGHTNESS : V4L2_CID_CONTRAST;
        if (!ask(device_, VIDIOC_QUERYCTRL, range) || range.flags & V4L2_CTRL_FLAG_DISABLED) return false;
        v4l2_control value{};
        value.id = range.id;
        value.value =
            range.minimum + static_cast<int>((int64_t{range.maximum} - range.minimum) * percent / 100);
        return ask(device_, VIDIOC_S_CTRL, value);
    }

    std::optional<images::Image> next() override {
        if (!streaming_ && !start()) return std::nullopt;
        pollfd waiting{device_.get(), POLLIN, 0};
        int ready = 0;
        do ready = ::poll(&waiting, 1, kPatience);
        while (ready < 0 && errno == EINTR);
        v4l2_buffer buffer = ofOurs(0);
        if (ready <= 0 || !(waiting.revents & POLLIN) || !ask(device_, VIDIOC_DQBUF, buffer) ||
            buffer.index >= buffers_.size())
            return std::nullopt;
        images::Image image = imageOf(buffers_[buffer.index]->bytes(buffer.bytesused));
        ask(device_, VIDIOC_QBUF, buffer);
        // A picture that came over damaged gives way to the one before.
        if (!image.empty()) last_ = std::move(image);
        return last_;
    }

  private:
    static v4l2_buffer ofOurs(uint32_t index) {
        v4l2_buffer buffer{};
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        buffer.index = index;
        return buffer;
    }

    bool start() {
        v4l2_format format{};
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (!ask(device_, VIDIOC_G_FMT, format)) return false;
        if (wanted_.width > 0) {
            format.fmt.pix.width = static_cast<uint32_t>(wanted_.width);
            format.fmt.pix.height = static_cast<uint32_t>(wanted_.height);
        }
        format.fmt.pix.pixelformat = format_;
        format.fmt.pix.field = V4L2_FIELD_ANY;
        if (!ask(device_, VIDIOC_S_FMT, format) || format.fmt.pix.pixelformat != format_) return false;
        size_ = {static_cast<int>(format.fmt.pix.width), static_cast<int>(format.fmt.pix.height)};
        stride_ = format.fmt.pix.bytesperline;
        return map() && run();
    }

    bool map() {
        v4l2_requestbuffers request{};
        request.count = kBuffers;
        request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        request.memory = V4L2_MEMORY_MMAP;
        if (!ask(device_, VIDIOC_REQBUFS, request)) return false;
        for (uint32_t i = 0; i < request.count; ++i) {
            v4l2_buffer buffer = ofOurs(i);
            if (!ask(device_, VIDIOC_QUERYBUF, buffer)) return false;
            buffers_.push_back(std::make_unique<Mapped>(device_, buffer));
            if (!buffers_.back()->good() || !ask(device_, VIDIOC_QBUF, buffer)) return false;
        }
        return !buffers_.empty();
    }

    bool run() {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        return streaming_ = ask(device_, VIDIOC_STREAMON, type);
    }

    images::Image imageOf(std::string_view bytes) const {
        if (format_ == V4L2_PIX_FMT_YUYV) return imageOfYuyv(bytes, size_, stride_);
        const std::optional<images::Size> size = images::sizeOf(bytes);
        return size ? images::preview(bytes, *size) : images::Image();
    }

    files::Descriptor device_;
    std::string name_;
    uint32_t format_;
    images::Size wanted_, size_;
    size_t stride_ = 0;
    bool streaming_ = false;
    std::vector<std::unique_ptr<Mapped>> buffers_;
    std::optional<images::Image> last_;
};

}  // namespace

std::vector<Device> findDevices() {
    std::vector<Device> devices;
    std::error_code error;
    for (std::filesystem::directory_iterator it("/dev", error), end; !error && it != end;
         it.increment(error)) {
        const std::string path = it->path().string();
        if (path.rfind("/dev/video", 0) != 0) continue;
        const files::Descriptor device = openPath(path);
        const std::string name = device ? nameOf(device) : "";
        if (!name.empty() && formatOf(device)) devices.push_back({path, name});
    }
    std::sort(devices.begin(), devices.end(),
              [](const Device& a, const Device& b) { return a.path < b.path; });
    return devices;
}

std::unique_ptr<Camera> openDevice(const std::string& path) {
    files::Descriptor device = openPath(path);
    if (!device) return nullptr;
    std::string name = nameOf(device);
    if (name.empty() || !formatOf(device)) return nullptr;
    return std::make_unique<DeviceCamera>(std::move(device), std::move(name));
}

}  // namespace capture
