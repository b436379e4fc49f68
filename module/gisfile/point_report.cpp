#include <algorithm>
#include <filesystem>

#include "module/coords/coordinate_file.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/gisfile/report.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

// A copy to look at: opening the file itself would take it for this program, and sort an older one.
class Copy {
  public:
    explicit Copy(const std::string& path) {
        std::string pattern = (fs::temp_directory_path() / "gisfile-XXXXXX").string();
        if (::mkdtemp(pattern.data())) folder_ = pattern;
        path_ = files::join(folder_, files::nameOf(path));
        for (const std::string& part : {path, IndexPath(path)})
            fs::copy_file(files::onDisk(part), files::join(folder_, files::nameOf(part)), error_);
    }
    ~Copy() { fs::remove_all(folder_, error_); }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string folder_, path_;
    std::error_code error_;
};

const char* nameOf(int format) {
    switch (format) {
        case kNumericCrd:
            return "numeric coordinate file";
        case kAlphanumericCrd:
            return "alphanumeric coordinate file";
        default:
            return "indexed coordinate file";
    }
}

std::string describe(const PointRecord& point) {
    std::string out = text::format("  %-10s %.10g, %.10g, %.10g", point.name.c_str(), point.northing,
                                   point.easting, point.elevation);
    if (!point.attribute.empty()) out += "  [" + point.attribute + "]";
    return point.description.empty() ? out : out + "  " + point.description;
}

bool isUnsorted(const std::string& path) {
    auto file = files::RandomFile::open(path, files::RandomFile::Mode::kRead);
    const char* mark = file ? file->view(kAlphanumericMarkAt, 15) : nullptr;
    return mark && mark[14] != '2';
}

void checkOrder(Report& report, const PointRecord& point, const std::string& previous) {
    int order = previous.empty() ? 1 : CompareNames(point.name, previous);
    if (order == 0) report.fault("the point " + point.name + " is there twice");
    if (order < 0) report.fault("the point " + point.name + " stands behind " + previous);
}

void checkEnds(Report& report, CoordinateFile& file, const std::string& last, uintmax_t size) {
    if (!last.empty() && file.format == kNumericCrd && file.highestName != last)
        report.fault("the header tells of " + file.highestName + " as the highest point, " + last + " is");
    uintmax_t header = file.format == kNumericCrd ? 56 : kAlphanumericHeaderSize;
    uintmax_t record = file.format == kNumericCrd ? 56 : 66;
    bool flat = file.format == kNumericCrd || file.format == kAlphanumericCrd;
    if (flat && (size - header) % record != 0)
        report.fault(text::format("%ju bytes at the end are no whole record", (size - header) % record));
}

}  // namespace

bool ReportPoints(Report& report, const ReportOptions& options) {
    int format = DetectFormat(report.path());
    if (format == kIndexMissing)
        format = text::endsWithNoCase(report.path(), ".zgc") ? kIndexedZgc : kIndexedCrd;
    Copy copy(report.path());
    std::unique_ptr<CoordinateFile> file = MakeCoordinateFile(format);
    if (!file || !file->Open(copy.path())) return false;
    report.say(text::format("%s: %s, %ld %s", report.path().c_str(), nameOf(format), file->RecordCount(),
                            format == kNumericCrd ? "places for points" : "points"));
    if (format == kAlphanumericCrd && isUnsorted(report.path()))
        report.say("  of the older kind: its points are in no order until a program opens it for work");
    report.say("  lowest " + file->lowestName + ", highest " + file->highestName);
    report.say("  text \"" + file->headerText + "\", number " + file->headerNumber + ", date " +
               file->headerDate);
    if (options.check && !files::exists(IndexPath(report.path())) && format >= kIndexedZgc)
        report.fault("the index is missing");
    PointRecord point;
    std::string previous;
    file->Rewind();
    for (long i = 0; (options.check || i < options.records) && file->Move(nullptr, point, 1); ++i) {
        if (i < options.records) report.say(describe(point));
        if (options.check) checkOrder(report, point, previous);
        previous = point.name;
    }
    if (options.check) {
        if (file->error != kNoSuchPoint) report.fault("a point cannot be read behind " + previous);
        checkEnds(report, *file, previous, fs::file_size(copy.path()));
    }
    return true;
}

}  // namespace norvane
