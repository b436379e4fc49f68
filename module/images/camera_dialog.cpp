#include "module/images/camera_dialog.h"

#include <string>

#include "module/dialogs/run_dialog.h"
#include "module/images/capture.h"
#include "platform/ui/dialog.h"

namespace norvane {

namespace {

constexpr int kResource = 142;

// One value of the camera: a list of what there is, the button that asks for it, and the value.
struct Value {
    CameraList list;
    std::string CameraSettings::*member;
    const char* caption;
    const char* button;
    int listId, buttonId, captionId, editId;
};

constexpr Value kValues[] = {
    {CameraList::kResolutions, &CameraSettings::resolution,
     "Current X x Y resolution:", "Return X x Y &Resolutions", 1201, 1202, 1203, 1204},
    {CameraList::kScalings, &CameraSettings::scaling, "Current X x Y scaling:", "Return X x Y &Scalings",
     1211, 1212, 1213, 1214},
    {CameraList::kBrightness, &CameraSettings::brightness, "Current brightness:", "Return &Brightness Values",
     1221, 1222, 1223, 1224},
    {CameraList::kContrast, &CameraSettings::contrast, "Current Contrast:", "Return Co&ntrast Values", 1231,
     1232, 1233, 1234},
};

class CameraDialog : public ui::Dialog {
  public:
    CameraDialog() : ui::Dialog(kResource, "Settings") {
        std::vector<ui::Layout> columns;
        for (const Value& value : kValues) {
            auto& list = add<ui::List>(value.listId);
            // Until the camera has been asked.
            list.addItem("Press button");
            list.addItem("to retreive the values!");
            add<ui::Button>(value.buttonId, value.button);
            add<ui::Label>(value.captionId, value.caption);
            add<ui::Edit>(value.editId);
            columns.push_back(ui::column({ui::item(value.listId, 1), ui::item(value.buttonId),
                                          ui::item(value.captionId), ui::item(value.editId)}));
        }
        add<ui::Button>(ui::kOk, "OK", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column({ui::row({columns[0], columns[1]}, 1), ui::row({columns[2], columns[3]}, 1),
                              ui::row({ui::spring(), ui::item(ui::kOk), ui::item(ui::kCancel)})}));
    }

  private:
    void onOpen() override {
        const CameraSettings settings = ReadCameraSettings();
        for (const Value& value : kValues) find(value.editId)->setText(settings.*value.member);
        setFocus(kValues[0].buttonId);
    }

    void onCommand(int id) override {
        for (const Value& value : kValues)
            if (id == value.buttonId) return ask(value);
        Dialog::onCommand(id);
    }

    void ask(const Value& value) {
        const std::vector<std::string> answers = AskCamera(value.list);
        if (answers.empty()) return;
        auto& list = get<ui::List>(value.listId);
        list.clearItems();
        for (const std::string& answer : answers) list.addItem(answer);
        answered_[&value - kValues] = true;
        list.select(list.findExact(find(value.editId)->text()));
    }

    void onSelection(ui::Control& control) override {
        for (const Value& value : kValues)
            if (control.id() == value.listId && answered_[&value - kValues])
                find(value.editId)->setText(static_cast<ui::List&>(control).selectedText());
    }

    void onOk() override {
        CameraSettings settings;
        for (const Value& value : kValues) settings.*value.member = find(value.editId)->text();
        WriteCameraSettings(settings);
        end(ui::kOk);
    }

    bool answered_[std::size(kValues)] = {};  // the list has values of the camera
};

}  // namespace

void RunCameraSettings() {
    CameraDialog dialog;
    RunDialog(dialog);
}

}  // namespace norvane
