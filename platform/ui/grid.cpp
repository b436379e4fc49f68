#include "platform/ui/grid.h"

#include <algorithm>
#include <cassert>
#include <limits>

#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace ui {

int characterCount(std::string_view text) {
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

int FixedFontMetrics::width(std::string_view text) const {
    return characterCount(text) * characterWidth_;
}

CellType CellType::fixed() {
    CellType type;
    type.kind = CellKind::Static;
    return type;
}

CellType CellType::edit(CharacterSet characters, int maxLength) {
    CellType type;
    type.characters = characters;
    type.maxLength = maxLength;
    return type;
}

CellType CellType::dropDown(std::string_view tabbedItems, bool editable) {
    CellType type;
    type.kind = CellKind::DropDown;
    if (!tabbedItems.empty()) type.items = text::split(tabbedItems, '\t');
    type.editable = editable;
    return type;
}

CellType CellType::checkBox(std::string label) {
    CellType type;
    type.kind = CellKind::CheckBox;
    type.label = std::move(label);
    return type;
}

CellType CellType::button(std::string label) {
    CellType type;
    type.kind = CellKind::Button;
    type.label = std::move(label);
    return type;
}

Grid::Grid(int id, int columns, int rows) : Control(ControlKind::Grid, id, {}) {
    setColumns(columns);
    setRows(rows);
}

void Grid::changed() {
    if (redraw_) Control::changed();
}

void Grid::changed(CellPosition at) {
    if (redraw_ && dialog()) dialog()->cellChanged(*this, at);
}

void Grid::setRedraw(bool on) {
    redraw_ = on;
    changed();
}

// --- Rows and cells
// -----------------------------------------------------------------------------------------

void Grid::setSource(GridSource* source) {
    source_ = source ? source : &own_;
    own_.setRows(0);
    types_.clear();
    colours_.clear();
    active_ = {};
    selectedTo_.reset();
    leaveEditing();
    history_.clear();
    ++filling_;
    changed();
}

void Grid::sourceChanged() {
    keepActiveInside();
    changed();
}

void Grid::cellChanged(int column, int row) {
    if (has(column, row)) changed({column, row});
}

void Grid::rowsMoved() {
    if (own_.hasHeadings()) ++headingChanges_;
}

void Grid::keepActiveInside() {
    if (selectedTo_ && !has(selectedTo_->column, selectedTo_->row)) selectedTo_.reset();
    if (has(active_.column, active_.row)) return;
    active_ = {};
    leaveEditing();
}

void Grid::setColumns(int count) {
    columns_ = std::max(count, 0);
    own_.setColumns(columns_);
    types_.clearColumnsFrom(columns_ + 1);
    colours_.clearColumnsFrom(columns_ + 1);
    const size_t kept = static_cast<size_t>(columns_) + 1;
    columnTypes_.resize(kept);
    headings_.resize(kept);
    widths_.resize(kept, 64);
    keepActiveInside();
    changed();
}

void Grid::setRows(int count) {
    assert(hasOwnCells());
    own_.setRows(std::max(count, 0));
    rowsMoved();
    types_.clearRows(rows() + 1, std::numeric_limits<int>::max());
    colours_.clearRows(rows() + 1, std::numeric_limits<int>::max());
    if (rows() == 0) {
        history_.clear();
        ++filling_;
    }
    keepActiveInside();
    changed();
}

void Grid::insertRow(int before) {
    assert(hasOwnCells());
    before = std::clamp(before, 1, rows() + 1);
    own_.insertRow(before);
    rowsMoved();
    types_.insertRow(before);
    colours_.insertRow(before);
    changed();
}

void Grid::removeRow(int row) {
    assert(hasOwnCells());
    if (row < 1 || row > rows()) return;
    own_.removeRow(row);
    rowsMoved();
    types_.removeRow(row);
    colours_.removeRow(row);
    keepActiveInside();
    changed();
}

void Grid::swapRows(int row, int other) {
    assert(hasOwnCells());
    if (!has(1, row) || !has(1, other) || row == other) return;
    own_.swapRows(row, other);
    rowsMoved();
    types_.swapRows(row, other);
    colours_.swapRows(row, other);
    changed();
}

void Grid::clearRows(int from, int to) {
    assert(hasOwnCells());
    from = std::max(from, 1);
    to = std::min(to, rows());
    for (int row = from; row <= to; ++row) own_.clearRow(row);
    if (from > to) return;
    types_.clearRows(from, to);
    colours_.clearRows(from, to);
    changed();
}

Cell Grid::cell(int column, int row) const {
    const CellColours own = colours(column, row);
    return {text(column, row), type(column, row), own.background, own.foreground};
}

std::string Grid::text(int column, int row) const {
    if (row == 0) return column <= columns_ ? columnHeading(column) : std::string();
    if (column == 0) return rowHeading(row);
    return has(column, row) ? source_->text(column, row) : std::string();
}

void Grid::setText(int column, int row, std::string text) {
    if (row == 0) return setColumnHeading(column, std::move(text));
    if (column == 0) return setRowHeading(row, std::move(text));
    if (!has(column, row) || source_->text(column, row) == text) return;
    source_->setText(column, row, std::move(text));
    const CellPosition at{column, row};
    if (editing_ && active_ == at) editText_ = source_->text(column, row);
    changed(at);
}

const CellType& Grid::type(int column, int row) const {
    static const CellType kNone;
    if (!has(column, row)) return kNone;
    if (const CellType* given = source_->type(column, row)) return *given;
    const CellType* own = types_.find({column, row});
    return own ? *own : columnTypes_[static_cast<size_t>(column)];
}

void Grid::setType(int column, int row, CellType type) {
    if (!has(column, row)) return;
    types_.set({column, row}, std::move(type));
    changed({column, row});
}

void Grid::setColumnType(int column, CellType type) {
    if (column < 1 || column > columns_) return;
    columnTypes_[static_cast<size_t>(column)] = std::move(type);
    types_.clearColumn(column);
    changed();
}

CellColours Grid::colours(int column, int row) const {
    const CellColours* own = colours_.find({column, row});
    if (own) return *own;
    return has(column, row) ? source_->colours(column, row) : CellColours{};
}

void Grid::setColours(int column, int row, int background, int foreground) {
    if (!has(column, row)) return;
    const CellPosition at{column, row};
    if (background == kOwnColour && foreground == kOwnColour)
        colours_.erase(at);
    else
        colours_.set(at, {background, foreground});
    changed(at);
}

void Grid::setSelectionColours(int background, int foreground) {
    selectionColours_ = {background, foreground};
    changed();
}

const std::string& Grid::columnHeading(int column) const {
    return headings_[static_cast<size_t>(std::clamp(column, 0, columns_))];
}

void Grid::setColumnHeading(int column, std::string text) {
    if (column < 0 || column > columns_ || headings_[static_cast<size_t>(column)] == text) return;
    headings_[static_cast<size_t>(column)] = std::move(text);
    ++headingChanges_;
    changed();
}

void Grid::setOrderMark(int column, bool descends) {
    orderColumn_ = column;
    orderDescends_ = descends;
    ++headingChanges_;
    changed();
}

void Grid::setRowHeading(int row, std::string text) {
    assert(hasOwnCells());
    if (row < 1 || row > rows() || own_.rowHeading(row) == text) return;
    own_.setRowHeading(row, std::move(text));
    ++headingChanges_;
    changed();
}

int Grid::columnWidth(int column) const {
    return widths_[static_cast<size_t>(std::clamp(column, 0, columns_))];
}

void Grid::setColumnWidth(int column, int pixels) {
    pixels = std::max(pixels, 0);
    if (column < 0 || column > columns_ || widths_[static_cast<size_t>(column)] == pixels) return;
    widths_[static_cast<size_t>(column)] = pixels;
    changed();
}

double Grid::columnWidthInCharacters(int column) const {
    return static_cast<double>(columnWidth(column)) / std::max(1, metricsOf(font_)->width("0"));
}

void Grid::setColumnWidthInCharacters(int column, double characters) {
    setColumnWidth(column, static_cast<int>(characters * metricsOf(font_)->width("0") + 0.5));
}

int Grid::rowHeight() const {
    return metricsOf(font_)->height() + 4;
}

double Grid::neededWidth(int column, int row) const {
    auto metrics = metricsOf(font_);
    return static_cast<double>(metrics->width(text(column, row))) / std::max(1, metrics->width("0"));
}

void Grid::setFont(const Font& font) {
    font_ = font;
    changed();
}

// --- The active cell
// ----------------------------------------------------------------------------------------

void Grid::setActive(int column, int row) {
    if (!has(column, row)) return;
    if (editing_) commitEdit();
    leaveEditing();
    const CellPosition left = active_;
    if (dialog() && !(left == CellPosition{column, row})) dialog()->onCellLeave(*this, left);
    if (!has(column, row)) return;  // the dialog may have made the grid smaller
    active_ = {column, row};
    leaveSelection();
    changed(left);
    changed(active_);
}

// --- Cells that are taken together -----------------------------------------------------------------------

CellRange Grid::selection() const {
    const CellPosition to = selectedTo_.value_or(active_);
    return {{std::min(active_.column, to.column), std::min(active_.row, to.row)},
            {std::max(active_.column, to.column), std::max(active_.row, to.row)}};
}

bool Grid::isSelected(CellPosition at) const {
    if (!selectedTo_) return false;
    const CellRange range = selection();
    return at.column >= range.first.column && at.column <= range.last.column && at.row >= range.first.row &&
           at.row <= range.last.row;
}

void Grid::selectTo(CellPosition at) {
    if (!selectsCells_ || !has(at.column, at.row)) return;
    if (editing_) commitEdit();
    if (at == active_)
        selectedTo_.reset();
    else
        selectedTo_ = at;
    changed();
}

void Grid::leaveSelection() {
    if (!selectedTo_) return;
    selectedTo_.reset();
    changed();
}

void Grid::setEditing(bool on) {
    if (!on) {
        if (editing_) commitEdit();
        return;
    }
    const CellKind kind = type(active_.column, active_.row).kind;
    if (!has(active_.column, active_.row) || kind == CellKind::Static || kind == CellKind::CheckBox) return;
    std::string text = this->text(active_.column, active_.row);
    const int end = characterCount(text);
    typeText(std::move(text), end);
}

void Grid::typeText(std::string text, int caret) {
    if (editing_ && text != editText_) typing_.push_back({editText_, caret_});
    editing_ = true;
    refusal_.clear();
    editText_ = std::move(text);
    caret_ = caret;
    changed(active_);
}

void Grid::undoTyping() {
    if (typing_.empty()) return cancelEdit();
    Typed before = std::move(typing_.back());
    typing_.pop_back();
    editText_ = std::move(before.text);
    caret_ = before.caret;
    refusal_.clear();
    typedForItem_.clear();
    changed(active_);
}

void Grid::rememberForUndo() {
    constexpr size_t kMostSteps = 100;
    if (!hasOwnCells()) return;
    if (history_.size() == kMostSteps) history_.erase(history_.begin());
    history_.push_back({own_, types_, colours_, active_});
}

bool Grid::undo() {
    if (history_.empty()) return false;
    leaveEditing();
    Contents before = std::move(history_.back());
    history_.pop_back();
    own_ = std::move(before.cells);
    rowsMoved();
    types_ = std::move(before.types);
    colours_ = std::move(before.colours);
    active_ = before.active;
    keepActiveInside();
    changed();
    return true;
}

void Grid::refuse(std::string reason) {
    refusal_ = std::move(reason);
    changed(active_);
}

void Grid::leaveEditing() {
    editing_ = false;
    refusal_.clear();
    typedForItem_.clear();
    typing_.clear();
}

void Grid::commitEdit() {
    leaveEditing();
    const CellPosition at = active_;
    const std::string before = text(at.column, at.row);
    if (before != editText_ && has(at.column, at.row)) {
        rememberForUndo();
        source_->setText(at.column, at.row, editText_);
    }
    const bool differs = text(at.column, at.row) != before;
    const bool isTyped = before != editText_;
    changed(at);
    // Typed text counts as a change by the user, whoever ends the editing.
    if (!dialog()) return;
    if (differs)
        dialog()->onCellChange(*this, at);
    else if (isTyped)
        dialog()->onCellRefused(*this, at, std::string(editText_));
}

void Grid::cancelEdit() {
    leaveEditing();
    changed(active_);
}

}  // namespace ui
