// Writing a database anew, without the room that deleted things have left.
#pragma once

#include "platform/dao/compact_report.h"
#include "platform/dao/jet/database.h"

namespace jet {

using Progress = dao::CompactProgress;

// Compacts a database that is in no transaction. Every table is copied row by row in the order of its
// records, its indexes are filled anew, and the result takes the place of the old content in one transaction,
// so that the file is as it was if anything fails. A damaged file is left as it is, with an Error: repair.h
// is for those.
void compact(Database& database, const Progress& progress = {});

}  // namespace jet
