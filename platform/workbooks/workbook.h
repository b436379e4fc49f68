// Workbooks as tables of text: .xls, .xlsx and .ods files, read and never written.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace workbooks {

// Why a file cannot be read, as a sentence for the user.
class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Takes the cells of one row, as many as the sheet has columns; false ends the reading.
using TakeRow = std::function<bool(const std::vector<std::string>&)>;

class Workbook {
  public:
    virtual ~Workbook() = default;
    // The names of the sheets in their order, as they are stored.
    virtual const std::vector<std::string>& sheets() const = 0;
    // Reads the rows of a sheet by its place from 0, from the first to the last that is used. Numbers come in
    // their shortest text, dates as 2004-05-31 with a time behind a blank, yes and no as 1 and 0; cells that
    // are empty, or show an error, as "". Rows that an .ods file keeps as repetitions of one have their texts
    // once, and are empty after that.
    virtual void read(size_t sheet, const TakeRow& take) const = 0;
};

// Opens a workbook, whose kind goes by what follows the last "." of its path. It never returns null, and
// throws an Error for what is no workbook, is damaged, or is protected by a password.
std::unique_ptr<Workbook> open(const std::string& path);

}  // namespace workbooks
