#include "module/features/select_new_file.h"

#include "module/features/editor_resources.h"
#include "module/host/dialog_messages.h"
#include "platform/ui/backend.h"

namespace {

constexpr int kExisting = 1003;
constexpr int kNew2000 = 1004;
constexpr int kNew97 = 1005;
constexpr int kCaption = 1104;

class NewFileDialog : public ui::Dialog {
  public:
    explicit NewFileDialog(const std::string& folder)
        : ui::Dialog(resource::kSelectNewFile, "Select New File"), folder_(folder) {
        add<ui::Label>(kCaption, "File type> .MDB");
        add<ui::Button>(kExisting, "&Existing");
        add<ui::Button>(kNew2000, "New Acces&s 2000 Format");
        add<ui::Button>(kNew97, "New A&ccess '97 Format");
        setLayout(
            ui::column({ui::item(kCaption), ui::item(kExisting), ui::item(kNew2000), ui::item(kNew97)}));
    }
    NewFileChoice choice;

  private:
    void onOk() override {}  // there is no default button
    void onCommand(int id) override {
        if (id != kExisting && id != kNew2000 && id != kNew97) return Dialog::onCommand(id);
        ui::FileBox box;
        box.pattern = "*.mdb";
        box.folder = folder_;
        if (id == kExisting) {
            box.filter = "Microsoft Access Databases (*.mdb)|*.mdb||";
            box.mustExist = true;
        } else {
            box.save = true;
            box.filter = "Access Databases Files (*.mdb)|*.mdb||";
            box.defaultExtension = "mdb";
            box.askOverwrite = true;
        }
        std::optional<std::string> path = ui::fileBox(box);
        if (!path) return;
        choice = {*path, id == kExisting, id == kNew2000};
        end(ui::kOk);
    }

    std::string folder_;
};

}  // namespace

NewFileChoice SelectNewFile(const std::string& folder) {
    NewFileDialog dialog(folder);
    if (dialog.runModal() == ui::kNotCreated) PrintDialogNotCreated();
    return dialog.choice;
}
