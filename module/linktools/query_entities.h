// The record of an entity that the person points at.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 18. Takes nothing; gives 0.
void QueryEntities(Call& call);

}  // namespace norvane
