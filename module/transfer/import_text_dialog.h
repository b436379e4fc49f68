// Import ASCII Data: how the lines of a text are cut into fields, what those are called, and the table that
// they go to.
#pragma once

#include <optional>
#include <string>

#include "module/transfer/import_notes.h"
#include "module/transfer/import_text.h"
#include "module/transfer/point_output.h"

namespace norvane {

struct TextImportResult {
    ImportRun run;
    std::string path;
    TextRecords records;  // without what was written: their lines and what was passed over
    std::optional<PointOutput> points;
    bool draw = false;  // the points are to be drawn
};

// Shows the dialog for a text and an output, a file or a connect string. Nothing when nothing was imported;
// why not has been told.
std::optional<TextImportResult> ImportAsciiDialogRun(const std::string& path, const std::string& output);

}  // namespace norvane
