// The heights of the rows of a table: they grow for what has come into sight in them.
#pragma once

#include <functional>
#include <vector>

class QTableView;

namespace ui {

// Columns and rows count from 0.
class RowHeights {
  public:
    using NeededLines = std::function<int(int column, int row)>;
    RowHeights(QTableView& view, NeededLines needed) : view_(view), needed_(std::move(needed)) {}

    // There are other rows: all are as high as one line again.
    void forget();
    // Takes in the rows that are in sight, or one of them.
    void see();
    void seeRow(int row);

  private:
    // Whether it has become another.
    bool take(int row);

    QTableView& view_;
    NeededLines needed_;
    std::vector<int> grown_;
};

}  // namespace ui
