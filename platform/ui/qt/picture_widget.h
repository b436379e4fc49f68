// A picture in its frame, in the middle of the room that its control has.
#pragma once

#include "platform/ui/qt/control_widgets.h"

namespace ui {

std::unique_ptr<ControlWidget> makePictureWidget(Picture& picture, Dialog& dialog, DialogWindow& window);

}  // namespace ui
