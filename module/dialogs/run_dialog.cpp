#include "module/dialogs/run_dialog.h"

#include "platform/ads/editor.h"

namespace norvane {

int RunDialog(ui::Dialog& dialog) {
    int result = dialog.runModal();
    if (result == ui::kNotCreated) acutPrintf("\n\nError: cannot create dialog box. Resource not found.");
    return result;
}

}  // namespace norvane
