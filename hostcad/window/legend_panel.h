// The legend in the upper right corner of the drawing. It shows itself while there is one and the user wants
// it.
#pragma once

#include <QWidget>

#include "hostcad/window/legend.h"

class QToolButton;

namespace hostcad {

class LegendPanel : public QWidget {
  public:
    explicit LegendPanel(QWidget* canvas);

    // Takes in what has changed since the last call.
    void follow();
    // Nothing is coloured.
    bool isEmpty() const { return picture_.isEmpty(); }
    // Whether the user wants to see it.
    bool isWanted() const { return isWanted_; }
    void setWanted(bool on);

  protected:
    // Keeps it in the corner.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void lay();

    LegendPicture picture_;
    uint64_t revision_ = 0;
    bool isWanted_ = true;
    QToolButton* close_;
};

}  // namespace hostcad
