// A workbook whose cells are texts in memory, as readers fill it.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/workbooks/workbook.h"

namespace workbooks {

class SheetTexts {
  public:
    // Rows and columns count from 0. Throws an Error outside a sheet, or when there are more cells than a
    // person can have made.
    void put(long row, long column, std::string text);
    void read(const TakeRow& take) const;
    // "" for a cell that was not put.
    std::string at(long row, long column) const;

    static constexpr long kRows = 1048576, kColumns = 16384;

  private:
    std::vector<std::vector<std::string>> rows_;
    size_t columns_ = 0, cells_ = 0;
};

class TextWorkbook : public Workbook {
  public:
    // The sheet stays the workbook's.
    SheetTexts& add(std::string name);
    const std::vector<std::string>& sheets() const override { return names_; }
    void read(size_t sheet, const TakeRow& take) const override { texts_.at(sheet).read(take); }

  private:
    std::vector<std::string> names_;
    std::deque<SheetTexts> texts_;
};

}  // namespace workbooks
