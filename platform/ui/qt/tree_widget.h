// The tree of a dialog, with an icon for each of its two kinds of nodes.
#pragma once

#include "platform/ui/qt/control_widgets.h"

namespace ui {

std::unique_ptr<ControlWidget> makeTreeWidget(Tree& tree, Dialog& dialog, DialogWindow& window);

}  // namespace ui
