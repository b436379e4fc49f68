// GIS Settings: the choice of the current template and output databases.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Shows the dialog and writes what was chosen to gps.ini. Other tools run it when they find no current
// database.
void RunGisSettings();
// Function code 7. Takes nothing; gives 0.
void ShowGisSettings(Call& call);

}  // namespace norvane
