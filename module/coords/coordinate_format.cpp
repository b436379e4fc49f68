#include "module/coords/coordinate_format.h"

#include "module/coords/coordinate_host.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::optional<int> fixedFormat;
int workingFormat = kAlphanumericCrd;

std::string extensionOf(const std::string& path) {
    return text::lower(files::extensionOf(path));
}

std::string withoutExtension(const std::string& path) {
    std::string extension = files::extensionOf(path);
    std::string whole = files::native(path);
    return extension.empty() ? whole : whole.substr(0, whole.size() - extension.size() - 1);
}

// An indexed file says so in its first bytes: how many X from byte 50 on, 0 for any other file.
size_t indexMark(std::string_view bytes) {
    if (bytes.empty() || bytes.front() != 'a' || bytes.size() < 50) return 0;
    size_t at = bytes.find("XX", 50);
    if (at == std::string_view::npos) return 0;
    return bytes.substr(at, 3) == "XXX" ? 3 : 2;
}

}  // namespace

bool IsAlphanumericHeader(std::string_view bytes) {
    return bytes.size() >= kAlphanumericHeaderSize &&
           text::startsWith(bytes.substr(kAlphanumericMarkAt), kAlphanumericMark);
}

int DetectFormat(const std::string& path) {
    constexpr int64_t kLookedAt = 250;
    std::string extension = extensionOf(path);
    if (extension == "dwg") return kDrawingPoints;
    auto file = files::RandomFile::open(path, files::RandomFile::Mode::kRead);
    if (!file || file->size() == 0) return kNoFile;
    if (extension == "mdb") return kModuleMdb;
    if (extension == "zak") return kModuleZak;
    size_t count = static_cast<size_t>(std::min(kLookedAt, file->size()));
    const char* start = file->view(0, count);
    std::string_view bytes(start ? start : "", start ? count : 0);
    size_t mark = indexMark(bytes);
    if ((extension == "zgc" && mark == 3) || (extension == "crd" && mark > 0)) {
        if (!files::exists(IndexPath(path))) return kIndexMissing;
        return extension == "zgc" ? kIndexedZgc : kIndexedCrd;
    }
    return IsAlphanumericHeader(bytes) ? kAlphanumericCrd : kNumericCrd;
}

int FormatOfNewFile(const std::string& path) {
    std::string extension = extensionOf(path);
    if (extension == "zgc") return kIndexedZgc;
    if (extension == "mdb") return kModuleMdb;
    if (extension == "zak") return kModuleZak;
    if (extension == "dwg") return kDrawingPoints;
    if (extension != "crd") return kNoFile;
    int wanted = fixedFormat ? *fixedFormat : TheCoordinateHost().formatOfNewFiles();
    return wanted == kNumericCrd || wanted == kIndexedCrd ? wanted : kAlphanumericCrd;
}

void SetFixedFormat(std::optional<int> format) {
    fixedFormat = format;
}
std::optional<int> FixedFormat() {
    return fixedFormat;
}
int WorkingFormat() {
    return workingFormat;
}
void SetWorkingFormat(int format) {
    workingFormat = format;
}

namespace {

// What the files have for an elevation of zero and for none.
constexpr double kFlatZero = 1e-50;
constexpr double kDatabaseNone = -1e20, kDatabaseLowest = -999.9;
constexpr size_t kLongestAttribute = 3;

// A description such as "TP/oak" begins with an attribute.
void splitAttribute(PointRecord& point) {
    size_t slash = point.description.find('/');
    if (slash > kLongestAttribute) return;
    point.attribute = point.description.substr(0, slash);
    point.description.erase(0, slash + 1);
}

void joinAttribute(PointRecord& point) {
    if (!point.attribute.empty()) point.description = point.attribute + "/" + point.description;
    point.attribute.clear();
}

}  // namespace

void ToWorkingForm(PointRecord& point, int fileFormat) {
    if (fileFormat == workingFormat) return;
    if (fileFormat == kNumericCrd || fileFormat == kAlphanumericCrd) {
        if (point.elevation == 0.0)
            point.elevation = kNoElevation;
        else if (point.elevation == kFlatZero)
            point.elevation = 0.0;
        splitAttribute(point);
    } else if (fileFormat == kModuleMdb) {
        if (point.elevation < kDatabaseLowest) point.elevation = kNoElevation;
        splitAttribute(point);
    }
}

void ToFileForm(PointRecord& point, int fileFormat) {
    if (fileFormat == workingFormat) return;
    if (fileFormat == kNumericCrd || fileFormat == kAlphanumericCrd) {
        if (point.elevation == kNoElevation)
            point.elevation = 0.0;
        else if (point.elevation == 0.0)
            point.elevation = kFlatZero;
        joinAttribute(point);
    } else if (fileFormat == kModuleMdb) {
        if (point.elevation == kNoElevation) point.elevation = kDatabaseNone;
        joinAttribute(point);
    }
}

std::string IndexPath(const std::string& dataPath) {
    return withoutExtension(dataPath) + (extensionOf(dataPath) == "zgc" ? ".zgi" : ".idx");
}

std::string TemporaryPath(const std::string& path, int format) {
    const char* extension = ".crd";
    if (format == kIndexedZgc) extension = ".zgc";
    if (format == kModuleZak) extension = ".zak";
    if (format == kModuleMdb) extension = ".mdb";
    if (format == kDrawingPoints) extension = ".dwg";
    return withoutExtension(path) + "_" + extension;
}

std::string NotePath(const std::string& path) {
    std::string name = files::nameOf(path);
    return files::folderOf(path) + name.substr(0, name.find('.')) + ".not";
}

}  // namespace norvane
