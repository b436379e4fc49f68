#include "platform/workbooks/workbook.h"

#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/workbooks/kinds.h"
#include "platform/workbooks/reading_process.h"

namespace workbooks {

std::unique_ptr<Workbook> open(const std::string& path) {
    const std::string file = files::onDisk(path), kind = text::lower(files::extensionOf(path));
    const auto reader = kind == "xls"    ? openXls
                        : kind == "xlsx" ? openXlsx
                        : kind == "ods"  ? openOds
                                         : nullptr;
    if (!reader) throw Error("The file \"" + path + "\" is no workbook of a kind that can be read.");
    // The libraries that read them were not written for files that somebody has made to harm them.
    return readInProcess(path, [&] { return reader(file); });
}

}  // namespace workbooks
