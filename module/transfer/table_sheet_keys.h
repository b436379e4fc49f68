// What the keys do in the grid of the table dialog.
//
// Arrows, Enter and Tab act when they are let go, and at once while they are held down. In a cell with a
// content, Left and Right walk through its text first.
#pragma once

#include <string>

#include "platform/ui/grid.h"
#include "platform/ui/key.h"

namespace norvane {

class TableSheetKeys {
  public:
    // What a key leaves to the dialog.
    enum class Outcome { kDone, kNotOurs, kLeaveForwards, kLeaveBackwards };

    // firstColumn: where rows begin. rowsPerRecord: with two, only the first of each pair takes values.
    TableSheetKeys(int firstColumn, int rowsPerRecord) : firstColumn_(firstColumn), rowStep_(rowsPerRecord) {}

    Outcome press(ui::Grid& grid, const ui::Key& key);
    // presses: how many times in a row it has been let go in the same cell.
    Outcome letGo(ui::Grid& grid, const ui::Key& key, int presses);

    // Rows where the walk through the grid begins and ends.
    int lastRow(const ui::Grid& grid) const { return grid.rows() / rowStep_ * rowStep_ - rowStep_ + 1; }

  private:
    Outcome act(ui::Grid& grid, const std::string& key);
    Outcome pressSideways(ui::Grid& grid, const ui::Key& key);
    bool mayLeaveSideways(const ui::Grid& grid, const std::string& key, int presses);
    void goLeft(ui::Grid& grid) const;
    bool goRight(ui::Grid& grid) const;  // false in the last cell
    Outcome goBack(ui::Grid& grid) const;
    void goUpOrDown(ui::Grid& grid, bool down) const;
    bool jump(ui::Grid& grid, const ui::Key& key) const;
    int rowWithin(const ui::Grid& grid, int row) const;

    int firstColumn_, rowStep_;
    std::string pressed_;  // in the grid, and not yet let go
    int caret_ = -1;       // where Right was last let go
};

}  // namespace norvane
