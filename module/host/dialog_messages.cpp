#include "module/host/dialog_messages.h"

#include "platform/ads/editor.h"

void PrintDialogNotCreated() {
    acutPrintf("\n\nError: cannot create dialog box. Resource not found.");
}
