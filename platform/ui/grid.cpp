#include "platform/ui/grid.h"

#include <algorithm>

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

void Grid::setRedraw(bool on) {
    redraw_ = on;
    changed();
}

Cell* Grid::at(int column, int row) {
    if (!has(column, row)) return nullptr;
    return &cells_[static_cast<size_t>(row - 1) * static_cast<size_t>(columns_) +
                   static_cast<size_t>(column - 1)];
}

const Cell& Grid::cell(int column, int row) const {
    static const Cell kNone;
    const Cell* found = const_cast<Grid*>(this)->at(column, row);
    return found ? *found : kNone;
}

void Grid::setColumns(int count) {
    count = std::max(count, 0);
    std::vector<Cell> cells(static_cast<size_t>(count) * static_cast<size_t>(rows_));
    for (int row = 1; row <= rows_; ++row)
        for (int column = 1; column <= std::min(count, columns_); ++column)
            cells[static_cast<size_t>(row - 1) * static_cast<size_t>(count) +
                  static_cast<size_t>(column - 1)] = std::move(*at(column, row));
    cells_ = std::move(cells);
    columns_ = count;
    headings_.resize(static_cast<size_t>(count) + 1);
    widths_.resize(static_cast<size_t>(count) + 1, 64);
    changed();
}

void Grid::setRows(int count) {
    rows_ = std::max(count, 0);
    cells_.resize(static_cast<size_t>(rows_) * static_cast<size_t>(columns_));
    if (!has(active_.column, active_.row)) {
        active_ = {1, 1};
        editing_ = false;
    }
    changed();
}

void Grid::insertRow(int before) {
    before = std::clamp(before, 1, rows_ + 1);
    cells_.insert(cells_.begin() + static_cast<long>(before - 1) * columns_, static_cast<size_t>(columns_),
                  Cell{});
    ++rows_;
    changed();
}

void Grid::removeRow(int row) {
    if (row < 1 || row > rows_) return;
    auto first = cells_.begin() + static_cast<long>(row - 1) * columns_;
    cells_.erase(first, first + columns_);
    setRows(rows_ - 1);
}

void Grid::swapRows(int row, int other) {
    if (!has(1, row) || !has(1, other)) return;
    for (int column = 1; column <= columns_; ++column) std::swap(*at(column, row), *at(column, other));
    changed();
}

void Grid::clearRows(int from, int to) {
    for (int row = std::max(from, 1); row <= std::min(to, rows_); ++row)
        for (int column = 1; column <= columns_; ++column) *at(column, row) = Cell{};
    changed();
}

void Grid::setText(int column, int row, std::string text) {
    Cell* c = at(column, row);
    if (!c || c->text == text) return;
    c->text = std::move(text);
    if (editing_ && active_ == CellPosition{column, row}) editText_ = c->text;
    changed();
}

void Grid::setChecked(int column, int row, bool on) {
    Cell* c = at(column, row);
    if (!c || c->checked == on) return;
    c->checked = on;
    changed();
}

void Grid::setType(int column, int row, CellType type) {
    Cell* c = at(column, row);
    if (!c) return;
    c->type = std::move(type);
    changed();
}

void Grid::setColumnType(int column, const CellType& type) {
    for (int row = 1; row <= rows_; ++row) setType(column, row, type);
}

void Grid::setColours(int column, int row, int background, int foreground) {
    Cell* c = at(column, row);
    if (!c) return;
    c->background = background;
    c->foreground = foreground;
    changed();
}

const std::string& Grid::columnHeading(int column) const {
    return headings_[static_cast<size_t>(std::clamp(column, 0, columns_))];
}

void Grid::setColumnHeading(int column, std::string text) {
    if (column < 0 || column > columns_) return;
    headings_[static_cast<size_t>(column)] = std::move(text);
    changed();
}

int Grid::columnWidth(int column) const {
    return widths_[static_cast<size_t>(std::clamp(column, 0, columns_))];
}

void Grid::setColumnWidth(int column, int pixels) {
    if (column < 0 || column > columns_) return;
    widths_[static_cast<size_t>(column)] = std::max(pixels, 0);
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

void Grid::setActive(int column, int row) {
    if (!has(column, row)) return;
    if (editing_) commitEdit();
    if (dialog() && !(active_ == CellPosition{column, row})) dialog()->onCellLeave(*this, active_);
    if (!has(column, row)) return;  // the dialog may have made the grid smaller
    active_ = {column, row};
    changed();
}

void Grid::setEditing(bool on) {
    if (!on) {
        if (editing_) commitEdit();
        return;
    }
    const Cell& c = cell(active_.column, active_.row);
    if (!has(active_.column, active_.row) || c.type.kind == CellKind::Static ||
        c.type.kind == CellKind::CheckBox)
        return;
    editing_ = true;
    editText_ = c.text;
    changed();
}

void Grid::commitEdit() {
    editing_ = false;
    Cell* c = at(active_.column, active_.row);
    bool differs = c && c->text != editText_;
    if (differs) c->text = editText_;
    changed();
    // Typed text counts as a change by the user, whoever ends the editing.
    if (differs && dialog()) dialog()->onCellChange(*this, active_);
}

void Grid::cancelEdit() {
    editing_ = false;
    changed();
}

bool Grid::accepts(const CellType& type, char32_t character) {
    if (character < 0x20) return false;
    if (type.characters == CharacterSet::Any) return true;
    return (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
}

std::string Grid::filtered(const CellType& type, std::string_view text) {
    std::string out;
    int count = 0;
    for (size_t i = 0; i < text.size() && count < type.maxLength;) {
        char32_t c = text::nextCodePoint(text, i);
        if (!accepts(type, c)) continue;
        text::appendUtf8(out, c);
        ++count;
    }
    if (type.upperCase) return text::upper(out);
    return out;
}

}  // namespace ui
