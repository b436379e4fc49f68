// The entities of a record, for routines of Lisp.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:linked-entities OUTPUT TABLE KEY [FIELD]): the names of the entities whose links lead to a record, as
// a list; nil without any. The field of the key is PT_ID where none is given.
void GiveLinkedEntities(Call& call);

}  // namespace norvane
