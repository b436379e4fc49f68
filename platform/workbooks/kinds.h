// The readers of the kinds of workbooks. Each throws an Error as open() does.
#pragma once

#include "platform/workbooks/workbook.h"

namespace workbooks {

// path: as it stands on disk.
std::unique_ptr<Workbook> openXls(const std::string& path);
std::unique_ptr<Workbook> openXlsx(const std::string& path);
std::unique_ptr<Workbook> openOds(const std::string& path);

}  // namespace workbooks
