// What the export remembers for the next time.
#pragma once

#include <optional>
#include <string>

#include "module/transfer/export_run.h"

namespace norvane {

struct RememberedExport {
    std::string folder;
    ExportChoice choice;  // without a reference, which is remembered by drawing
};

// Nothing before the first export.
std::optional<RememberedExport> LastExport();
// The file that says in which reference system the drawing is; "" when none was met or named, or it is gone.
std::string ReferenceFileOfDrawing();
void RememberReferenceFile(const std::string& path);
// Features beyond the room of a remembered value are forgotten.
void RememberExport(const RememberedExport& last);

}  // namespace norvane
