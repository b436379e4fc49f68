#include "platform/ui/memory_cells.h"

#include <utility>

namespace ui {

std::string MemoryCells::text(int column, int row) const {
    const std::vector<std::string>& cells = rows_[static_cast<size_t>(row - 1)].cells;
    const size_t place = static_cast<size_t>(column - 1);
    return place < cells.size() ? cells[place] : std::string();
}

void MemoryCells::setText(int column, int number, std::string text) {
    std::vector<std::string>& cells = row(number).cells;
    if (cells.size() < static_cast<size_t>(column)) cells.resize(static_cast<size_t>(column));
    cells[static_cast<size_t>(column - 1)] = std::move(text);
}

void MemoryCells::setColumns(int count) {
    for (Row& row : rows_)
        if (row.cells.size() > static_cast<size_t>(count)) row.cells.resize(static_cast<size_t>(count));
}

void MemoryCells::insertRow(int before) {
    rows_.emplace(rows_.begin() + (before - 1));
}

void MemoryCells::removeRow(int row) {
    rows_.erase(rows_.begin() + (row - 1));
}

void MemoryCells::swapRows(int number, int other) {
    std::swap(row(number), row(other));
}

void MemoryCells::clearRow(int number) {
    row(number).cells.clear();
}

}  // namespace ui
