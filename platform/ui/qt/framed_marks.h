// Check boxes and radio buttons whose frame is seen on any ground.
#pragma once

#include <QProxyStyle>

namespace ui {

// The style of the desktop draws the frame of a mark a little darker than the ground, which on a dark ground
// is no frame: one that is off can then hardly be told. QApplication::setStyle takes it over.
class FramedMarks : public QProxyStyle {
  public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace ui
