// The cells of a small grid, kept in memory.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/ui/grid_source.h"

namespace ui {

class MemoryCells : public GridSource {
  public:
    int rows() const override { return static_cast<int>(rows_.size()); }
    std::string text(int column, int row) const override;
    void setText(int column, int row, std::string text) override;
    std::string rowHeading(int row) const override { return rows_[static_cast<size_t>(row - 1)].heading; }
    void setRowHeading(int number, std::string text) {
        row(number).heading = std::move(text);
        hasHeadings_ = true;
    }
    bool hasHeadings() const { return hasHeadings_; }

    // New cells are empty.
    void setColumns(int count);
    void setRows(int count) { rows_.resize(static_cast<size_t>(count)); }
    // In front of a row, or behind the last. The rows that these are told must be there.
    void insertRow(int before);
    void removeRow(int row);
    void swapRows(int row, int other);
    void clearRow(int row);  // the heading stays

  private:
    struct Row {
        std::vector<std::string> cells;  // up to the last with a content
        std::string heading;
    };
    Row& row(int number) { return rows_[static_cast<size_t>(number - 1)]; }

    std::vector<Row> rows_;
    bool hasHeadings_ = false;
};

}  // namespace ui
