#include "module/titleblocks/user_source.h"

#include <string_view>

#include "platform/dao/user_source.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// What differs between the two.
struct Kind {
    const char* driver;
    const char* source;
    const char* pattern;  // among those of the driver's files
    const char* number;   // of the driver
    const char* format;
    const char* engine;
};
constexpr Kind kTable = {
    "Microsoft dBase Driver (*.dbf)", "zgeo_connect_dbf", "*.DBF", "533", "dBase III;", "Xbase"};
constexpr Kind kWorkbook = {
    "Microsoft Excel Driver (*.xls)", "zgeo_connect_xls", "*.XLS", "790", "excel 5.0;", "Excel"};

const Kind* kindOf(const std::string& path) {
    const std::string extension = text::upper(files::extensionOf(path));
    if (extension == "DBF") return &kTable;
    return extension == "XLS" ? &kWorkbook : nullptr;
}

dao::SourceValues sourceValues(const Kind& kind, const std::string& path, const std::string& driverFile) {
    std::string folder = files::folderOf(path);
    if (folder.size() > 1) folder.pop_back();
    dao::SourceValues values;
    if (&kind == &kWorkbook) values.emplace_back("DBQ", path);
    values.insert(values.end(), {{"DefaultDir", folder},
                                 {"Driver", driverFile},
                                 {"DriverId", kind.number},
                                 {"FIL", kind.format},
                                 {"SafeTransactions", "0"},
                                 {"UID", ""}});
    return values;
}

dao::SourceValues engineValues(const Kind& kind) {
    const dao::SourceValues both = {
        {"ImplicitCommitSync", "Yes"}, {"Threads", "3"}, {"UserCommitSync", "Yes"}};
    dao::SourceValues values = &kind == &kTable
                                   ? dao::SourceValues{{"CollatingSequence", "ASCII"},
                                                       {"Deleted", "1"},
                                                       {"PageTimeout", "600"},
                                                       {"Statistics", "0"}}
                                   : dao::SourceValues{{"FirstRowHasNames", "1"}, {"MaxScanRows", "1"}};
    values.insert(values.end(), both.begin(), both.end());
    return values;
}

}  // namespace

void PrepareUserSource(const std::string& path) {
    const Kind* kind = kindOf(path);
    if (!kind) return;
    const std::string patterns = text::upper(dao::driverValue(kind->driver, "FileExtns"));
    const std::string driverFile = dao::driverValue(kind->driver, "Driver");
    if (driverFile.empty() || patterns.find(kind->pattern) == std::string::npos) return;
    dao::writeUserSource("ODBC Data Sources", {{kind->source, kind->driver}});
    dao::writeUserSource(kind->source, sourceValues(*kind, path, driverFile));
    dao::writeUserSource(std::string(kind->source) + "\\Engines\\" + kind->engine, engineValues(*kind));
}

}  // namespace norvane
