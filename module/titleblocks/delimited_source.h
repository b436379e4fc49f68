// Delimited text (.csv) as a source of records: one table, which is called as the file is, and whose first
// line names the columns.
#pragma once

#include "module/titleblocks/record_source.h"

namespace norvane {

// Values stand between commas, semicolons or tabs, whichever the first line has most of, and may be in
// quotes, where two quotes are one. Text that is no UTF-8 is of code page 1252.
std::unique_ptr<RecordSource> OpenDelimitedSource(const std::string& path);

}  // namespace norvane
