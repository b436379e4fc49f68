#include "platform/workbooks/text_workbook.h"

#include <algorithm>
#include <utility>

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace workbooks {

namespace {

constexpr size_t kMostCells = 20'000'000;

std::string validText(std::string bytes) {
    return text::isValidUtf8(bytes) ? std::move(bytes) : text::decode(bytes);
}

}  // namespace

void SheetTexts::put(long row, long column, std::string text) {
    if (row < 0 || row >= kRows || column < 0 || column >= kColumns)
        throw Error("A cell lies outside of its sheet.");
    if (text.empty()) return;
    const auto r = static_cast<size_t>(row), c = static_cast<size_t>(column);
    if (r >= rows_.size()) rows_.resize(r + 1);
    std::vector<std::string>& cells = rows_[r];
    if (c >= cells.size()) {
        cells_ += c + 1 - cells.size();
        if (cells_ > kMostCells) throw Error("There are too many cells.");
        cells.resize(c + 1);
    }
    cells[c] = validText(std::move(text));
    columns_ = std::max(columns_, c + 1);
}

std::string SheetTexts::at(long row, long column) const {
    const auto r = static_cast<size_t>(row), c = static_cast<size_t>(column);
    return r < rows_.size() && c < rows_[r].size() ? rows_[r][c] : std::string();
}

void SheetTexts::read(const TakeRow& take) const {
    std::vector<std::string> texts(columns_);
    for (const std::vector<std::string>& cells : rows_) {
        for (size_t i = 0; i < columns_; ++i) texts[i] = i < cells.size() ? cells[i] : std::string();
        if (!take(texts)) return;
    }
}

SheetTexts& TextWorkbook::add(std::string name) {
    names_.push_back(validText(std::move(name)));
    return texts_.emplace_back();
}

}  // namespace workbooks
