#include "module/dialogs/tile_dialog.h"

#include <algorithm>
#include <cctype>

#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kFirstControl = 2022;
constexpr int kCaptionHeight = 19;  // pixels of a window's title bar
constexpr int kFrame = 18;
constexpr int kLargeFont = 11;

constexpr int kReasonClick = 2;
constexpr int kReasonEnter = 4;

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

}  // namespace

// The window as a dialog of the platform; all that happens in it goes to the engine.
class TileDialog::Window : public ui::Dialog {
  public:
    Window(TileDialog& tiles, int resource, const std::string& title)
        : ui::Dialog(resource, title), tiles_(tiles) {}

  private:
    void onCommand(int id) override { tiles_.acted(id, kOnClick, kReasonClick); }
    void onSelection(ui::Control& control) override {
        tiles_.acted(control.id(), kOnSelection, kReasonClick);
    }
    bool onKey(const ui::Key& key) override { return tiles_.keyPressed(key); }
    void onCancel() override { tiles_.closed(); }
    void onResize(ui::Size size) override { tiles_.resized(size); }

    TileDialog& tiles_;
};

TileDialog::TileDialog() {
    tiles_.reserve(kCapacity);
}

TileDialog::~TileDialog() {
    if (window_) window_->close();
}

ui::Dialog* TileDialog::window() {
    return window_.get();
}

void TileDialog::create(const std::string& title, int widthChars, int heightChars, int fontSize, bool bold,
                        unsigned style, int resource) {
    window_ = std::make_unique<Window>(*this, resource, title);
    style_ = style;
    ui::Font font{fontSize < kLargeFont ? "Lucida Console" : "Arial", fontSize, 0, bold ? 984 : 400};
    window_->setFont(font);
    std::shared_ptr<const ui::FontMetrics> metrics = ui::metricsOf(font);
    measures_.charHeight = metrics->height();
    measures_.charWidth = (metrics->width(kLetters) / 26 + 1) / 2;
    measures_.spacing = (style & kCompact ? 1 : 2) * measures_.charHeight / 3;
    minimum_ = {widthChars * measures_.charWidth,
                heightChars * measures_.charHeight - kFrame + kCaptionHeight};
}

// --- Building ---------------------------------------------------------------------------------------------

TileRecord& TileDialog::addRecord(TileType type, const std::string& name, int width) {
    TileRecord& tile = tiles_.emplace_back();
    tile.type = type;
    tile.name = name;
    tile.width = width;
    tile.page = currentPage_;
    tile.height = measures_.charHeight;
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
    if (!newControl(tile, "Bad button")) return;
    window_->add<ui::Button>(tile.id, label);
    addAccelerator(tile);
}

void TileDialog::addToggle(const std::string& name, int widthChars, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kToggle, name, widthChars);
    tile.label = label;
    tile.focusable = true;
    if (!newControl(tile, "Bad button")) return;
    window_->add<ui::CheckBox>(tile.id, label);
    addAccelerator(tile);
}

void TileDialog::addEdit(const std::string& name, int widthChars) {
    if (penInput_) addButton("keyboard_button", 1, "A");
    TileRecord& tile = addRecord(TileType::kEdit, name, widthChars);
    tile.height = measures_.charHeight + (currentPage_ == kAllPages ? 4 : 2);
    tile.focusable = true;
    if (newControl(tile, "Bad edit")) window_->add<ui::Edit>(tile.id);
}

void TileDialog::addText(const std::string& name, int widthChars, int alignment,
                         const std::string& initialText) {
    TileRecord& tile = addRecord(TileType::kText, name, widthChars);
    if (newControl(tile, "Bad text")) window_->add<ui::Label>(tile.id, "", alignment);
    setTile(name, initialText);
}

void TileDialog::addList(const std::string& name, int widthChars, int heightRows, bool multiSelect) {
    TileRecord& tile = addRecord(TileType::kList, name, widthChars);
    tile.height = heightRows * measures_.charHeight + 4;
    tile.focusable = true;
    if (newControl(tile, "Bad list")) window_->add<ui::List>(tile.id, multiSelect, heightRows);
}

void TileDialog::addDropDown(const std::string& name, int widthChars, bool editable) {
    TileRecord& tile =
        addRecord(editable ? TileType::kEditableDropDown : TileType::kDropDown, name, widthChars);
    tile.height = measures_.charHeight + 4;
    tile.focusable = true;
    if (newControl(tile, "Bad list")) window_->add<ui::DropDown>(tile.id, editable);
}

void TileDialog::addRadioGroup(const std::string& name, const std::string& label) {
    ++radioGroup_;
    TileRecord& tile = addRecord(TileType::kRadioGroup, name, 0);
    tile.label = label;
    if (!label.empty() && newControl(tile, "Bad button")) window_->add<ui::GroupBox>(tile.id, label);
}

void TileDialog::addRadio(const std::string& name, int widthChars, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kRadio, name, widthChars);
    tile.label = label;
    tile.focusable = true;
    if (!newControl(tile, "Bad button")) return;
    window_->add<ui::RadioButton>(tile.id, label, radioGroup_);
    addAccelerator(tile);
}

void TileDialog::beginGroup(const std::string& name, const std::string& label) {
    TileRecord& tile = addRecord(TileType::kBeginGroup, name, 0);
    tile.label = label;
    tile.height = measures_.charHeight * 3 / 2;
    if (!name.empty() && !label.empty() && newControl(tile, "Bad button"))
        window_->add<ui::GroupBox>(tile.id, label);
}

void TileDialog::endGroup() {
    addRecord(TileType::kEndGroup, "", 0);
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

void TileDialog::setStretch(const std::string& name, bool stretch) {
    if (int index = find(name); index >= 0) tiles_[static_cast<size_t>(index)].stretch = stretch;
}

// --- Running ----------------------------------------------------------------------------------------------

void TileDialog::layout() {
    int pages = 0;
    for (const TileRecord& tile : tiles_) pages = std::max(pages, tile.page + 1);
    ui::Size content;
    for (int page = pages ? 0 : kAllPages; page < pages; ++page) {
        ui::Size size = TileLayout(tiles_, measures_).run(page);
        content.width = std::max(content.width, size.width);
        content.height = std::max(content.height, size.height);
    }
    shownSize_ = minimum_;
    if (style_ & kFitTiles)
        shownSize_ = {content.width + measures_.spacing, content.height + measures_.spacing};
}

void TileDialog::placeControls() {
    for (const TileRecord& tile : tiles_)
        if (tile.id) window_->setRectangle(tile.id, tile.rectangle);
}

void TileDialog::show() {
    if (!window_) return;
    layout();
    window_->setSize(shownSize_);
    placeControls();
    focusNextTile(false);
    running_ = window_->open();
}

void TileDialog::pumpOnce() {
    if (!window_) return;
    window_->waitForEvent();
    if (running_ && !window_->running() && pendingTile_ < 0) running_ = false;  // the view is gone
    if (pendingTile_ < 0) return;
    const TileRecord tile = tiles_[static_cast<size_t>(pendingTile_)];
    pendingTile_ = -1;
    if (tile.action) tile.action(*this, tile.name);
    pendingReason_ = 0;
    if (!running_) window_->close();
}

void TileDialog::finish(bool accepted) {
    accepted_ = accepted;
    running_ = false;
    if (window_) window_->end(accepted ? ui::kOk : ui::kCancel);
}

// --- What the window reports ------------------------------------------------------------------------------

void TileDialog::acted(int id, unsigned reason, int pendingReason) {
    int index = indexOfControl(id);
    if (index < 0 || !(tiles_[static_cast<size_t>(index)].actionMask & reason)) return;
    pendingTile_ = index;
    pendingReason_ = pendingReason;
}

bool TileDialog::keyPressed(const ui::Key& key) {
    int index = indexOfControl(window_->focus());
    if (key.is("Enter")) {
        if (index < 0) return true;
        if (tiles_[static_cast<size_t>(index)].actionMask & kOnEnter) {
            pendingTile_ = index;
            pendingReason_ = kReasonEnter;
            return true;
        }
        return tiles_[static_cast<size_t>(index)].type != TileType::kButton;
    }
    if (key.is("Tab")) {
        bool spreadsheet = index >= 0 && tiles_[static_cast<size_t>(index)].type == TileType::kSpreadsheet;
        if (!spreadsheet) focusNextTile(key.shift);
        return !spreadsheet;
    }
    if (key.alt && key.name.size() == 1) {
        char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(key.name[0])));
        for (const Accelerator& accelerator : accelerators_)
            if (accelerator.key == letter) {
                pressAccelerator(accelerator);
                return true;
            }
    }
    return false;
}

// Alt and the letter act as a click.
void TileDialog::pressAccelerator(const Accelerator& accelerator) {
    if (ui::Control* pressed = window_->find(accelerator.tile)) window_->userClick(*pressed);
}

void TileDialog::focusNextTile(bool backwards) {
    auto stops = [](const TileRecord& tile) {
        switch (tile.type) {
            case TileType::kButton:
            case TileType::kEdit:
            case TileType::kDropDown:
            case TileType::kEditableDropDown:
            case TileType::kToggle:
            case TileType::kRadio:
                return tile.focusable;
            default:
                return false;
        }
    };
    const int count = static_cast<int>(tiles_.size());
    int at = indexOfControl(window_->focus());
    if (at < 0) at = backwards ? 0 : count - 1;
    for (int step = 0; step < count; ++step) {
        at = (at + (backwards ? count - 1 : 1)) % count;
        if (stops(tiles_[static_cast<size_t>(at)]) && tiles_[static_cast<size_t>(at)].id)
            return window_->setFocus(tiles_[static_cast<size_t>(at)].id);
    }
}

// The frame's close button and Escape are the Cancel button where there is one.
void TileDialog::closed() {
    for (size_t i = 0; i < tiles_.size(); ++i)
        if (tiles_[i].name == "cancel" && tiles_[i].action) {
            pendingTile_ = static_cast<int>(i);
            pendingReason_ = kReasonClick;
            return;
        }
    finish(false);
}

void TileDialog::resized(ui::Size size) {
    if (minimum_.width <= 0 && minimum_.height <= 0) return;
    for (TileRecord& tile : tiles_)
        tile.rectangle =
            AnchoredRectangle(tile, size.width - shownSize_.width, size.height - shownSize_.height);
    shownSize_ = size;
    placeControls();
}

// --- By name ----------------------------------------------------------------------------------------------

int TileDialog::find(const std::string& name) {
    for (size_t i = 0; i < tiles_.size(); ++i)
        if (tiles_[i].name == name) return static_cast<int>(i);
    if (!(style_ & kSilent)) acutPrintf("Tile %s is not found", name.c_str());
    return -1;
}

int TileDialog::indexOfControl(int id) const {
    for (size_t i = 0; i < tiles_.size(); ++i)
        if (id && tiles_[i].id == id) return static_cast<int>(i);
    return -1;
}

ui::Control* TileDialog::control(int index) {
    return index >= 0 && window_ ? window_->find(tiles_[static_cast<size_t>(index)].id) : nullptr;
}

ui::Control* TileDialog::tileWindow(const std::string& name) {
    return control(find(name));
}

void TileDialog::setTile(const std::string& name, const std::string& text) {
    int index = find(name);
    ui::Control* shown = control(index);
    if (!shown) return;
    tiles_[static_cast<size_t>(index)].value = text;
    if (auto* toggle = dynamic_cast<ui::CheckBox*>(shown))
        toggle->check(text == "1");
    else if (auto* radio = dynamic_cast<ui::RadioButton*>(shown))
        radio->check(text == "1");
    else if (auto* items = dynamic_cast<ui::ItemControl*>(shown))
        items->select(static_cast<int>(text::toLong(text)));
    else
        shown->setText(text);
}

namespace {

std::string valueOf(const ui::Control& control) {
    if (auto* toggle = dynamic_cast<const ui::CheckBox*>(&control)) return toggle->checked() ? "1" : "0";
    if (auto* radio = dynamic_cast<const ui::RadioButton*>(&control)) return radio->checked() ? "1" : "0";
    if (auto* list = dynamic_cast<const ui::List*>(&control); list && list->multiple()) {
        std::vector<std::string> indices;
        for (int index : list->selection()) indices.push_back(std::to_string(index));
        return text::join(indices, " ");
    }
    if (auto* dropDown = dynamic_cast<const ui::DropDown*>(&control); dropDown && dropDown->editable())
        return dropDown->text();
    if (auto* items = dynamic_cast<const ui::ItemControl*>(&control))
        return items->selected() < 0 ? "" : std::to_string(items->selected());
    return control.text();
}

}  // namespace

bool TileDialog::getTile(const std::string& name, std::string& text) {
    int index = find(name);
    if (index < 0) return false;
    if (ui::Control* shown = control(index)) tiles_[static_cast<size_t>(index)].value = valueOf(*shown);
    text = tiles_[static_cast<size_t>(index)].value;
    return true;
}

void TileDialog::enableTile(const std::string& name, bool on) {
    int index = find(name);
    if (index < 0) return;
    if (ui::Control* shown = control(index)) shown->enable(on);
    if (tiles_[static_cast<size_t>(index)].type != TileType::kRadioGroup) return;
    for (size_t i = static_cast<size_t>(index) + 1; i < tiles_.size(); ++i) {
        if (tiles_[i].type == TileType::kNewRow) continue;
        if (tiles_[i].type != TileType::kRadio) break;
        if (ui::Control* radio = control(static_cast<int>(i))) radio->enable(on);
    }
}

void TileDialog::focusTile(const std::string& name) {
    ui::Control* shown = tileWindow(name);
    if (!shown) return;
    window_->setFocus(shown->id());
    if (auto* edit = dynamic_cast<ui::Edit*>(shown)) edit->selectRange(0, -1);
}

void TileDialog::listClear(const std::string& name) {
    if (auto* items = dynamic_cast<ui::ItemControl*>(tileWindow(name))) items->clearItems();
}

void TileDialog::listAdd(const std::string& name, const std::string& text) {
    if (auto* items = dynamic_cast<ui::ItemControl*>(tileWindow(name))) items->addItem(text);
}

}  // namespace norvane
