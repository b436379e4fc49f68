// The export to shape files as Lisp calls it.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 9: takes the path of the set. The user selects entities and chooses from their features.
// Gives 0.
void ExportSelection(Call& call);

// Function code 10: takes the path, a selection set and the type of shapes (1, 3, 5, 11, 13, 15). Gives 1
// when the set was written, else 0.
void ExportGivenSet(Call& call);

// (gis:export-folder) gives the folder of the last export, "" before the first.
void GiveExportFolder(Call& call);

}  // namespace norvane
