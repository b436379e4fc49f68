#include "hostcad/window/hinted_line.h"

#include <QEvent>

namespace hostcad {

HintedLine::HintedLine(const QString& hint) {
    setPlaceholderText(hint);
    colourHint();
}

void HintedLine::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) colourHint();
}

void HintedLine::colourHint() {
    constexpr int kHalf = 128;
    QPalette own = palette();
    QColor colour = own.color(QPalette::Active, QPalette::Text);
    colour.setAlpha(kHalf);
    if (own.color(QPalette::Active, QPalette::PlaceholderText) == colour) return;
    own.setColor(QPalette::PlaceholderText, colour);
    setPalette(own);
}

}  // namespace hostcad
