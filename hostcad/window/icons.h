// The icons of the toolbar, drawn in the colour of the window's text.
#pragma once

#include <QColor>
#include <QIcon>
#include <string_view>

namespace hostcad {

// The icon of a name, as menu files have them; an empty one for a name that is not known.
QIcon drawnIcon(std::string_view name, const QColor& colour);

}  // namespace hostcad
