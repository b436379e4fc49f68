#include "platform/ui/qt/frozen_columns.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace ui {

bool FrozenColumns::isScrolled() const {
    if (view_.horizontalScrollBar()->value() == 0) return false;
    return leftOf(count_) < view_.viewport()->width() * 2 / 3;
}

int FrozenColumns::leftOf(int column) const {
    int left = 0;
    for (int i = 0; i < column; ++i) left += view_.columnWidth(i);
    return left;
}

int FrozenColumns::width() const {
    return isScrolled() ? leftOf(count_) : 0;
}

int FrozenColumns::columnAt(int x) const {
    if (x < 0 || x >= width()) return -1;
    int column = 0;
    while (x >= leftOf(column + 1)) ++column;
    return column;
}

FrozenHeader::FrozenHeader(const FrozenColumns& frozen, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), frozen_(frozen) {
    setSectionsClickable(true);
}

void FrozenHeader::paintEvent(QPaintEvent* event) {
    QHeaderView::paintEvent(event);
    QPainter painter(viewport());
    for (int column = 0; frozen_.has(column); ++column)
        paintSection(&painter, QRect(frozen_.leftOf(column), 0, sectionSize(column), height()), column);
}

void FrozenHeader::mousePressEvent(QMouseEvent* event) {
    pressed_ = frozen_.columnAt(event->pos().x());
    if (pressed_ < 0) QHeaderView::mousePressEvent(event);
}

void FrozenHeader::mouseReleaseEvent(QMouseEvent* event) {
    if (pressed_ < 0) return QHeaderView::mouseReleaseEvent(event);
    if (frozen_.columnAt(event->pos().x()) == pressed_) emit sectionClicked(pressed_);
    pressed_ = -1;
}

}  // namespace ui
