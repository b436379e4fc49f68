// The import of a set of shape files: points into a coordinate file, lines and areas into the drawing, their
// attributes into a table of the output database, and a feature for that table into the template.
//
// All of it is done, or nothing: an import that is stopped or fails leaves the drawing, the coordinate file,
// the output and the template as they were.
#pragma once

#include <optional>

#include "module/cad/call.h"
#include "module/transfer/import_report.h"

namespace norvane {

// Imports, and ends with a line of what was done and what was left out. Nothing when it was stopped or
// failed, which has been told.
std::optional<ImportReport> ImportShp(const ImportShpSettings& settings);

}  // namespace norvane
