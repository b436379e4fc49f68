#include "module/prompting/sheet_controls.h"

#include <string>

#include "module/images/image_controls.h"

namespace norvane {

namespace sheet {
namespace {

void addUpperFields(ui::Dialog& d) {
    d.add<ui::Label>(kOutputCaption, "Current Output MDB:");
    d.add<ui::Edit>(kOutputPath, true);
    d.add<ui::Label>(kTemplateCaption, "Current Template MDB:");
    d.add<ui::Edit>(kTemplatePath, true);
    d.add<ui::Label>(kFeaturesCaption, "Available Features:");
    d.add<ui::DropDown>(kFeatures);
    d.add<ui::Label>(kTableCaption, "Current Feature:");
    d.add<ui::Edit>(kOutputTable, true);
}

void addGrid(ui::Dialog& d) {
    auto& grid = d.add<ui::Grid>(kGrid, 2, 0);
    grid.setFont({"Courier New", 16, 8, 400});
    grid.setWholeRows(true);
}

void addLowerFields(ui::Dialog& d) {
    d.add<ui::Label>(kHelp);
    d.add<ui::CheckBox>(kUseForm, "Use MDB Form:");
    d.add<ui::DropDown>(kForms);
    d.add<ui::Label>(kBanner, "", 1);
    d.add<ui::Button>(ui::kOk, "OK", true);
    d.add<ui::Button>(ui::kCancel, "Cancel");
}

ui::Layout arrangement() {
    using namespace ui;
    Layout upper =
        table({row({item(kOutputCaption), item(kOutputPath, 1), item(kFeaturesCaption), item(kFeatures)}),
               row({item(kTemplateCaption), item(kTemplatePath), item(kTableCaption), item(kOutputTable)})});
    Layout right = column({item(kHelp), row({item(kUseForm), item(kForms, 1)})});
    Layout foot = column({row({spring(), item(kBanner)}), row({spring(), item(kOk), item(kCancel)})});
    return column({upper, item(kGrid, 1), row({image_controls::layout(), right, spring()}), foot});
}

}  // namespace

void AddSheetControls(ui::Dialog& dialog) {
    addUpperFields(dialog);
    addGrid(dialog);
    image_controls::add(dialog);
    addLowerFields(dialog);
    dialog.setLayout(arrangement());
}

void ShowHelp(ui::Dialog& dialog, bool hasCamera) {
    dialog.find(kHelp)->setText(std::string("Shortcut keys:\n") + (hasCamera ? "F2 - Capture image\n" : "") +
                                "F3 - Go to the first cell of record\nF4 - Exit from spreadsheet\n"
                                "Space bar - Check an image\nCtrl+Z - Take back the last change\n"
                                "Rows marked with * must be filled in");
}

}  // namespace sheet

}  // namespace norvane
