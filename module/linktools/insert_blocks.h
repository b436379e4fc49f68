// Blocks from records: each record of a table becomes a reference to a block at its point, with fields in its
// attributes.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 17. Takes nothing, gives 1.
void InsertBlocks(Call& call);

}  // namespace norvane
