// gisfile: prints what is in shape files, dBASE tables and coordinate files, and checks them.
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "module/exchange/file_stem.h"
#include "module/gisfile/report.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

using namespace norvane;

namespace {

constexpr int kFaulty = 1, kFailed = 2;
constexpr long kMostFaults = 20;

constexpr const char* kUsage =
    "Usage: gisfile [--records N] [--check] [--reindex] FILE...\n"
    "Prints what is in .shp, .dbf, .crd and .zgc files: kind, count, bounds, fields and the first N records\n"
    "(5 unless told). --check looks at every record. --reindex makes the index (.shx) of a .shp anew; "
    "nothing\n"
    "else is changed.\n"
    "Exit status: 0 all is well, 1 a check has found something, 2 a file cannot be read.\n";

// Why a file could not be opened.
const char* reasonOf(const std::string& path, bool isShape, const ReportOptions& options) {
    if (!files::exists(isShape ? FileStem(path) + ".shp" : path)) return "there is no such file";
    if (isShape && options.reindex) return "no index can be made of it";
    if (isShape && !files::exists(FileStem(path) + ".shx"))
        return "its index (.shx) is missing; --reindex makes it anew";
    return "it cannot be read as what its name says";
}

int reportOn(const std::string& path, const ReportOptions& options) {
    std::string extension = text::lower(files::extensionOf(path));
    bool isShape = extension == "shp" || extension == "shx", known = true, opened = false;
    Report report(path);
    if (isShape)
        opened = ReportShapes(report, options);
    else if (extension == "dbf")
        opened = ReportTable(report, options);
    else if (extension == "crd" || extension == "zgc")
        opened = ReportPoints(report, options);
    else
        known = false;
    if (!opened) {
        const char* why = known ? reasonOf(path, isShape, options) : "no kind of file that is known here";
        std::fprintf(stderr, "%s: %s\n", path.c_str(), why);
        return kFailed;
    }
    if (options.check)
        report.say(report.faults() ? text::format("  %ld faults", report.faults()) : "  no faults");
    return report.faults() ? kFaulty : 0;
}

}  // namespace

// What files hold may be anything: characters that would move the cursor are shown as a replacement.
void Report::say(const std::string& line) {
    std::string shown;
    for (size_t at = 0; at < line.size();) {
        char32_t c = text::nextCodePoint(line, at);
        bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
        text::appendUtf8(shown, control ? 0xFFFD : c);
    }
    std::printf("%s\n", shown.c_str());
}

void Report::fault(const std::string& what) {
    if (++faults_ <= kMostFaults) say("  fault: " + what);
    if (faults_ == kMostFaults) say("  further faults are only counted");
}

int main(int count, char** arguments) {
    ReportOptions options;
    std::vector<std::string> paths;
    for (int i = 1; i < count; ++i) {
        std::string_view argument = arguments[i];
        if (argument == "--check") {
            options.check = true;
        } else if (argument == "--reindex") {
            options.reindex = true;
        } else if (argument == "--records" && i + 1 < count) {
            options.records = text::toLong(arguments[++i]);
        } else if (argument == "--help" || argument == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (text::startsWith(argument, "--")) {
            std::fputs(kUsage, stderr);
            return kFailed;
        } else {
            paths.emplace_back(argument);
        }
    }
    if (paths.empty()) {
        std::fputs(kUsage, stderr);
        return kFailed;
    }
    int worst = 0;
    for (const std::string& path : paths) worst = std::max(worst, reportOn(path, options));
    return worst;
}
