// The columns of a table whose first row names them: of a sheet, of delimited text.
#pragma once

#include <string>
#include <vector>

namespace norvane {

class HeadingRow {
  public:
    HeadingRow() = default;
    // The cells as they stand. Names are trimmed and in capitals; a column without one is called F and its
    // number from 1, one whose name was there before does not count.
    explicit HeadingRow(const std::vector<std::string>& cells);

    const std::vector<std::string>& names() const { return names_; }
    // Where columns stand in the rows; kNowhere for those that are not there.
    std::vector<size_t> placesOf(const std::vector<std::string>& columns) const;
    static constexpr size_t kNowhere = static_cast<size_t>(-1);

  private:
    std::vector<std::string> names_;
    std::vector<size_t> places_;  // of each name in a row
};

// The trimmed cells of a row at some places. False for a row that is empty throughout.
bool PickCells(const std::vector<std::string>& row, const std::vector<size_t>& places,
               std::vector<std::string>& values);

}  // namespace norvane
