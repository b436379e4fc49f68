// The records that are shown, as text for other programs.
#pragma once

#include <functional>
#include <string>

#include "module/records/records_table.h"

namespace norvane {

// The names of the fields and rows below them, the last one included: a line each with tabs between the
// values, and a text that holds one of these in double quotes. Records that are gone are left out, here as
// there. Both throw what the engine says where a record cannot be read.
std::string RecordsAsText(const RecordsTable& records, int first, int last);

enum class CsvOutcome { kWritten, kStopped, kFailed };

// Writes all rows that are shown, in their order, below the names of the fields: UTF-8, commas, and double
// quotes where they are needed. What was at the path stays until all is written. goOn is told how many
// records are written, and stops it by false.
CsvOutcome SaveRecordsAsCsv(const RecordsTable& records, const std::string& path,
                            const std::function<bool(int rows)>& goOn);

}  // namespace norvane
