#include "platform/ui/qt/seen_columns.h"

#include <QTableView>
#include <algorithm>

namespace ui {

bool SeenColumns::take(int column, int row) {
    int& width = widths_[static_cast<size_t>(column)];
    const int needed = needed_(column, row);
    if (needed <= width) return false;
    width = needed;
    return true;
}

void SeenColumns::see() {
    const int columns = view_.model()->columnCount(), rows = view_.model()->rowCount();
    widths_.resize(static_cast<size_t>(columns));
    const int height = view_.viewport()->height();
    const int first = height > 0 ? view_.rowAt(0) : -1;
    for (int row = first; row >= 0 && row < rows && view_.rowViewportPosition(row) < height; ++row)
        for (int column = 0; column < columns; ++column) take(column, row);
    show();
}

void SeenColumns::seeCell(int column, int row) {
    const int top = view_.rowViewportPosition(row);
    const bool inSight = top + view_.rowHeight(row) > 0 && top < view_.viewport()->height();
    if (inSight && static_cast<size_t>(column) < widths_.size() && take(column, row)) show();
}

void SeenColumns::show() {
    int left = view_.viewport()->width();
    const int last = static_cast<int>(widths_.size()) - 1;
    for (int column = 0; column <= last; ++column) {
        int width = std::max(widths_[static_cast<size_t>(column)], narrowest_(column));
        if (column == last) width = std::max(width, left);
        if (view_.columnWidth(column) != width) view_.setColumnWidth(column, width);
        left -= width;
    }
}

}  // namespace ui
