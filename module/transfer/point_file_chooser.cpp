#include "module/transfer/point_file_chooser.h"

#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 1481;
constexpr int kExisting = 1;
constexpr int kNew = 1004;
constexpr int kCaption = 1104;

class PointFileChooser : public ui::Dialog {
  public:
    explicit PointFileChooser(std::string folder)
        : ui::Dialog(kResource, "New or Existing File"), folder_(std::move(folder)) {
        add<ui::Label>(kCaption, "File type> .CRD");
        add<ui::Button>(kExisting, "&Existing", true);
        add<ui::Button>(kNew, "&New");
        setLayout(ui::column({ui::item(kCaption), ui::item(kExisting), ui::item(kNew)}));
    }

    std::optional<PointFileChoice> choice;

  private:
    void onCommand(int id) override {
        if (id != kExisting && id != kNew) return Dialog::onCommand(id);
        const bool isNew = id == kNew;
        const std::optional<std::string> path = isNew ? AskNewPoints(folder_) : AskExistingPoints(folder_);
        if (!path) return;
        choice = PointFileChoice{*path, isNew};
        end(ui::kOk);
    }

    std::string folder_;
};

}  // namespace

std::optional<PointFileChoice> ChoosePointFile(const std::string& folder) {
    PointFileChooser chooser(folder);
    return RunDialog(chooser) == ui::kOk ? chooser.choice : std::nullopt;
}

void ChoosePointFile(Call& call) {
    std::string folder;
    call.arguments.text(folder);
    const std::optional<PointFileChoice> choice = ChoosePointFile(folder);
    call.result = Nil{};
    if (!choice) return;
    if (!choice->isNew || files::remove(choice->path))
        call.result = choice->path;
    else
        ui::messageBox("Error", "\"" + choice->path + "\" cannot be deleted.");
}

}  // namespace norvane
