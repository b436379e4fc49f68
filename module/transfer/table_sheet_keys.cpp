#include "module/transfer/table_sheet_keys.h"

#include <algorithm>

namespace norvane {

namespace {

bool isEdited(const ui::Grid& grid, ui::CellKind kind) {
    return grid.editing() && grid.type(grid.active().column, grid.active().row).kind == kind;
}

ui::CellKind activeKind(const ui::Grid& grid) {
    return grid.type(grid.active().column, grid.active().row).kind;
}

std::string activeText(const ui::Grid& grid) {
    return grid.editing() ? grid.editText() : grid.text(grid.active().column, grid.active().row);
}

bool isSideways(const ui::Key& key) {
    return key.is("Left") || key.is("Right");
}

bool isUpOrDown(const ui::Key& key) {
    return key.is("Up") || key.is("Down");
}

}  // namespace

int TableSheetKeys::rowWithin(const ui::Grid& grid, int row) const {
    return std::clamp(row, 1, std::max(1, lastRow(grid)));
}

// --- Pressed ---------------------------------------------------------------------------------------------

TableSheetKeys::Outcome TableSheetKeys::press(ui::Grid& grid, const ui::Key& key) {
    pressed_.clear();
    if (key.alt || (key.shift && !key.is("Tab"))) return Outcome::kNotOurs;
    if (jump(grid, key)) return Outcome::kDone;
    if (key.is("Tab") && key.shift) return goBack(grid);
    const bool ours = isSideways(key) || isUpOrDown(key) || key.is("Enter") || key.is("Tab");
    if (!ours) return Outcome::kNotOurs;
    pressed_ = key.name;
    if (isSideways(key)) return pressSideways(grid, key);
    // A drop-down keeps these for its list.
    if (isUpOrDown(key) && activeKind(grid) == ui::CellKind::DropDown) {
        grid.setEditing(true);
        return Outcome::kNotOurs;
    }
    return key.repeated && !key.is("Enter") ? act(grid, key.name) : Outcome::kDone;
}

// A text is walked through; the first press shows where in it one stands.
TableSheetKeys::Outcome TableSheetKeys::pressSideways(ui::Grid& grid, const ui::Key& key) {
    if (grid.editing()) return Outcome::kNotOurs;
    if (activeKind(grid) == ui::CellKind::Edit && !activeText(grid).empty()) {
        grid.setEditing(true);
        return Outcome::kDone;
    }
    return key.repeated ? act(grid, key.name) : Outcome::kDone;
}

// Keys that go far at once.
bool TableSheetKeys::jump(ui::Grid& grid, const ui::Key& key) const {
    const ui::CellPosition at = grid.active();
    if (isEdited(grid, ui::CellKind::DropDown)) return false;
    if (key.is("PageDown") || key.is("PageUp")) {
        const int page = std::max(1, grid.pageRows() / rowStep_) * rowStep_;
        grid.setActive(at.column, rowWithin(grid, at.row + (key.is("PageDown") ? page : -page)));
    } else if (key.control && (key.name == "Home" || key.name == "End")) {
        grid.setActive(key.name == "Home" ? firstColumn_ : grid.columns(),
                       key.name == "Home" ? 1 : lastRow(grid));
    } else if (!grid.editing() && (key.is("Home") || key.is("End"))) {
        grid.setActive(key.is("Home") ? firstColumn_ : grid.columns(), at.row);
    } else {
        return false;
    }
    return true;
}

// --- Let go ----------------------------------------------------------------------------------------------

TableSheetKeys::Outcome TableSheetKeys::letGo(ui::Grid& grid, const ui::Key& key, int presses) {
    if (key.shift || key.control || key.alt || key.name != pressed_) return Outcome::kNotOurs;
    pressed_.clear();
    if (isSideways(key) && !mayLeaveSideways(grid, key.name, presses)) return Outcome::kDone;
    if (isUpOrDown(key) && activeKind(grid) == ui::CellKind::DropDown) return Outcome::kDone;
    return act(grid, key.name);
}

// From a filled cell Left goes at the third press, and Right at the second that finds the insertion point at
// the same place.
bool TableSheetKeys::mayLeaveSideways(const ui::Grid& grid, const std::string& key, int presses) {
    constexpr int kPressesLeft = 3;
    if (activeKind(grid) == ui::CellKind::Static || activeText(grid).empty()) return true;
    if (key == "Left") return presses >= kPressesLeft;
    const int caret = grid.editing() ? grid.caret() : 0;
    const bool isSamePlace = presses > 1 && caret == caret_;
    caret_ = caret;
    return isSamePlace;
}

TableSheetKeys::Outcome TableSheetKeys::act(ui::Grid& grid, const std::string& key) {
    if (key == "Left") {
        goLeft(grid);
    } else if (key == "Up" || key == "Down") {
        goUpOrDown(grid, key == "Down");
    } else if ((grid.rows() == 0 || !goRight(grid)) && key != "Right") {
        grid.setEditing(false);
        return Outcome::kLeaveForwards;
    }
    return Outcome::kDone;
}

void TableSheetKeys::goLeft(ui::Grid& grid) const {
    const ui::CellPosition at = grid.active();
    if (at.column > firstColumn_)
        grid.setActive(at.column - 1, at.row);
    else
        grid.setActive(grid.columns(), at.row - rowStep_);
}

bool TableSheetKeys::goRight(ui::Grid& grid) const {
    const ui::CellPosition at = grid.active();
    if (at.column < grid.columns()) {
        grid.setActive(at.column + 1, at.row);
        return true;
    }
    if (at.row >= lastRow(grid)) return false;
    grid.setActive(firstColumn_, at.row + rowStep_);
    return true;
}

TableSheetKeys::Outcome TableSheetKeys::goBack(ui::Grid& grid) const {
    const ui::CellPosition at = grid.active();
    if (at.column > firstColumn_ || at.row > rowStep_) {
        goLeft(grid);
        return Outcome::kDone;
    }
    grid.setEditing(false);
    return Outcome::kLeaveBackwards;
}

// From the second row of a pair to the first of its own pair, or of the next.
void TableSheetKeys::goUpOrDown(ui::Grid& grid, bool down) const {
    const ui::CellPosition at = grid.active();
    const int step = rowStep_ == 2 && at.row % 2 == 0 ? 1 : rowStep_;
    grid.setActive(at.column, down ? at.row + step : at.row - step);
}

}  // namespace norvane
