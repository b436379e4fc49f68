#include "module/images/image_controls.h"

#include <utility>

namespace norvane {

namespace image_controls {

namespace {

constexpr int kPreviewWidth = 158;
constexpr int kPreviewHeight = 146;
constexpr int kFormatButtons = 1;  // the group of the radio buttons

}  // namespace

void add(ui::Dialog& d) {
    d.add<ui::GroupBox>(kGroup, "Images");
    d.add<ui::Picture>(kPreview, kPreviewWidth, kPreviewHeight).setClickable();
    d.find(kPreview)->setExplanation("Click to see the image in full size");
    d.add<ui::Edit>(kPath, true);
    d.add<ui::Label>(kCounter, "0 / 0");
    for (auto [id, caption] : {std::pair{kNew, "&New"},
                               {kUpdate, "&Update"},
                               {kDelete, "&Delete"},
                               {kCapture, "Captu&re"},
                               {kPickCamera, "&Pick Camera"},
                               {kSetCamera, "&Set Camera"},
                               {kFirst, ">> F5"},
                               {kNext, "> F6"},
                               {kPrevious, "< F7"},
                               {kLast, "<< F8"}})
        d.add<ui::Button>(id, caption);
    d.add<ui::GroupBox>(kFormatGroup, "Image Format");
    d.add<ui::RadioButton>(kBmp, "&BMP", kFormatButtons);
    d.add<ui::RadioButton>(kJpg, "&JPG", kFormatButtons);
}

ui::Layout layout() {
    using namespace ui;
    return group(kGroup,
                 {row({column({item(kPreview), row({spring(), item(kCounter), spring()})}),
                       column({row({item(kNew), item(kUpdate), item(kDelete)}),
                               row({item(kFirst), item(kNext), item(kPrevious), item(kLast)}),
                               row({item(kCapture), item(kPickCamera), item(kSetCamera)}),
                               group(kFormatGroup, {row({item(kBmp), item(kJpg), spring()})}), spring()})}),
                  item(kPath)});
}

void showCamera(ui::Dialog& dialog, bool on) {
    for (int id : {kCapture, kPickCamera, kSetCamera, kFormatGroup, kBmp, kJpg}) dialog.find(id)->show(on);
}

}  // namespace image_controls

}  // namespace norvane
