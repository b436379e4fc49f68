// Links from closed polylines and the texts in them.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 20: takes the folder of the programs, a template and an output path. Gives 1.
void LinkAreas(Call& call);

}  // namespace norvane
