// Writing a database anew, without the room that deleted things have left.
#pragma once

#include <string>

#include "platform/dao/jet/database.h"

namespace jet {

// Compacts a database that is in no transaction. Every table is copied row by row in the order of its
// records, its indexes are filled anew, and the result takes the place of the old content in one transaction,
// so that the file is as it was if anything fails. A damaged file is left as it is, with an Error.
void compact(Database& database);

}  // namespace jet
