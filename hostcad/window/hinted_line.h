// A line to type into, with a hint while it is empty. Themes of some desktops leave the colour of hints as it
// is on light grounds: here it is that of the text, half as strong.
#pragma once

#include <QLineEdit>

namespace hostcad {

class HintedLine : public QLineEdit {
  public:
    explicit HintedLine(const QString& hint);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void colourHint();
};

}  // namespace hostcad
