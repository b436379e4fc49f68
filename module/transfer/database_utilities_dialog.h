// Database File Utilities: the workbench on an output database.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 16. Takes nothing; gives 0. Points that are to be drawn are then in imported-points$.
void RunDatabaseUtilities(Call& call);

}  // namespace norvane
