// The values that Lisp routines store and fetch by slot: what the dialogs remember, and the current
// databases.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 2: takes a slot, 0 to 29, and a value. Anything else stores nothing.
void StoreSlot(Call& call);
// Function code 3: takes a slot and puts its value into the Lisp symbol ret_string, which stays as it was
// where the slot has none.
void FetchSlot(Call& call);

}  // namespace norvane
