// A frame that is drawn over what stands there, for a mark that takes no room. The mouse goes through it.
#pragma once

#include <QColor>
#include <QWidget>

namespace ui {

// Round what has refused to take something; seen on light and dark grounds.
constexpr QRgb kRefusalColour = 0xFFE02020;

class FrameOverlay : public QWidget {
  public:
    FrameOverlay(QWidget* parent, const QColor& colour, int thickness);
    // Shows the frame just inside a rectangle of the parent, in front of all there is.
    void showAt(const QRect& rectangle);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor colour_;
    int thickness_;
};

}  // namespace ui
