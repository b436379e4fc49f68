// dBASE and FoxPro tables (.dbf) as sources of records. A file is one table, which is called as it is.
#pragma once

#include "module/titleblocks/record_source.h"

namespace norvane {

// Records that are marked as deleted do not count; memo and general columns have no text. The code page is
// that of a .cpg file beside, else that of the header, else 1252.
std::unique_ptr<RecordSource> OpenDbfSource(const std::string& path);

}  // namespace norvane
