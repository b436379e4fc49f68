// What an import of records tells at its end, as lines.
#pragma once

#include <string>
#include <vector>

#include "module/transfer/import_notes.h"
#include "module/transfer/import_text.h"
#include "module/transfer/point_output.h"

namespace norvane {

// What became of the tables: rows added and changed, values that were cut or are no numbers, columns that
// were made as whole numbers because they are empty; and at which one it ended before its time.
std::vector<std::string> RunLines(const ImportRun& run);
// What was read of a file, and what of it was passed over and why.
std::vector<std::string> NoteLines(const std::string& path, const NoteRecordList& notes);
std::vector<std::string> TextRecordLines(const std::string& path, const TextRecords& records);
std::vector<std::string> PointLines(const PointOutput& output);
std::vector<std::string> TakenBackLines(const TakenBack& result);

}  // namespace norvane
