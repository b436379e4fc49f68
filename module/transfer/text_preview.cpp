#include "module/transfer/text_preview.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

namespace {

// A line of thousands of pieces is shown as far as a person looks, each piece as far as a column is wide.
constexpr size_t kMostColumns = 60, kMostBytes = 200;

}  // namespace

void TextPreview::setFormat(const TextFormat& format, bool hasHeadings, size_t fieldCount) {
    rows_.clear();
    columns_ = 0;
    for (const std::string& line : lines_) {
        auto pieces = SplitLine(TrimmedLine(line, format.delimiter), format);
        Row row;
        if (hasHeadings && rows_.empty())
            row.mark = "headings";
        else if (!pieces)
            row.mark = "open quote";
        else if (pieces->empty())
            row.mark = "empty";
        else if (fieldCount > 0 && pieces->size() != fieldCount)
            row.mark = "passed over";
        if (pieces) row.pieces = std::move(*pieces);
        columns_ = std::max(columns_, std::min(row.pieces.size(), kMostColumns));
        rows_.push_back(std::move(row));
    }
    columns_ = std::max<size_t>(columns_, 1);
}

std::vector<std::string> TextPreview::headings() const {
    std::vector<std::string> headings = {"Line", "Note"};
    for (size_t i = 1; i <= columns_; ++i) headings.push_back(std::to_string(i));
    return headings;
}

std::string TextPreview::text(int index, int column) const {
    const Row& row = rows_[static_cast<size_t>(index)];
    if (column == kNumber) return std::to_string(index + 1);
    if (column == kMark) return row.mark;
    const auto piece = static_cast<size_t>(column - kFirstPiece);
    // One that cannot be cut is shown as it is.
    const std::string& line = lines_[static_cast<size_t>(index)];
    if (row.pieces.empty()) return piece == 0 ? std::string(text::cutToBytes(line, kMostBytes)) : "";
    if (piece >= row.pieces.size()) return "";
    return std::string(text::cutToBytes(row.pieces[piece], kMostBytes));
}

}  // namespace norvane
