#include "platform/ui/qt/framed_marks.h"

#include <QPainter>
#include <QStyleOption>

namespace ui {

void FramedMarks::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isRound = element == PE_IndicatorRadioButton;
    if (!isRound && element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck) return;
    constexpr int kFaint = 130, kFainter = 60;  // of 255
    QColor colour = option->palette.color(QPalette::WindowText);
    colour.setAlpha(option->state & State_Enabled ? kFaint : kFainter);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, isRound);
    painter->setPen(colour);
    painter->setBrush(Qt::NoBrush);
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);  // through the middle of pixels
    if (isRound)
        painter->drawEllipse(frame);
    else
        painter->drawRect(frame);
    painter->restore();
}

}  // namespace ui
