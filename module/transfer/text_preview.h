// The first lines of a text as a list shows them: cut into columns, with those marked that are passed over.
#pragma once

#include <string>
#include <vector>

#include "module/exchange/delimited_text.h"
#include "platform/ui/list_source.h"

namespace norvane {

class TextPreview : public ui::ListSource {
  public:
    // Columns of the list: the number of the line, what is wrong with it, and the pieces.
    static constexpr int kNumber = 0, kMark = 1, kFirstPiece = 2;

    explicit TextPreview(std::vector<std::string> lines) : lines_(std::move(lines)) {}

    // fieldCount: a line with another number of pieces is passed over; 0 leaves that open.
    void setFormat(const TextFormat& format, bool hasHeadings, size_t fieldCount);

    const std::vector<std::string>& lines() const { return lines_; }
    // Of a line; none where it cannot be cut.
    const std::vector<std::string>& pieces(int line) const { return rows_[static_cast<size_t>(line)].pieces; }
    // One for each column; pieces are called by number.
    std::vector<std::string> headings() const;

    int count() const override { return static_cast<int>(rows_.size()); }
    std::string text(int index, int column) const override;

  private:
    struct Row {
        std::vector<std::string> pieces;
        std::string mark;
    };
    std::vector<std::string> lines_;
    std::vector<Row> rows_;
    size_t columns_ = 0;  // of pieces
};

}  // namespace norvane
