// Reading a workbook in a process of its own: a file that makes a reader fail takes that process down and
// nothing else.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/workbooks/workbook.h"

namespace workbooks {

// What `open` gives in a child process, with all of its sheets; that process gets a minute of processor time
// and some gigabytes. Throws the Error that `open` throws, and one that names the path when the process does
// not come to its end.
std::unique_ptr<Workbook> readInProcess(const std::string& path,
                                        const std::function<std::unique_ptr<Workbook>()>& open);

}  // namespace workbooks
