// A list whose items are records in columns or come from a source: a table view that asks for those in sight.
#pragma once

#include <memory>

#include "platform/ui/qt/control_widgets.h"

namespace ui {

std::unique_ptr<ControlWidget> makeRecordList(List& list, Dialog& dialog, DialogWindow& window);

}  // namespace ui
