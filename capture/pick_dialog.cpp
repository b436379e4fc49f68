#include "capture/pick_dialog.h"

#include "capture/device_camera.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace capture {
namespace {

constexpr int kResource = 1421;
constexpr int kCaption = 1901;
constexpr int kCameras = 1902;
constexpr int kFolder = 1903;

class PickDialog : public ui::Dialog {
  public:
    explicit PickDialog(const CameraChoice& present)
        : ui::Dialog(kResource, "Pick Camera"),
          devices_(findDevices()),
          folder_(present.folder),
          chosen_(present) {
        add<ui::Label>(kCaption, "&Cameras:");
        add<ui::List>(kCameras);
        add<ui::Button>(kFolder, "&Folder of Pictures...");
        add<ui::Button>(ui::kOk, "OK", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column(
            {ui::item(kCaption), ui::item(kCameras, 1),
             ui::row({ui::item(kFolder), ui::spring(), ui::item(ui::kOk), ui::item(ui::kCancel)})}));
    }
    const CameraChoice& chosen() const { return chosen_; }

  private:
    void onOpen() override { show(); }

    // The devices, and below them the folder where there is one.
    void show() {
        auto& list = get<ui::List>(kCameras);
        list.clearItems();
        for (const Device& device : devices_) {
            list.addItem(device.name + " (" + device.path + ")");
            if (chosen_.folder.empty() && device.path == chosen_.device) list.select(list.count() - 1);
        }
        if (!folder_.empty()) list.addItem("Pictures of " + folder_);
        if (!chosen_.folder.empty()) list.select(list.count() - 1);
        if (list.count() == 0) list.addItem("No camera is connected.");
        find(ui::kOk)->enable(!devices_.empty() || !folder_.empty());
    }

    void onSelection(ui::Control& control) override {
        const auto at = static_cast<size_t>(static_cast<ui::List&>(control).selected());
        if (at < devices_.size())
            chosen_ = {devices_[at].path, ""};
        else if (!folder_.empty())
            chosen_ = {"", folder_};
    }

    // A picture stands for its folder.
    void onCommand(int id) override {
        if (id != kFolder) return Dialog::onCommand(id);
        ui::FileBox box;
        box.title = "A Picture of the Folder";
        box.filter = "Pictures (*.jpg, *.jpeg, *.png, *.bmp, *.gif)|*.jpg;*.jpeg;*.png;*.bmp;*.gif||";
        box.pattern = "*.jpg";
        box.folder = folder_;
        box.mustExist = true;
        const std::optional<std::string> picture = ui::fileBox(box);
        if (!picture) return;
        folder_ = files::folderOf(*picture);
        chosen_ = {"", folder_};
        show();
    }

    std::vector<Device> devices_;
    std::string folder_;  // that is offered below them
    CameraChoice chosen_;
};

}  // namespace

std::optional<CameraChoice> pickCamera(const CameraChoice& present) {
    PickDialog dialog(present);
    if (dialog.runModal() != ui::kOk) return std::nullopt;
    return dialog.chosen();
}

}  // namespace capture
