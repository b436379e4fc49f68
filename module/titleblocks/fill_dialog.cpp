#include "module/titleblocks/fill_dialog.h"

#include <algorithm>

#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/dialog_state.h"
#include "module/titleblocks/compare_dialog.h"
#include "module/titleblocks/preview_dialog.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 141;
enum Caption : int {
    kBlocksCaption = 1201,
    kBlockCaption,
    kAttributesCaption,
    kKeyAttributeCaption,
    kValuesCaption,
    kKeyValueCaption
};
constexpr int kListRows = 8;
constexpr int kSourceGroup = 1;

bool contains(const std::vector<std::string_view>& values, const std::string& wanted) {
    return std::find(values.begin(), values.end(), wanted) != values.end();
}

}  // namespace

FillDialog::FillDialog(std::vector<FillableBlock> blocks)
    : ui::Dialog(kResource, "Insert/Update Title Block/Note Block Using Database Information"),
      blocks_(std::move(blocks)) {
    addControls();
    arrange();
    setSize({720, 480});
}

void FillDialog::addControls() {
    add<ui::Label>(kBlocksCaption, "Select Block to Process:");
    add<ui::List>(kBlocks, false, kListRows).setColumns({"Inserts", "Block"});
    add<ui::Label>(kBlockCaption, "Current Block:");
    add<ui::Edit>(kBlock, true);
    add<ui::Label>(kAttributesCaption, "Select Key Attribute:");
    add<ui::List>(kAttributes, false, kListRows);
    add<ui::Label>(kKeyAttributeCaption, "Selected Key from Attributes List:");
    add<ui::Edit>(kKeyAttribute, true);
    add<ui::Label>(kValuesCaption, "Select Key Value for");
    add<ui::Label>(kValuesOf);
    add<ui::List>(kValues, false, kListRows).setSource(&values_);
    add<ui::Label>(kKeyValueCaption, "Selected Key Value from Database:");
    add<ui::Edit>(kKeyValue);
    add<ui::GroupBox>(kSource, "Source for Key Value");
    add<ui::RadioButton>(kFromDrawing, "Drawing Attri&butes", kSourceGroup);
    add<ui::RadioButton>(kFromDatabase, "Select from &Database", kSourceGroup);
    add<ui::CheckBox>(kPreview, "&Preview links");
    add<ui::Label>(kText);
    add<ui::Progress>(kBar);
    add<ui::Button>(kCompare, "&Compare...");
    add<ui::Button>(ui::kOk, "&Insert/Update", true);
    add<ui::Button>(ui::kCancel, "E&xit");
}

void FillDialog::arrange() {
    using namespace ui;
    Layout blocks = column({item(kBlocksCaption), item(kBlocks, 1), item(kBlockCaption), item(kBlock)}, 1);
    Layout attributes = column(
        {item(kAttributesCaption), item(kAttributes, 1), item(kKeyAttributeCaption), item(kKeyAttribute)}, 1);
    Layout values = column({row({item(kValuesCaption), item(kValuesOf), spring()}), item(kValues, 1),
                            item(kKeyValueCaption), item(kKeyValue)},
                           1);
    setLayout(column(
        {row({std::move(blocks), std::move(attributes), std::move(values)}, 1),
         row({group(kSource, {row({item(kFromDrawing), item(kFromDatabase)})}), spring(), item(kPreview)}),
         item(kText), item(kBar), row({item(kCompare), spring(), item(kOk), item(kCancel)})}));
}

void FillDialog::onOpen() {
    auto& list = get<ui::List>(kBlocks);
    for (const FillableBlock& block : blocks_)
        list.addItem(text::format("QTY: %4ld\t", block.inserts) + block.set.block);
    get<ui::RadioButton>(kFromDrawing).check();
    changeSource();
    setFocus(kBlocks);
    replay();
}

// Chooses again what was chosen last time, as far as it is there.
void FillDialog::replay() {
    const std::string last = readState(state::kBlockLinkRecord);
    const size_t first = last.find('|'), second = last.find('|', first + 1);
    if (first == std::string::npos || second == std::string::npos) return;
    const std::string block = last.substr(0, first), key = last.substr(first + 1, second - first - 1),
                      value = last.substr(second + 1);
    const auto place = std::find_if(blocks_.begin(), blocks_.end(), [&](const FillableBlock& known) {
        return text::equalNoCase(known.set.block, block);
    });
    if (place == blocks_.end()) return;
    get<ui::List>(kBlocks).select(static_cast<int>(place - blocks_.begin()));
    chooseBlock();
    if (get<ui::List>(kAttributes).findExact(key) < 0) return;
    showKey(key);
    if (contains(values_.shown, value)) find(kKeyValue)->setText(value);
}

bool FillDialog::isFromDatabase() const {
    return get<ui::RadioButton>(kFromDatabase).checked();
}

void FillDialog::onCommand(int id) {
    switch (id) {
        case kFromDrawing:
        case kFromDatabase:
            return changeSource();
        case kCompare:
            return compare();
        default:
            Dialog::onCommand(id);
    }
}

void FillDialog::onSelection(ui::Control& control) {
    switch (control.id()) {
        case kBlocks:
            return chooseBlock();
        case kAttributes:
            if (get<ui::List>(kAttributes).selected() >= 0)
                chooseKey(get<ui::List>(kAttributes).selectedText());
            return;
        case kValues:
            if (get<ui::List>(kValues).selected() >= 0)
                find(kKeyValue)->setText(get<ui::List>(kValues).selectedText());
            return;
        default:
            return;
    }
}

void FillDialog::onTextChange(ui::Control& control) {
    if (control.id() == kKeyValue) fillValues(control.text());
}

// Enter in a list takes nothing and must not start the work.
bool FillDialog::onKey(const ui::Key& key) {
    return key.is("Enter") && dynamic_cast<ui::List*>(find(focus()));
}

void FillDialog::changeSource() {
    for (int id : {kValues, kKeyValue}) find(id)->enable(isFromDatabase());
    if (isFromDatabase() && set_ && find(kKeyAttribute)->text().empty()) chooseFirstKey();
}

void FillDialog::chooseBlock() {
    const int selected = get<ui::List>(kBlocks).selected();
    if (selected < 0) return;
    set_ = &blocks_[static_cast<size_t>(selected)].set;
    find(kBlock)->setText(set_->block);
    showKey("");
    auto& tags = get<ui::List>(kAttributes);
    tags.clearItems();
    for (const std::string& tag : set_->tags) tags.addItem(tag);
    if (!readTables()) {
        set_ = nullptr;
        get<ui::List>(kBlocks).select(-1);
        find(kBlock)->setText("");
        tags.clearItems();
    } else if (isFromDatabase()) {
        chooseFirstKey();
    }
}

// False when the person has ended it.
bool FillDialog::readTables() {
    constexpr long kBarLength = 100, kRecordsOfStep = 1000;
    auto& bar = get<ui::Progress>(kBar);
    bar.setRange(0, kBarLength);
    find(kText)->setText("Please wait...Extract key values...");
    if (ui::backend()) ui::backend()->refresh();
    ProgressDialog progress("Title Blocks", 0, acedUsrBrk);
    // The number of records is not known before they have been read: the bar nears its end ever more slowly.
    const bool done = tables_.read(
        set_->links, set_->refused, [](const std::string& words) { ui::messageBox("Error", words); },
        [&](long records) {
            if (records % kRecordsOfStep == 0)
                bar.setPosition(static_cast<int>(kBarLength * records / (records + 20 * kRecordsOfStep)));
            return progress.step(records, "Extract key values: " + std::to_string(records) + " records");
        });
    find(kText)->setText("");
    bar.setPosition(0);
    return done;
}

// Makes an attribute the key, with its values.
void FillDialog::showKey(const std::string& attribute) {
    find(kKeyAttribute)->setText(attribute);
    find(kValuesOf)->setText(attribute.empty() ? "" : attribute + ":");
    find(kKeyValue)->setText("");
    auto& tags = get<ui::List>(kAttributes);
    tags.select(tags.findExact(attribute));
    fillValues("");
}

void FillDialog::chooseKey(const std::string& attribute) {
    showKey(attribute);
    if (!set_->find(attribute))
        ui::messageBox("Details",
                       "Values of attributes could be not properly!\nAttribute from settings: " + attribute);
}

void FillDialog::chooseFirstKey() {
    for (const std::string& tag : set_->tags)
        if (set_->find(tag)) return showKey(tag);
}

// The values of the key that hold a part, in the order of the records.
void FillDialog::fillValues(const std::string& part) {
    const BlockLink* link = set_ ? set_->find(find(kKeyAttribute)->text()) : nullptr;
    values_.shown.clear();
    if (link) values_.shown = tables_.keyValues(*link);
    if (!part.empty()) {
        const std::string wanted = text::upper(part);
        std::erase_if(values_.shown, [&](std::string_view value) {
            return text::upper(value).find(wanted) == std::string::npos;
        });
    }
    auto& list = get<ui::List>(kValues);
    list.setSource(&values_);
}

std::optional<FillChoice> FillDialog::choice() {
    FillChoice chosen;
    chosen.keyAttribute = find(kKeyAttribute)->text();
    chosen.preview = get<ui::CheckBox>(kPreview).checked();
    const std::string value = find(kKeyValue)->text();
    const BlockLink* link = set_ ? set_->find(chosen.keyAttribute) : nullptr;
    const bool hasKey = set_ && !chosen.keyAttribute.empty();
    bool isGood = hasKey;
    if (isFromDatabase()) {
        chosen.keyValue = value;
        isGood = hasKey && link && contains(tables_.keyValues(*link), value);
    }
    if (isGood) {
        chosen.block = set_->block;
        return chosen;
    }
    ui::messageBox("Error", "Invalid key!");
    if (!hasKey)
        showKey("");
    else if (isFromDatabase())
        showKey(chosen.keyAttribute);
    return std::nullopt;
}

void FillDialog::remember() {
    writeState(set_->block + "|" + find(kKeyAttribute)->text() + "|" + find(kKeyValue)->text(),
               state::kBlockLinkRecord);
}

void FillDialog::onOk() {
    if (const std::optional<FillChoice> chosen = choice()) run(*chosen);
}

void FillDialog::run(const FillChoice& chosen) {
    remember();
    const Preview preview{[&](FilledInsert& insert, bool& goesOn) {
        PreviewDialog dialog(insert, chosen.block);
        RunDialog(dialog);
        goesOn = dialog.goesOn();
        return dialog.answer();
    }};
    const FillReport report = FillBlocks(chosen, set_->links, tables_, preview);
    acutPrintf("\n%s", report.text(chosen.block).c_str());
    if (!report.endedByPreview) end(ui::kOk);
}

void FillDialog::compare() {
    std::optional<FillChoice> chosen = choice();
    if (!chosen) return;
    CompareDialog dialog(chosen->block, CompareBlocks(*chosen, set_->links, tables_));
    if (RunDialog(dialog) != ui::kOk) return;
    chosen->preview = false;
    run(*chosen);
}

}  // namespace norvane
