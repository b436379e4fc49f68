// Where a grid has its cells from. It asks for those that are seen, and again when it is told that they have
// changed, so that a million rows cost what a page of them does.
#pragma once

#include <string>

#include "platform/ui/cell_type.h"

namespace ui {

// Columns and rows count from 1. Only cells that the grid has are asked for.
class GridSource {
  public:
    virtual ~GridSource() = default;
    virtual int rows() const = 0;
    // The content of a cell; that of a check box is "1" when it is checked.
    virtual std::string text(int column, int row) const = 0;
    // What a person or the dialog puts in. A source may keep another content instead, or the one before.
    virtual void setText(int column, int row, std::string text) = 0;
    // What stands in front of a row; "" for its number.
    virtual std::string rowHeading(int /*row*/) const { return {}; }
    // What a cell is that differs from the others of its column; null for those that do not. It lasts.
    virtual const CellType* type(int /*column*/, int /*row*/) const { return nullptr; }
    virtual CellColours colours(int /*column*/, int /*row*/) const { return {}; }
};

}  // namespace ui
