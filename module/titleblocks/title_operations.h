// Title blocks as Lisp reaches them.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 5: the settings of links. Gives 0.
void EditBlockLinks(Call& call);
// Function code 6: takes a selection, which has to succeed and is not looked at, and inserts or updates title
// blocks. Gives 0.
void UpdateTitleBlocks(Call& call);

// (gis:fill-titles BLOCK KEY-ATTRIBUTE [KEY-VALUE [SETTINGS-FILE]]) fills the inserts of a block without a
// dialog, by the key that each has or by one for all, "" for none. Gives a list: how many inserts there are,
// how many were updated, had no record, had no key, and the keys without a record; nil when the block has no
// links that can be followed. What cannot be read is told on the command line.
void FillTitles(Call& call);
// (gis:compare-titles ...), with the same arguments, changes nothing. Gives the texts that differ, each as a
// list of handle, key, attribute, text in the drawing, value of the database; nil when none does.
void CompareTitles(Call& call);
// (gis:drawings FOLDER) gives the paths of the drawings (.dxf) of a folder, by name; nil for none.
void ListDrawings(Call& call);

}  // namespace norvane
