// The columns of a table view. They are as wide as what has come into sight in them, and never become
// narrower again while it is looked at; so no more than a page of rows is measured, however many there are.
#pragma once

#include <functional>
#include <vector>

class QTableView;

namespace ui {

// Columns and rows count from 0, widths are pixels of the screen.
class SeenColumns {
  public:
    using Narrowest = std::function<int(int column)>;
    using Needed = std::function<int(int column, int row)>;
    SeenColumns(QTableView& view, Narrowest narrowest, Needed needed)
        : view_(view), narrowest_(std::move(narrowest)), needed_(std::move(needed)) {}

    void forget() { widths_.clear(); }
    // Takes in the rows that are in sight, or one cell if it is, and widens the columns where they need it.
    // The last one has all that is left of the view.
    void see();
    void seeCell(int column, int row);

  private:
    bool take(int column, int row);
    void show();

    QTableView& view_;
    Narrowest narrowest_;
    Needed needed_;
    std::vector<int> widths_;
};

}  // namespace ui
