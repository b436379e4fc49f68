// Import SHP File: which set of shape files, where its points or polylines go, and where its attributes go.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 11. Takes nothing; gives the names of the points that are to be drawn, whose coordinate file
// is then the value of the Lisp symbol ret_string, or nil.
void ImportShpDialogRun(Call& call);

// (gis:import) does the same for who draws the points with their links: it gives the coordinate file, a list
// of template, output and table, and a list of the names; or nil.
void ImportLinkedPoints(Call& call);

}  // namespace norvane
