// Links taken off entities, with their records or without.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:unlink SET): takes the links off the entities of a set and asks whether their records go too, by
// default No. A record to which another entity leads stays. Prints a line that counts; gives the number of
// links.
void UnlinkEntities(Call& call);

}  // namespace norvane
