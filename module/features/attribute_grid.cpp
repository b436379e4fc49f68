#include "module/features/attribute_grid.h"

#include <algorithm>

#include "module/prompting/known_attributes.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kHeadings[] = {"ATTRIBUTE (Abbr.)", "ATTRIBUTE (Full name)", "LIST VALUES", "REQ.",
                                     "TYPE"};
constexpr double kNarrowest[] = {20, 22, 17, 7, 8};  // characters
constexpr const char* kAnswers = "No\tYes";
constexpr const char* kTypes = "Char\tInt\tReal";

const char* typeText(FieldKind type) {
    return type == FieldKind::kReal ? "Real" : type == FieldKind::kInt ? "Int" : "Char";
}

FieldKind typeOf(const std::string& text) {
    return text == "Real" ? FieldKind::kReal : text == "Int" ? FieldKind::kInt : FieldKind::kChar;
}

ui::CellType abbreviationCell() {
    ui::CellType type = ui::CellType::edit();
    type.upperCase = true;
    return type;
}

bool contains(const std::vector<std::string>& items, const std::string& text) {
    return std::find(items.begin(), items.end(), text) != items.end();
}

}  // namespace

AttributeGrid::AttributeGrid(ui::Grid& grid) : grid_(grid) {
    grid_.setFont({"Courier New", 16, 8, 400});
    grid_.setColumns(kType);
    for (int column = kAbbreviation; column <= kType; ++column) {
        grid_.setColumnHeading(column, kHeadings[column - 1]);
        grid_.setColumnWidthInCharacters(column, kNarrowest[column - 1]);
    }
    clear();
}

void AttributeGrid::clear() {
    grid_.setRows(0);
    addEntryRow();
    grid_.setActive(1, 1);
}

void AttributeGrid::addEntryRow() {
    int row = grid_.rows() + 1;
    grid_.setRows(row);
    grid_.setType(kAbbreviation, row, abbreviationCell());
    grid_.setType(kFullName, row, ui::CellType::edit());
    grid_.setType(kValues, row, ui::CellType::edit());
    grid_.setType(kRequired, row, ui::CellType::dropDown(kAnswers));
    grid_.setText(kRequired, row, "No");
    setType(row, FieldKind::kChar);
}

void AttributeGrid::setRows(const std::vector<FeatureFileRow>& rows) {
    grid_.setRedraw(false);
    clear();
    for (size_t i = 0; i < rows.size(); ++i) {
        addEntryRow();
        setRow(static_cast<int>(i) + 1, rows[i]);
    }
    fitColumns();
    grid_.setActive(1, 1);
    grid_.setRedraw(true);
}

std::vector<FeatureFileRow> AttributeGrid::rows() const {
    std::vector<FeatureFileRow> rows;
    for (int number = 1; number <= count(); ++number) rows.push_back(row(number));
    return rows;
}

FeatureFileRow AttributeGrid::row(int number) const {
    return {grid_.text(kRequired, number) == "Yes", typeOf(grid_.text(kType, number)),
            grid_.text(kAbbreviation, number), grid_.text(kFullName, number), values(number)};
}

void AttributeGrid::setRow(int number, const FeatureFileRow& row) {
    grid_.setText(kAbbreviation, number, row.abbreviation);
    grid_.setText(kFullName, number, row.fullName);
    grid_.setText(kRequired, number, row.required ? "Yes" : "No");
    setType(number, row.type);
    if (row.values.dropDown)
        setValues(number, row.values);
    else
        grid_.setText(kValues, number, row.values.text);
}

ValueCell AttributeGrid::values(int number) const {
    const ui::Cell& cell = grid_.cell(kValues, number);
    return {cell.type.kind == ui::CellKind::DropDown, cell.type.items, cell.text};
}

void AttributeGrid::setValues(int number, const ValueCell& values) {
    if (!values.dropDown) return setPlainValues(number);
    ui::CellType type = ui::CellType::dropDown("", true);
    type.items = values.items;
    grid_.setType(kValues, number, type);
    grid_.setText(kValues, number, values.text);
    // An attribute with a list or a default is always text.
    grid_.setType(kType, number, ui::CellType::fixed());
    grid_.setText(kType, number, typeText(FieldKind::kChar));
}

void AttributeGrid::applyValues(int number, const ValueCell& values) {
    if (const KnownAttribute* known = FindKnownCode(values.text))
        fillKnown(number, *known, known->fullName);
    else
        setValues(number, values);
    fitColumns();
}

void AttributeGrid::setPlainValues(int row) {
    grid_.setType(kValues, row, ui::CellType::edit());
    grid_.setText(kValues, row, "");
    setType(row, FieldKind::kChar);
}

void AttributeGrid::setType(int row, FieldKind type) {
    grid_.setType(kType, row, ui::CellType::dropDown(kTypes));
    grid_.setText(kType, row, typeText(type));
}

void AttributeGrid::fitColumns() {
    constexpr double kMargin = 2;  // characters
    for (int column = kAbbreviation; column <= kType; ++column) {
        double width = kNarrowest[column - 1];
        for (int row = 1; row <= grid_.rows(); ++row)
            width = std::max(width, grid_.neededWidth(column, row) + kMargin);
        grid_.setColumnWidthInCharacters(column, width);
    }
}

// --- Row commands -----------------------------------------------------------------------------------------

bool AttributeGrid::canInsert() const {
    return count() > 0 && !isEntryRow(activeRow());
}
bool AttributeGrid::canMoveUp() const {
    return activeRow() > 1 && !isEntryRow(activeRow());
}
bool AttributeGrid::canMoveDown() const {
    return activeRow() < count();
}
bool AttributeGrid::canRemove() const {
    return !isEntryRow(activeRow());
}
bool AttributeGrid::canEditValues() const {
    return grid_.active().column == kValues && !isEntryRow(activeRow());
}

void AttributeGrid::insert() {
    const int at = activeRow();
    addEntryRow();
    for (int row = grid_.rows(); row > at; --row) grid_.swapRows(row, row - 1);
}

void AttributeGrid::moveUp() {
    ui::CellPosition at = grid_.active();
    grid_.swapRows(at.row, at.row - 1);
    grid_.setActive(at.column, at.row - 1);
}

void AttributeGrid::moveDown() {
    ui::CellPosition at = grid_.active();
    grid_.swapRows(at.row, at.row + 1);
    grid_.setActive(at.column, at.row + 1);
}

void AttributeGrid::remove() {
    grid_.removeRow(activeRow());
}

// --- Automatic filling ------------------------------------------------------------------------------------

void AttributeGrid::fillKnown(int row, const KnownAttribute& known, const char* fullName) {
    grid_.setText(kAbbreviation, row, known.abbreviation);
    grid_.setText(kFullName, row, fullName);
    setValues(row, {true, {known.code}, known.code});
}

void AttributeGrid::cellEdited(ui::CellPosition at) {
    std::string typed(text::trim(grid_.text(at.column, at.row)));
    grid_.setText(at.column, at.row, typed);
    if (at.column == kAbbreviation) abbreviationEdited(at.row);
    if (at.column == kValues) valuesEdited(at.row);
    fitColumns();
}

void AttributeGrid::abbreviationEdited(int row) {
    const std::string name = grid_.text(kAbbreviation, row);
    if (isEntryRow(row) && !name.empty()) addEntryRow();
    if (const KnownAttribute* known = FindKnownAttribute(name))
        fillKnown(row, *known, known->fullName);
    else if (FindKnownCode(grid_.text(kValues, row)))
        setPlainValues(row);
}

void AttributeGrid::valuesEdited(int row) {
    const ValueCell cell = values(row);
    if (const KnownAttribute* known = FindKnownCode(cell.text)) {
        if (isEntryRow(row)) addEntryRow();
        fillKnown(row, *known, known->fullName);
    } else if (!cell.dropDown && !cell.text.empty()) {
        setValues(row, {true, enterEnds_ ? std::vector<std::string>{cell.text} : std::vector<std::string>{},
                        cell.text});
    }
}

bool AttributeGrid::cellLeft(ui::CellPosition at) {
    if (at.column != kValues || isEntryRow(at.row) || !grid_.has(at.column, at.row) ||
        values(at.row).dropDown)
        return false;
    const KnownAttribute* known = FindKnownAttribute(grid_.text(kAbbreviation, at.row));
    if (!known) return false;
    grid_.rememberForUndo();
    constexpr std::string_view kRodHeight = "ROD_HEIGHT";
    fillKnown(at.row, *known, known->abbreviation == kRodHeight ? "Rod_Height" : known->fullName);
    return true;
}

// What Enter makes of the text of a drop-down.
void AttributeGrid::endValues(int row) {
    ValueCell cell = values(row);
    if (!cell.dropDown || FindKnownCode(cell.text)) return;
    if (cell.text.empty() && !cell.items.empty())
        cell.text = cell.items.front();
    else if (!cell.text.empty() && !contains(cell.items, cell.text))
        cell.items.push_back(cell.text);
    setValues(row, cell);
}

bool AttributeGrid::enterPressed() {
    const ui::CellPosition at = grid_.active();
    const bool edited = grid_.editing();
    enterEnds_ = true;
    grid_.setEditing(false);
    enterEnds_ = false;
    if (at.column == kValues && edited) {
        endValues(at.row);
        fitColumns();
    } else if (at.column < kType) {
        grid_.setActive(at.column + 1, at.row);
    } else {
        grid_.setActive(kAbbreviation, std::min(at.row + 1, grid_.rows()));
    }
    return true;
}

bool AttributeGrid::deletePressed() {
    const ui::CellPosition at = grid_.active();
    ValueCell cell = values(at.row);
    auto item =
        std::find(cell.items.begin(), cell.items.end(), grid_.editing() ? grid_.editText() : cell.text);
    if (at.column != kValues || !cell.dropDown || item == cell.items.end()) return false;
    const size_t place = static_cast<size_t>(item - cell.items.begin());
    cell.items.erase(item);
    cell.text = cell.items.empty() ? "" : cell.items[std::min(place, cell.items.size() - 1)];
    grid_.setEditing(false);
    grid_.rememberForUndo();
    if (cell.items.empty())
        setPlainValues(at.row);
    else
        setValues(at.row, cell);
    return true;
}

}  // namespace norvane
