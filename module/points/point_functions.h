// The points of coordinate files for Lisp routines. A file is opened and closed by each call; one that cannot
// be opened is told on the command line and gives nil.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:points path range) or (gis:points path names): the points of a range, or those of a list of names that
// are there, as lists of name, northing, easting, elevation and description. The elevation of a point without
// one is nil. nil when there are none.
void ListPoints(Call& call);

// (gis:write-point path name northing easting description elevation): adds a point, or overwrites the one of
// its name; without the last it has no elevation. Gives the name as the file has it, or nil when the file
// does not take it, which is told. A file that is not there is made.
void WritePoint(Call& call);

// (gis:delete-points path range): gives how many points were deleted.
void DeletePoints(Call& call);

// (gis:next-point path): the name behind the highest of the file; "1" when there is none.
void NextPoint(Call& call);

}  // namespace norvane
