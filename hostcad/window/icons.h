// The icons of the toolbar, drawn in the colour of the window's text.
#pragma once

#include <QColor>
#include <QIcon>

namespace hostcad {

enum class Icon { New, Open, Save, Undo, Redo, ZoomExtents, ZoomWindow, ZoomPrevious, Prompting, Settings };
QIcon drawnIcon(Icon icon, const QColor& colour);

}  // namespace hostcad
