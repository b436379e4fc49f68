// The one way to show a dialog of the module.
#pragma once

#include "platform/ui/dialog.h"

namespace norvane {

// Shows a dialog until it ends, and tells on the command line when it cannot be made. The result that it
// ended with; ui::kNotCreated when it could not be made.
int RunDialog(ui::Dialog& dialog);

}  // namespace norvane
