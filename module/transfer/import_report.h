// What is told at the end of an import.
#pragma once

#include "module/transfer/import_request.h"

namespace norvane {

// Lines on the command line: what was made and where, what was left out and why, and which reference system
// the set has.
void TellImport(const ImportRequest& request, const ImportReport& report);

}  // namespace norvane
