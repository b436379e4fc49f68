#include "platform/ui/qt/frame_overlay.h"

#include <QPainter>

namespace ui {

FrameOverlay::FrameOverlay(QWidget* parent, const QColor& colour, int thickness)
    : QWidget(parent), colour_(colour), thickness_(thickness) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void FrameOverlay::showAt(const QRect& rectangle) {
    setGeometry(rectangle);
    show();
    raise();
}

void FrameOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (int i = 0; i < thickness_; ++i) {
        painter.setPen(colour_);
        painter.drawRect(rect().adjusted(i, i, -i - 1, -i - 1));
    }
}

}  // namespace ui
