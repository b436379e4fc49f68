// Cells side by side as the text that programs with tables exchange: a line a row, tabs between its cells,
// and a text that holds one of these in double quotes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/grid.h"

namespace ui {

std::string cellsAsText(const Grid& grid, const CellRange& range);
// The cells of a text, row by row. The line end behind the last row begins no other.
std::vector<std::vector<std::string>> textAsCells(std::string_view text);

// What a text puts into the cells of a grid from the first of the selection on.
class CellPaste {
  public:
    struct Entry {
        CellPosition at;
        std::string text;
    };
    // The grid outlives it.
    CellPaste(const Grid& grid, std::string_view text);

    const std::vector<Entry>& entries() const { return entries_; }
    // Why nothing can be put in; "" when all of it can.
    const std::string& refusal() const { return refusal_; }

  private:
    void add(CellPosition at, const std::string& text);

    const Grid& grid_;
    std::vector<Entry> entries_;
    std::string refusal_;
};

}  // namespace ui
