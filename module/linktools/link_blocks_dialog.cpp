#include "module/linktools/link_blocks_dialog.h"

#include <algorithm>
#include <string_view>

#include "module/cad/block_attributes.h"
#include "module/dialogs/ok_cancel.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/records.h"
#include "module/store/statements.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 139;
constexpr int kLabels = 1201;
constexpr int kListRows = 9;
constexpr const char* kRemembered[] = {"", "1", "2"};  // by where the table comes from

bool isTextField(CDaoDatabase& database, const std::string& table, const char* name) {
    const std::optional<CDaoFieldInfo> field = FindField(database, table, name);
    return field && TakesText(*field, database);
}

// Links can lead to a table with both key columns and a record.
bool isUsable(CDaoDatabase& database, const std::string& table) {
    return isTextField(database, table, "PT_ID") && isTextField(database, table, "GIS_KEY") &&
           HasRecords(database,
                      "SELECT * FROM " + (database.GetConnect().onServer() ? QualifiedTable(database, table)
                                                                           : BracketedName(table)));
}

// Selects an item by its text; false when the list has none.
bool selectText(ui::List& list, const std::string& text) {
    const int index = list.findExact(text);
    if (index >= 0) list.select(index);
    return index >= 0;
}

}  // namespace

LinkBlocksDialog::LinkBlocksDialog(const std::vector<BlockReference>& references)
    : ui::Dialog(kResource, "Create GIS Links") {
    for (const BlockReference& reference : references)
        if (std::none_of(blocks_.begin(), blocks_.end(),
                         [&](const std::string& block) { return text::equalNoCase(block, reference.block); }))
            blocks_.push_back(reference.block);

    int label = kLabels;
    using namespace ui;
    auto heading = [&](const char* text) {
        add<Label>(label, text);
        return item(label++);
    };
    auto shown = [&](int id) {
        add<Edit>(id, true);
        return item(id, 1);
    };
    auto list = [&](int id) {
        add<List>(id, false, kListRows);
        return item(id, 1);
    };
    auto button = [&](int id, const char* caption) {
        add<Button>(id, caption);
        return item(id);
    };
    std::vector<Layout> paths = {row({heading("Template MDB File:"), shown(kTemplate)}),
                                 row({heading("Output MDB File    :"), shown(kOutput)})};
    Layout blocks = column({heading("Select Block to Process:"), list(kBlocks)}, 1);
    Layout attributes = column({heading("Attributes of Selected Block:"), list(kAttributes)}, 1);
    Layout tables = column({heading("Tables from Output MDB:"), list(kTables)}, 1);
    std::vector<Layout> keys = {
        row({heading("Current Block:"), shown(kBlock)}),
        row({button(kTakeFirst, "Selected First &Key Value from Attributes List"), shown(kFirst)}),
        row({button(kTakeSecond, "Selected Second &Key Value from Attributes or Tables List"),
             shown(kSecond)})};
    AddOkCancel(*this);
    setLayout(column({table(std::move(paths)),
                      row({std::move(blocks), std::move(attributes), std::move(tables)}, 1),
                      table(std::move(keys)), OkCancelRow()}));
}

void LinkBlocksDialog::onOpen() {
    choice_.templatePath = dao::DatabasePath(readState(state::kTemplatePath));
    choice_.outputPath = dao::DatabasePath(readState(state::kOutputPath));
    find(kTemplate)->setText(choice_.templatePath);
    find(kOutput)->setText(choice_.outputPath);
    for (int id : {kTakeFirst, kTakeSecond, ui::kOk}) find(id)->enable(false);
    setFocus(kBlocks);
    if (!CheckDao()) return;
    readTables();
    for (const std::string& block : blocks_) get<ui::List>(kBlocks).addItem(block);
    fillLists();
    replay();
}

void LinkBlocksDialog::readTables() {
    if (!choice_.templatePath.empty()) WithDatabase(choice_.templatePath, [](CDaoDatabase&) {});
    if (choice_.outputPath.empty()) return;
    WithDatabase(choice_.outputPath, [&](CDaoDatabase& database) {
        for (const std::string& table : UserTables(database))
            if (isUsable(database, table)) tables_.push_back(table);
    });
}

// Chooses again what was chosen last time, as far as it is there.
void LinkBlocksDialog::replay() {
    const std::string remembered = readState(state::kBlockLinkChoice);
    const size_t first = remembered.find('|');
    const size_t second = remembered.find('|', first + 1);
    if (first == std::string::npos || second == std::string::npos) return;
    if (!selectText(get<ui::List>(kBlocks), remembered.substr(0, first))) return;
    chooseBlock();
    if (selectText(get<ui::List>(kAttributes), remembered.substr(first + 1, second - first - 1))) {
        selectAttribute();
        takeFirst();
    }
    const std::string_view rest = std::string_view(remembered).substr(second + 1);
    const bool isTable = rest.starts_with('2');
    if (!rest.empty() &&
        selectText(get<ui::List>(isTable ? kTables : kAttributes), std::string(rest.substr(1)))) {
        isTable ? selectTable() : selectAttribute();
        takeSecond();
    }
}

void LinkBlocksDialog::onSelection(ui::Control& control) {
    if (get<ui::List>(control.id()).selected() < 0) return;
    switch (control.id()) {
        case kBlocks:
            return chooseBlock();
        case kAttributes:
            return selectAttribute();
        case kTables:
            return selectTable();
        default:
            return;
    }
}

void LinkBlocksDialog::chooseBlock() {
    choice_.block = get<ui::List>(kBlocks).selectedText();
    choice_.firstKey.clear();
    choice_.secondKey.clear();
    choice_.table = BlockLinkChoice::Table::kNone;
    attributes_ = BlockTags(choice_.block);
    fillLists();
    showChoice();
}

void LinkBlocksDialog::selectAttribute() {
    get<ui::List>(kTables).select(-1);
    find(kTakeFirst)->enable();
    find(kTakeSecond)->enable();
}

void LinkBlocksDialog::selectTable() {
    get<ui::List>(kAttributes).select(-1);
    find(kTakeFirst)->enable(false);
    find(kTakeSecond)->enable();
}

void LinkBlocksDialog::takeFirst() {
    choice_.firstKey = get<ui::List>(kAttributes).selectedText();
    taken();
}

void LinkBlocksDialog::takeSecond() {
    const auto& tables = get<ui::List>(kTables);
    const bool isTable = tables.selected() >= 0;
    choice_.secondKey = isTable ? tables.selectedText() : get<ui::List>(kAttributes).selectedText();
    choice_.table = isTable ? BlockLinkChoice::Table::kGiven : BlockLinkChoice::Table::kFromAttribute;
    taken();
}

// The button that was pressed can do no more for the moment.
void LinkBlocksDialog::taken() {
    fillLists();
    showChoice();
    setFocus(kAttributes);
}

void LinkBlocksDialog::fillLists() {
    using Table = BlockLinkChoice::Table;
    auto fill = [&](int id, const std::vector<std::string>& items, auto isTaken) {
        auto& list = get<ui::List>(id);
        list.clearItems();
        for (const std::string& item : items)
            if (!isTaken(item)) list.addItem(item);
    };
    fill(kAttributes, attributes_, [&](const std::string& tag) {
        return tag == choice_.firstKey ||
               (choice_.table == Table::kFromAttribute && tag == choice_.secondKey);
    });
    fill(kTables, tables_, [&](const std::string& table) {
        return choice_.table == Table::kGiven && table == choice_.secondKey;
    });
    find(kTakeFirst)->enable(false);
    find(kTakeSecond)->enable(false);
}

void LinkBlocksDialog::showChoice() {
    find(kBlock)->setText(choice_.block);
    find(kFirst)->setText(choice_.firstKey);
    find(kSecond)->setText(choice_.secondKey);
    find(ui::kOk)->enable(!choice_.outputPath.empty() && !choice_.block.empty() &&
                          !choice_.firstKey.empty() && !choice_.secondKey.empty());
}

void LinkBlocksDialog::onCommand(int id) {
    switch (id) {
        case kTakeFirst:
            return takeFirst();
        case kTakeSecond:
            return takeSecond();
        default:
            Dialog::onCommand(id);
    }
}

void LinkBlocksDialog::onOk() {
    // Enter in a list takes nothing and must not start the work.
    if (focus() != ui::kOk) return;
    writeState(choice_.block + "|" + choice_.firstKey + "|" + kRemembered[static_cast<int>(choice_.table)] +
                   choice_.secondKey,
               state::kBlockLinkChoice);
    end(ui::kOk);
}

}  // namespace norvane
