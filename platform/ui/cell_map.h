// What single cells of a grid have that the others have not. It follows the rows as they come, go and change
// places.
#pragma once

#include <iterator>
#include <limits>
#include <map>
#include <utility>

namespace ui {

// Which cell is meant; row 0 or column 0 is a heading.
struct CellPosition {
    int column = 1;
    int row = 1;
    bool operator==(const CellPosition&) const = default;
};

template <class T>
class CellMap {
  public:
    // Null for a cell that has nothing.
    const T* find(CellPosition at) const {
        auto row = rows_.find(at.row);
        if (row == rows_.end()) return nullptr;
        auto cell = row->second.find(at.column);
        return cell == row->second.end() ? nullptr : &cell->second;
    }
    void set(CellPosition at, T value) { rows_[at.row].insert_or_assign(at.column, std::move(value)); }
    void erase(CellPosition at) {
        auto row = rows_.find(at.row);
        if (row == rows_.end()) return;
        row->second.erase(at.column);
        if (row->second.empty()) rows_.erase(row);
    }
    void clear() { rows_.clear(); }

    void clearColumn(int column) { clearColumns(column, column); }
    void clearColumnsFrom(int column) { clearColumns(column, std::numeric_limits<int>::max()); }
    void clearRows(int from, int to) { rows_.erase(rows_.lower_bound(from), rows_.upper_bound(to)); }
    void insertRow(int before) { move(before, 1); }
    void removeRow(int row) {
        rows_.erase(row);
        move(row + 1, -1);
    }
    void swapRows(int row, int other) {
        auto first = rows_.extract(row), second = rows_.extract(other);
        put(std::move(first), other);
        put(std::move(second), row);
    }

  private:
    using Rows = std::map<int, std::map<int, T>>;  // by row, then by column

    void put(typename Rows::node_type row, int number) {
        if (!row) return;
        row.key() = number;
        rows_.insert(std::move(row));
    }
    void clearColumns(int from, int to) {
        for (auto row = rows_.begin(); row != rows_.end();) {
            row->second.erase(row->second.lower_bound(from), row->second.upper_bound(to));
            row = row->second.empty() ? rows_.erase(row) : std::next(row);
        }
    }
    // Gives the rows from one on other numbers.
    void move(int from, int by) {
        Rows behind;
        for (auto row = rows_.lower_bound(from); row != rows_.end();) {
            auto moved = rows_.extract(row++);
            moved.key() += by;
            behind.insert(behind.end(), std::move(moved));
        }
        rows_.merge(behind);
    }

    Rows rows_;
};

}  // namespace ui
