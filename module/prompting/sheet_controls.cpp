#include "module/prompting/sheet_controls.h"

namespace norvane {

namespace sheet {
namespace {

constexpr int kPreviewWidth = 158;
constexpr int kPreviewHeight = 146;

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

// They are seen when there is something that shows and takes the images of a record.
void addImageFields(ui::Dialog& d) {
    d.add<ui::GroupBox>(kImageGroup, "Images");
    d.add<ui::Picture>(kPreview, kPreviewWidth, kPreviewHeight);
    d.add<ui::Edit>(kImagePath, true);
    d.add<ui::Label>(kImageCounter, "0 / 0");
    for (auto [id, caption] : {std::pair{kNewImage, "&New"},
                               {kUpdateImage, "&Update"},
                               {kDeleteImage, "&Delete"},
                               {kCapture, "Captu&re"},
                               {kPickCamera, "&Pick Camera"},
                               {kSetCamera, "&Set Camera"},
                               {kFirstImage, ">> F5"},
                               {kNextImage, "> F6"},
                               {kPreviousImage, "< F7"},
                               {kLastImage, "<< F8"}})
        d.add<ui::Button>(id, caption).enable(false);
    d.add<ui::GroupBox>(kFormatGroup, "Image Format");
    d.add<ui::RadioButton>(kBmp, "&BMP", 1).enable(false);
    d.add<ui::RadioButton>(kJpg, "&JPG", 1).enable(false);
    for (int id = kImageGroup; id <= kJpg; ++id) d.find(id)->show(false);
}

void addLowerFields(ui::Dialog& d) {
    d.add<ui::Label>(kHelp,
                     "Shortcut keys:\nF3 - Go to the first cell of record\nF4 - Exit from spreadsheet\n"
                     "Ctrl+Z - Take back the last change\nRows marked with * must be filled in");
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
    Layout images = group(
        kImageGroup,
        {row({column({item(kPreview), row({spring(), item(kImageCounter), spring()})}),
              column({row({item(kNewImage), item(kUpdateImage), item(kDeleteImage)}),
                      row({item(kCapture), item(kPickCamera), item(kSetCamera)}),
                      row({item(kFirstImage), item(kNextImage), item(kPreviousImage), item(kLastImage)}),
                      group(kFormatGroup, {row({item(kBmp), item(kJpg), spring()})}), spring()})}),
         item(kImagePath)});
    Layout right = column({item(kHelp), row({item(kUseForm), item(kForms, 1)})});
    Layout foot = column({row({spring(), item(kBanner)}), row({spring(), item(kOk), item(kCancel)})});
    return column({upper, item(kGrid, 1), row({images, right, spring()}), foot});
}

}  // namespace

void AddSheetControls(ui::Dialog& dialog) {
    addUpperFields(dialog);
    addGrid(dialog);
    addImageFields(dialog);
    addLowerFields(dialog);
    dialog.setLayout(arrangement());
}

}  // namespace sheet

}  // namespace norvane
