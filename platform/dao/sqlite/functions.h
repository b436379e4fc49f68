// Functions of Access that SQLite lacks.
#pragma once

#include <sqlite3.h>

namespace dao::sqlite {

// Adds them to a connection: UCASE and LCASE, which know more than the English letters.
void addFunctions(sqlite3* db);

}  // namespace dao::sqlite
