// An index by which the records of a table are found by their keys.
#pragma once

#include <string>

#include "module/cad/call.h"
#include "platform/dao/dao.h"

namespace norvane {

// Whether a table has so many records (more than 20 000) that it deserves an index of its key field, and has
// none. A table without such a field does not.
bool NeedsIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField);
// Makes it, of the key field and GIS_KEY. False: there is one already. Throws what the engine says.
bool MakeIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField);

// (gis:index [TABLE]): an index of PT_ID for a table of the output, or for all of its tables that have the
// field. Prints a line that counts, and one for each table that could not get one. Gives the number of
// indexes that were made, nil where the output could not be opened or does not have the table.
void IndexTables(Call& call);

}  // namespace norvane
