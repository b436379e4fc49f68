#include "module/titleblocks/saved_links_dialog.h"

#include "module/dialogs/ok_cancel.h"

namespace norvane {

namespace {

constexpr int kResource = 1401;
constexpr int kLabel = 1201;
constexpr int kListRows = 10;

}  // namespace

SavedLinksDialog::SavedLinksDialog(std::vector<std::string> blocks)
    : ui::Dialog(kResource, "Saved Blocks Links Settings in Current Drawing"), blocks_(std::move(blocks)) {
    add<ui::List>(kBlocks, false, kListRows);
    add<ui::Label>(kLabel, "Current Block:");
    add<ui::Edit>(kBlock, true);
    AddOkCancel(*this);
    using namespace ui;
    setLayout(column({item(kBlocks, 1), row({item(kLabel), item(kBlock, 1)}), OkCancelRow()}));
    setSize({420, 300});
}

void SavedLinksDialog::onOpen() {
    for (const std::string& block : blocks_) get<ui::List>(kBlocks).addItem(block);
    find(ui::kOk)->enable(false);
    setFocus(kBlocks);
}

void SavedLinksDialog::onSelection(ui::Control&) {
    find(kBlock)->setText(get<ui::List>(kBlocks).selectedText());
    find(ui::kOk)->enable(!block().empty());
}

void SavedLinksDialog::onDoubleClick(ui::Control& control) {
    onSelection(control);
    onOk();
}

void SavedLinksDialog::onOk() {
    if (!block().empty()) end(ui::kOk);
}

}  // namespace norvane
