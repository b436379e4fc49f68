#include "platform/ui/qt/row_heights.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTableView>
#include <algorithm>

namespace ui {

void RowHeights::forget() {
    QHeaderView& header = *view_.verticalHeader();
    for (int row : grown_)
        if (row < header.count()) header.resizeSection(row, header.defaultSectionSize());
    grown_.clear();
}

bool RowHeights::take(int row) {
    QHeaderView& header = *view_.verticalHeader();
    int lines = 1;
    for (int column = 0; column < view_.model()->columnCount(); ++column)
        lines = std::max(lines, needed_(column, row));
    const QFontMetrics metrics(view_.model()->index(row, 0).data(Qt::FontRole).value<QFont>());
    const int height = header.defaultSectionSize() + (lines - 1) * metrics.lineSpacing();
    if (height <= header.sectionSize(row)) return false;
    header.resizeSection(row, height);
    grown_.push_back(row);
    return true;
}

void RowHeights::see() {
    const int rows = view_.model()->rowCount(), height = view_.viewport()->height();
    const int first = height > 0 ? view_.rowAt(0) : -1;
    if (first < 0) return;
    // Places are computed anew for all rows where one has another height, so that is done once.
    QHeaderView& header = *view_.verticalHeader();
    int bottom = view_.rowViewportPosition(first);
    bool hasGrown = false;
    header.setUpdatesEnabled(false);
    for (int row = first; row < rows && bottom < height; ++row) {
        hasGrown |= take(row);
        bottom += header.sectionSize(row);
    }
    header.setUpdatesEnabled(true);
    if (hasGrown) view_.viewport()->update();
}

void RowHeights::seeRow(int row) {
    if (row < view_.rowAt(0) || row >= view_.model()->rowCount()) return;
    if (view_.rowViewportPosition(row) < view_.viewport()->height()) take(row);
}

}  // namespace ui
