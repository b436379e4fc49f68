// The icons of the program and of its buttons.
#pragma once

#include <QColor>
#include <QIcon>
#include <string_view>

namespace hostcad {

// The icon of the program: a parcel with a point at its corner.
QIcon applicationIcon();

// The icon of a name, as menu files have them; an empty one for a name that is not known.
// It is drawn in the colour of the window's text.
QIcon drawnIcon(std::string_view name, const QColor& colour);

}  // namespace hostcad
