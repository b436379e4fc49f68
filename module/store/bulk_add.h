// Records added in bulk from a list that a Lisp routine has built.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Adds records by a list: database (a file, or a connect string that begins "ODBC;"), then for each record a
// short, a table name, and pairs of field and value. 1.0 when done, 0.0 when there is nothing to add or DAO
// is missing, -1.0 for an empty list, -2.0 for no such file, -4.0 after an error of the engine, which has
// been shown; records added before it stay. The list stays the caller's.
double BulkAddRecords(const resbuf* arguments);
// Function code 19: all arguments are the list. Gives the real of above.
void AddRecords(Call& call);

}  // namespace norvane
