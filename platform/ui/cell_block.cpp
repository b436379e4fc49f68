#include "platform/ui/cell_block.h"

#include <algorithm>

#include "platform/text/text.h"
#include "platform/ui/cell_entry.h"

namespace ui {
namespace {

std::string asField(const std::string& text) {
    if (text.find_first_of("\t\r\n\"") == std::string::npos) return text;
    return "\"" + text::replaceAll(text, "\"", "\"\"") + "\"";
}

// Reads a field from a position on, which then stands behind it.
std::string readField(std::string_view text, size_t& at) {
    std::string field;
    if (at < text.size() && text[at] == '"') {
        for (++at; at < text.size(); ++at) {
            if (text[at] != '"') {
                field += text[at];
            } else if (at + 1 < text.size() && text[at + 1] == '"') {
                field += text[at++];
            } else {
                ++at;
                break;
            }
        }
    }
    const size_t end = std::min(text.find_first_of("\t\r\n", at), text.size());
    field += text.substr(at, end - at);
    at = end;
    return field;
}

}  // namespace

std::string cellsAsText(const Grid& grid, const CellRange& range) {
    std::string text;
    for (int row = range.first.row; row <= range.last.row; ++row) {
        for (int column = range.first.column; column <= range.last.column; ++column)
            text += (column > range.first.column ? "\t" : "") + asField(grid.text(column, row));
        text += range.isOneCell() ? "" : "\n";
    }
    return text;
}

std::vector<std::vector<std::string>> textAsCells(std::string_view text) {
    std::vector<std::vector<std::string>> rows;
    for (size_t at = 0; at < text.size() || rows.empty();) {
        std::vector<std::string>& row = rows.emplace_back();
        row.push_back(readField(text, at));
        while (at < text.size() && text[at] == '\t') row.push_back(readField(text, ++at));
        if (at < text.size() && text[at] == '\r') ++at;
        if (at < text.size() && text[at] == '\n') ++at;
    }
    return rows;
}

CellPaste::CellPaste(const Grid& grid, std::string_view text) : grid_(grid) {
    const std::vector<std::vector<std::string>> rows = textAsCells(text);
    const CellRange range = grid.selection();
    if (rows.size() == 1 && rows.front().size() == 1) {
        for (int row = range.first.row; row <= range.last.row; ++row)
            for (int column = range.first.column; column <= range.last.column; ++column)
                add({column, row}, rows.front().front());
        return;
    }
    for (size_t row = 0; row < rows.size(); ++row)
        for (size_t column = 0; column < rows[row].size(); ++column)
            add({range.first.column + static_cast<int>(column), range.first.row + static_cast<int>(row)},
                rows[row][column]);
}

void CellPaste::add(CellPosition at, const std::string& text) {
    if (!refusal_.empty()) return;
    if (!grid_.has(at.column, at.row)) {
        refusal_ = "there are more cells to paste than there is room for from here on";
        return;
    }
    // What a cell says already does not change it.
    if (grid_.text(at.column, at.row) == text) return;
    CellEntry entry = entryOf(grid_.type(at.column, at.row), text);
    if (entry.refusal.empty())
        entries_.push_back({at, std::move(entry.text)});
    else
        refusal_ = "nothing is pasted, since row " + std::to_string(at.row) + " of " +
                   grid_.columnHeading(at.column) + " does not take it: " + entry.refusal;
}

}  // namespace ui
