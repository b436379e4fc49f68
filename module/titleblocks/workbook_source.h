// Workbooks (.xls, .xlsx, .ods) as sources of records: each sheet is a table, and its first row names the
// columns.
#pragma once

#include "module/titleblocks/record_source.h"

namespace norvane {

// A "$" at the end of a sheet's name does not count. A column without a heading is called F and its number,
// of those with the same heading the first counts; rows that are empty throughout are no records.
std::unique_ptr<RecordSource> OpenWorkbookSource(const std::string& path);

}  // namespace norvane
