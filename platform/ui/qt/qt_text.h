// Texts, keys and fonts between the model and Qt.
#pragma once

#include <QFont>
#include <QKeyEvent>
#include <QString>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ui/font.h"
#include "platform/ui/key.h"

namespace ui {

inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}
inline std::string fromQt(const QString& text) {
    return text.toStdString();
}

// What stands under the mouse: a text as it is, also one that looks like HTML.
QString tipOf(const QString& text);

// Nothing for a key that is none to a dialog: a modifier alone, a dead key.
std::optional<Key> keyOf(const QKeyEvent& event);

// A font of that height in pixels at 96 dpi, scaled to the screen.
QFont qtFont(const Font& font);

}  // namespace ui
