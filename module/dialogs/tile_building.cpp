// The tiles of a dialog, added in reading order.
#include <utility>

#include "module/dialogs/tile_dialog.h"
#include "platform/ads/editor.h"

namespace norvane {

namespace {

constexpr int kFirstControl = 2022;

}  // namespace

TileRecord& TileDialog::addRecord(TileType type, const std::string& name, int width) {
    TileRecord& tile = tiles_.emplace_back();
    tile.type = type;
    tile.name = name;
    tile.width = width;
    tile.page = currentPage_;
    tile.height = measures_.charHeight;
    return tile;
}

TileRecord& TileDialog::addEditRecord(TileType type, const std::string& name, int width) {
    TileRecord& tile = addRecord(type, name, width);
    tile.height = measures_.charHeight + (currentPage_ == kAllPages ? 4 : 2);
    tile.focusable = true;
    return tile;
}

TileRecord& TileDialog::addListRecord(TileType type, const std::string& name, int width, int lines) {
    TileRecord& tile = addRecord(type, name, width);
    tile.height = lines * measures_.charHeight + 4;
    tile.focusable = true;
    return tile;
}

int TileDialog::newControl(TileRecord& tile, const char* alert) {
    if (!window_) {
        // The record stays, so that later calls by its name find it and do nothing.
        acedAlert(alert);
        return 0;
    }
    tile.id = kFirstControl + nextControlNumber_++;
    return tile.id;
}

template <class C, class... Arguments>
C* TileDialog::addControl(TileRecord& tile, const char* alert, Arguments&&... arguments) {
    if (!newControl(tile, alert)) return nullptr;
    return &window()->add<C>(tile.id, std::forward<Arguments>(arguments)...);
}

template <class C, class... Arguments>
void TileDialog::addPixels(TileType type, const std::string& name, int width, int height,
                           Arguments&&... arguments) {
    TileRecord& tile = addRecord(type, name, width);
    tile.height = height;
    addControl<C>(tile, "Bad text", std::forward<Arguments>(arguments)...);
}

void TileDialog::addAccelerator(const TileRecord& tile) {
    if (char key = ui::mnemonicOf(tile.label)) accelerators_.push_back({kOnAccelerator, key, tile.id});
}

void TileDialog::addButton(const std::string& name, int widthChars, const std::string& label,
                           TileAction action) {
    TileRecord& tile = addRecord(TileType::kButton, name, widthChars);
    tile.label = label;
    tile.height = measures_.charHeight * 3 / 2;
    tile.focusable = true;
    if (action) {
        tile.action = std::move(action);
        tile.actionMask = kOnAll;
    }
    if (addControl<ui::Button>(tile, "Bad button", label)) addAccelerator(tile);
}

void TileDialog::addToggle(const std::string& name, int widthChars, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kToggle, name, widthChars);
    tile.label = label;
    tile.focusable = true;
    if (addControl<ui::CheckBox>(tile, "Bad button", label)) addAccelerator(tile);
}

void TileDialog::addEdit(const std::string& name, int widthChars) {
    if (penInput_) addButton("keyboard_button", 1, "A");
    addControl<ui::Edit>(addEditRecord(TileType::kEdit, name, widthChars), "Bad edit");
}

void TileDialog::addPassword(const std::string& name, int widthChars) {
    TileRecord& tile = addEditRecord(TileType::kPassword, name, widthChars);
    if (auto* edit = addControl<ui::Edit>(tile, "Bad edit")) edit->setSecret();
}

void TileDialog::addReadOnly(const std::string& name, int widthChars, const std::string& initialText) {
    TileRecord& tile = addEditRecord(TileType::kReadOnly, name, widthChars);
    tile.focusable = false;
    addControl<ui::Edit>(tile, "Bad edit", true);
    setTile(name, initialText);
}

void TileDialog::addText(const std::string& name, int widthChars, int alignment,
                         const std::string& initialText) {
    TileRecord& tile = addRecord(TileType::kText, name, widthChars);
    addControl<ui::Label>(tile, "Bad text", "", alignment);
    setTile(name, initialText);
}

void TileDialog::addList(const std::string& name, int widthChars, int heightRows, bool multiSelect) {
    TileRecord& tile = addListRecord(TileType::kList, name, widthChars, heightRows);
    addControl<ui::List>(tile, "Bad list", multiSelect, heightRows);
}

void TileDialog::addColumnList(const std::string& name, int widthChars, int heightRows,
                               std::vector<std::string> headings, bool multiSelect) {
    TileRecord& tile = addListRecord(TileType::kColumnList, name, widthChars, heightRows + 1);
    if (auto* list = addControl<ui::List>(tile, "Bad list", multiSelect, heightRows))
        list->setColumns(std::move(headings));
}

void TileDialog::addSpreadsheet(const std::string& name, int widthChars, int heightRows, int columns) {
    TileRecord& tile = addListRecord(TileType::kSpreadsheet, name, widthChars, 0);
    if (auto* grid = addControl<ui::Grid>(tile, "Bad list", columns))
        tile.height += (heightRows + 1) * grid->rowHeight();
}

void TileDialog::addDropDown(const std::string& name, int widthChars, bool editable) {
    TileRecord& tile =
        addRecord(editable ? TileType::kEditableDropDown : TileType::kDropDown, name, widthChars);
    tile.height = measures_.charHeight + 4;
    tile.focusable = true;
    addControl<ui::DropDown>(tile, "Bad list", editable);
}

void TileDialog::addPicture(const std::string& name, int widthPixels, int heightPixels) {
    addPixels<ui::Picture>(TileType::kPicture, name, widthPixels, heightPixels, widthPixels, heightPixels);
}

void TileDialog::addPointView(const std::string& name, int widthPixels, int heightPixels) {
    addPixels<ui::Picture>(TileType::kPointView, name, widthPixels, heightPixels, widthPixels, heightPixels);
}

void TileDialog::addWindowView(const std::string& name, int widthPixels, int heightPixels) {
    addPixels<ui::Picture>(TileType::kWindowView, name, widthPixels, heightPixels, widthPixels, heightPixels);
}

void TileDialog::addProgress(const std::string& name, int widthPixels) {
    addPixels<ui::Progress>(TileType::kProgress, name, widthPixels, measures_.charHeight + 4);
}

void TileDialog::addTabs(const std::string& name, int widthChars, std::vector<std::string> pages) {
    TileRecord& tile = addRecord(TileType::kTabs, name, widthChars);
    tile.height = measures_.charHeight * 3 / 2 + 4;
    addControl<ui::Tabs>(tile, "Bad list", std::move(pages));
}

void TileDialog::addMenu(const std::string& label) {
    if (!window_) return;
    if (!menu_) menu_ = &window()->add<ui::Menu>(kFirstControl + nextControlNumber_++);
    menu_->entries().push_back({0, label, 0, true, false, ""});
}

void TileDialog::addMenuEntry(const std::string& name, const std::string& label, TileAction action,
                              const std::string& shortcut) {
    TileRecord& tile = addRecord(TileType::kMenuEntry, name, 0);
    tile.label = label;
    tile.action = std::move(action);
    tile.actionMask = kOnClick;
    if (!menu_ || !newControl(tile, "Bad button")) return;
    menu_->entries().push_back({tile.id, label, 1, true, false, shortcut});
}

void TileDialog::addRadioGroup(const std::string& name, const std::string& label) {
    ++radioGroup_;
    TileRecord& tile = addRecord(TileType::kRadioGroup, name, 0);
    tile.label = label;
    if (!label.empty()) addControl<ui::GroupBox>(tile, "Bad button", label);
}

void TileDialog::addRadio(const std::string& name, int widthChars, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kRadio, name, widthChars);
    tile.label = label;
    tile.focusable = true;
    if (addControl<ui::RadioButton>(tile, "Bad button", label, radioGroup_)) addAccelerator(tile);
}

void TileDialog::beginGroup(const std::string& name, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kBeginGroup, name, 0);
    tile.label = label;
    tile.height = measures_.charHeight * 3 / 2;
    if (!name.empty() && !label.empty()) addControl<ui::GroupBox>(tile, "Bad button", label);
    openGroups_.push_back(currentPage_);
}

void TileDialog::endGroup() {
    TileRecord& end = addRecord(TileType::kEndGroup, "", 0);
    if (openGroups_.empty()) return;
    // On the page of its beginning, whatever page has come meanwhile.
    end.page = openGroups_.back();
    openGroups_.pop_back();
}

void TileDialog::newRow() {
    addRecord(TileType::kNewRow, "", 0);
}

void TileDialog::setAction(const std::string& name, TileAction action, unsigned mask) {
    int index = find(name);
    if (index < 0) return;
    tiles_[static_cast<size_t>(index)].action = std::move(action);
    tiles_[static_cast<size_t>(index)].actionMask = mask;
}

void TileDialog::setAnchors(const std::string& name, double x, double y, double width, double height) {
    int index = find(name);
    if (index < 0) return;
    TileRecord& tile = tiles_[static_cast<size_t>(index)];
    tile.anchorX = x, tile.anchorY = y, tile.anchorWidth = width, tile.anchorHeight = height;
}

void TileDialog::setFont(const std::string& name, const ui::Font& font) {
    if (ui::Control* shown = tileWindow(name)) shown->setOwnFont(font);
}

void TileDialog::setStretch(const std::string& name, bool stretch) {
    if (int index = find(name); index >= 0) tiles_[static_cast<size_t>(index)].stretch = stretch;
}

}  // namespace norvane
