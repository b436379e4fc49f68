// The message of a dialog that cannot be shown.
#pragma once

void PrintDialogNotCreated();
