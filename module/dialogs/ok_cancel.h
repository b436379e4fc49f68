// The two buttons at the end of a dialog.
#pragma once

#include "platform/ui/dialog.h"

namespace norvane {

// Adds "&OK", the default, and "&Cancel".
inline void AddOkCancel(ui::Dialog& dialog) {
    dialog.add<ui::Button>(ui::kOk, "&OK", true);
    dialog.add<ui::Button>(ui::kCancel, "&Cancel");
}

// Their row in the layout, to the right.
inline ui::Layout OkCancelRow() {
    return ui::row({ui::spring(), ui::item(ui::kOk), ui::item(ui::kCancel)});
}

}  // namespace norvane
