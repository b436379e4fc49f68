#include "capture/capture_window.h"

#include "platform/ui/backend.h"

namespace capture {
namespace {

constexpr int kResource = 1422;
constexpr int kCamera = 1901;
constexpr int kPicture = 1902;
constexpr int kPrevious = 1903;
constexpr int kNext = 1904;
constexpr images::Size kRoom = {480, 360};

class CaptureWindow : public ui::Dialog {
  public:
    CaptureWindow(Camera& camera, const Wishes& wishes)
        : ui::Dialog(kResource, "Capture"), camera_(camera), wishes_(wishes) {
        add<ui::Label>(kCamera, camera.name());
        add<ui::Picture>(kPicture, kRoom.width, kRoom.height);
        for (auto [id, caption] : {std::pair{kPrevious, "&Previous Picture"}, {kNext, "&Next Picture"}})
            add<ui::Button>(id, caption).show(!camera.isLive());
        add<ui::Button>(ui::kOk, "&Capture", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column({ui::item(kCamera), ui::row({ui::spring(), ui::item(kPicture), ui::spring()}),
                              ui::row({ui::item(kPrevious), ui::item(kNext), ui::spring(), ui::item(ui::kOk),
                                       ui::item(ui::kCancel)})}));
    }

    std::optional<images::Image> run() {
        camera_.setResolution(wishes_.resolution);
        inCamera_[0] = wishes_.brightness && camera_.setControl(Control::kBrightness, *wishes_.brightness);
        inCamera_[1] = wishes_.contrast && camera_.setControl(Control::kContrast, *wishes_.contrast);
        // A script acts once a picture, and ends when its steps do.
        const auto interval = ui::backend() ? ui::backend()->pictureInterval(kResource) : std::nullopt;
        const bool flows = camera_.isLive() && interval && interval->count() > 0;
        if (!see() || !open()) return std::nullopt;
        setFocus(ui::kOk);
        while (running()) {
            if (flows)
                takeEvents();
            else
                waitForEvent();
            if (running() && (camera_.isLive() || stepped_) && !see()) end(ui::kCancel);
        }
        const int answer = result();
        close();
        return answer == ui::kOk ? std::move(seen_) : std::nullopt;
    }

  private:
    // The next picture, with what the camera has not done itself.
    bool see() {
        stepped_ = false;
        seen_ = camera_.next();
        if (!seen_) {
            ui::ask({"Capture", "The camera \"" + camera_.name() + "\" gives no picture.", ui::kBoxAlert,
                     ui::kOk});
            return false;
        }
        if (wishes_.brightness && !inCamera_[0]) brighten(*seen_, *wishes_.brightness);
        if (wishes_.contrast && !inCamera_[1]) contrast(*seen_, *wishes_.contrast);
        seen_ = scaledBy(*seen_, wishes_.scaling);
        find(kCamera)->setText(camera_.name());
        get<ui::Picture>(kPicture).setImage(images::scaled(*seen_, images::fitted(seen_->size, kRoom)));
        return true;
    }

    void onCommand(int id) override {
        if (id != kPrevious && id != kNext) return Dialog::onCommand(id);
        camera_.step(id == kNext ? 1 : -1);
        stepped_ = true;
    }

    Camera& camera_;
    const Wishes& wishes_;
    bool inCamera_[2] = {};  // brightness and contrast are the camera's own business
    bool stepped_ = false;   // to a picture that has not been seen yet
    std::optional<images::Image> seen_;
};

}  // namespace

std::optional<images::Image> takePicture(Camera& camera, const Wishes& wishes) {
    return CaptureWindow(camera, wishes).run();
}

}  // namespace capture
