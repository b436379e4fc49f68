// Functions of Access that SQLite lacks.
#pragma once

#include <sqlite3.h>

namespace dao::sqlite {

// Adds them to a connection: UCASE and LCASE, which know more than the English letters; LEN, LEFT, RIGHT and
// MID, which count characters; INT, FIX, VAL, CSTR, CLNG, CDBL and NZ; YEAR, MONTH and DAY of a date, NOW,
// and TODAY (DATE in Access).
void addFunctions(sqlite3* db);

}  // namespace dao::sqlite
