// Entities that are made one group list at a time: block definitions, polylines with their vertices, block
// references with their attributes.
#pragma once

#include <string>

namespace hostcad {

// The name of the block that the last ENDBLK finished: of interest for anonymous ones, which are numbered.
const std::string& lastBlockMade();

}  // namespace hostcad
