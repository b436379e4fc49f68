#include "module/titleblocks/preview_dialog.h"

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 1411;
constexpr int kLongestText = 32767;
constexpr const char* kLineEnd = "\u21B5";
constexpr int kAttributeColumn = 1, kValueColumn = 2;

}  // namespace

std::string TextAsLine(const std::string& text) {
    return text::replaceAll(text::replaceAll(text, "\r\n", kLineEnd), "\n", kLineEnd);
}

std::string LineAsText(const std::string& line) {
    return text::replaceAll(line, kLineEnd, "\r\n");
}

PreviewDialog::PreviewDialog(FilledInsert& insert, const std::string& block)
    : ui::Dialog(kResource, "Preview/Modify Attributes Values"), insert_(insert) {
    add<ui::Label>(kHandle, "Block Handle: " + insert.handle);
    add<ui::Label>(kBlock, "Block: " + block);
    auto& grid = add<ui::Grid>(kGrid, 2, static_cast<int>(insert.attributes.size()));
    grid.setColumnHeading(kAttributeColumn, "Defined Attributes");
    grid.setColumnHeading(kValueColumn, "Values from Database");
    constexpr double kAttributeWidth = 20, kValueWidth = 40;  // characters
    grid.setColumnWidthInCharacters(kAttributeColumn, kAttributeWidth);
    grid.setColumnWidthInCharacters(kValueColumn, kValueWidth);
    grid.setColumnType(kAttributeColumn, ui::CellType::fixed());
    grid.setColumnType(kValueColumn, ui::CellType::edit(ui::CharacterSet::Any, kLongestText));
    add<ui::CheckBox>(kGoesOn, "&Preview next links", true);
    add<ui::Button>(ui::kOk, "&Insert/Update", true);
    add<ui::Button>(kSkip, "Skip &next");
    add<ui::Button>(ui::kCancel, "E&xit");
    using namespace ui;
    setLayout(column({row({item(kHandle), spring(), item(kBlock)}), item(kGrid, 1), item(kGoesOn),
                      row({spring(), item(kOk), item(kSkip), item(kCancel)})}));
    setSize({560, 380});
}

bool PreviewDialog::goesOn() const {
    return get<ui::CheckBox>(kGoesOn).checked();
}

void PreviewDialog::onOpen() {
    auto& grid = get<ui::Grid>(kGrid);
    for (size_t i = 0; i < insert_.attributes.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        grid.setText(kAttributeColumn, row, insert_.attributes[i].tag);
        grid.setText(kValueColumn, row, TextAsLine(insert_.attributes[i].text));
    }
    if (!insert_.attributes.empty()) grid.setActive(kValueColumn, 1);
    setFocus(insert_.attributes.empty() ? ui::kOk : kGrid);
}

void PreviewDialog::onCommand(int id) {
    if (id == kSkip) {
        answer_ = PreviewAnswer::kSkip;
        end(kSkip);
    } else {
        Dialog::onCommand(id);
    }
}

void PreviewDialog::onOk() {
    auto& grid = get<ui::Grid>(kGrid);
    grid.setEditing(false);
    for (size_t i = 0; i < insert_.attributes.size(); ++i) {
        std::string& text = insert_.attributes[i].text;
        // What nobody has changed keeps its own line ends.
        if (std::string line = grid.text(kValueColumn, static_cast<int>(i) + 1); line != TextAsLine(text))
            text = LineAsText(line);
    }
    answer_ = PreviewAnswer::kTake;
    end(ui::kOk);
}

}  // namespace norvane
