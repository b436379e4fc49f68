// Which numbers of a workbook are dates: that is said by the formats in which cells show them.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace workbooks {

class NumberFormats {
  public:
    // A format that the workbook defines, by its number, and a style of cells, which has a format. Styles
    // count from 0 in the order in which they come.
    void addFormat(size_t number, std::string_view code) { kinds_[number] = kindOfCode(code); }
    void addStyle(size_t format) { styles_.push_back(format); }
    // Days count from 1904 and not from 1900.
    void countFrom1904() { daysBefore_ = 1462; }

    // A number in a cell of a style: its shortest text, or the date or time that it stands for.
    std::string textOf(double number, size_t style) const;

  private:
    enum class Kind { kNumber, kDate, kTime };
    static Kind kindOfCode(std::string_view code);
    Kind kindOf(size_t style) const;

    std::map<size_t, Kind> kinds_;
    std::vector<size_t> styles_;
    double daysBefore_ = 0;
};

}  // namespace workbooks
