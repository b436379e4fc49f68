// What routines of Lisp reach of selection by condition. A function that gives nil has set gis:error$ to a
// sentence that says why; it is "" after one that went well.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:select TABLE CONDITION [OUTPUT]): the entities whose records fulfil a condition, as a selection set;
// nil for none. CONDITION "" means all records, and "=NAME" the one that is kept under a name. OUTPUT is the
// current output database unless it is given.
void SelectByCondition(Call& call);
// (gis:records SET): the records of a set's entities, each as (entity table (field . text) ...). Entities
// without a record are left out.
void GiveRecords(Call& call);

// GIS-SELECT in the command line: (gis:select-by-condition) asks for table, condition and mode, and changes
// what is selected.
void AskAndSelect(Call& call);
// GIS-CONDITIONS: (gis:choose-condition) shows the dialog that selects, and keeps conditions in the drawing.
void ShowConditions(Call& call);

// (gis:conditions): those that are kept in the drawing, each as (name table condition).
void GiveConditions(Call& call);
// (gis:keep-condition NAME TABLE CONDITION) gives the name, or nil.
void KeepNamedCondition(Call& call);
// (gis:remove-condition NAME) gives the name, or nil.
void RemoveNamedCondition(Call& call);

}  // namespace norvane
