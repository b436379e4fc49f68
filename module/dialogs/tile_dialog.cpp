#include "module/dialogs/tile_dialog.h"

#include <algorithm>
#include <cctype>

#include "module/dialogs/tile_values.h"
#include "platform/ads/editor.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

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
        if (control.kind() == ui::ControlKind::Tabs) tiles_.showPage();
        tiles_.acted(control.id(), kOnSelection, kReasonClick);
    }
    void onCellChange(ui::Grid& grid, ui::CellPosition) override {
        tiles_.acted(grid.id(), kOnSelection, kReasonClick);
    }
    void onCellClick(ui::Grid& grid, ui::CellPosition) override {
        tiles_.acted(grid.id(), kOnClick, kReasonClick);
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

// --- Running ----------------------------------------------------------------------------------------------

void TileDialog::layout() {
    const ui::Size content = LayOutPages(tiles_, measures_);
    shownSize_ = minimum_;
    if (style_ & kFitTiles)
        shownSize_ = {content.width + measures_.spacing, content.height + measures_.spacing};
}

void TileDialog::placeControls() {
    for (const TileRecord& tile : tiles_)
        if (tile.id && tile.type != TileType::kMenuEntry) window_->setRectangle(tile.id, tile.rectangle);
}

ui::Tabs* TileDialog::tabs() {
    for (size_t i = 0; i < tiles_.size(); ++i)
        if (auto* tabs = dynamic_cast<ui::Tabs*>(control(static_cast<int>(i)))) return tabs;
    return nullptr;
}

void TileDialog::showPage() {
    const ui::Tabs* turned = tabs();
    const int page = turned ? turned->page() : 0;
    for (size_t i = 0; i < tiles_.size(); ++i)
        if (ui::Control* shown = control(static_cast<int>(i)))
            shown->show(tiles_[i].page == kAllPages || tiles_[i].page == page);
    if (const ui::Control* focused = window_->find(window_->focus()); focused && !focused->visible())
        focusNextTile(false);
}

void TileDialog::turnPage(bool backwards) {
    ui::Tabs* turned = tabs();
    if (!turned) return focusNextTile(backwards);
    const int count = turned->pageCount();
    window_->userPick(*turned, (turned->page() + (backwards ? count - 1 : 1)) % count);
}

void TileDialog::show() {
    if (!window_) return;
    layout();
    window_->setSize(shownSize_);
    window_->setMinimumSize(
        {std::min(minimum_.width, shownSize_.width), std::min(minimum_.height, shownSize_.height)});
    placeControls();
    showPage();
    if (!window_->find(window_->focus())) focusNextTile(false);
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
    const bool otherTile = key.name == "Tab", otherPage = key.name == "PageDown" || key.name == "PageUp";
    if (key.control && !key.alt && (otherTile || (otherPage && tabs()))) {
        turnPage(key.shift || key.name == "PageUp");
        return true;
    }
    if (key.is("Tab")) {
        if (auto* grid = dynamic_cast<ui::Grid*>(control(index)))
            activateNextCell(*grid, key.shift);
        else
            focusNextTile(key.shift);
        return true;
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

// Tab does not lead out of a spreadsheet; Ctrl+Tab does where there are no pages to turn.
void TileDialog::activateNextCell(ui::Grid& grid, bool backwards) {
    ui::CellPosition at = grid.active();
    at.column += backwards ? -1 : 1;
    if (at.column > grid.columns())
        at = {1, at.row + 1};
    else if (at.column < 1)
        at = {grid.columns(), at.row - 1};
    grid.setActive(at.column, at.row);
}

// Alt and the letter act as a click.
void TileDialog::pressAccelerator(const Accelerator& accelerator) {
    if (ui::Control* pressed = window_->find(accelerator.tile)) window_->userClick(*pressed);
}

void TileDialog::focusNextTile(bool backwards) {
    auto stops = [this](const TileRecord& tile) {
        const ui::Control* there = tile.id ? window_->find(tile.id) : nullptr;
        if (!there || !there->takesFocus()) return false;
        switch (tile.type) {
            case TileType::kButton:
            case TileType::kPassword:
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
        if (stops(tiles_[static_cast<size_t>(at)]))
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
    SetTileValue(tiles_[static_cast<size_t>(index)], *shown, text);
    if (shown->kind() == ui::ControlKind::Tabs) showPage();
}

bool TileDialog::getTile(const std::string& name, std::string& text) {
    int index = find(name);
    if (index < 0) return false;
    TileRecord& tile = tiles_[static_cast<size_t>(index)];
    if (const ui::Control* shown = control(index)) tile.value = TileValue(tile, *shown);
    text = tile.value;
    return true;
}

void TileDialog::enableTile(const std::string& name, bool on) {
    int index = find(name);
    if (index < 0) return;
    if (ui::Control* shown = control(index)) shown->enable(on);
    const TileRecord& tile = tiles_[static_cast<size_t>(index)];
    if (tile.type == TileType::kMenuEntry && menu_) menu_->enableEntry(tile.id, on);
    if (tile.type != TileType::kRadioGroup) return;
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
    if (auto* dropDown = dynamic_cast<ui::DropDown*>(shown)) dropDown->selectText();
}

void TileDialog::setRange(const std::string& name, int from, int to) {
    if (auto* bar = dynamic_cast<ui::Progress*>(tileWindow(name))) bar->setRange(from, to);
}

void TileDialog::listClear(const std::string& name) {
    if (auto* items = dynamic_cast<ui::ItemControl*>(tileWindow(name))) items->clearItems();
}

void TileDialog::listAdd(const std::string& name, const std::string& text) {
    if (auto* items = dynamic_cast<ui::ItemControl*>(tileWindow(name))) items->addItem(text);
}

}  // namespace norvane
