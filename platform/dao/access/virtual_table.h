// Tables of an Access file as SQLite sees them.
#pragma once

#include "platform/dao/access/connection.h"

namespace dao::access {

// Makes the module "access" known to the SQLite connection: CREATE VIRTUAL TABLE "POLES" USING access.
void addVirtualTables(sqlite3* db, AccessConnection& connection);

}  // namespace dao::access
