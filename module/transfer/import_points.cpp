#include "module/transfer/import_points.h"

#include <cmath>
#include <cstdio>

#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/points/point_store.h"
#include "module/transfer/import_records.h"
#include "module/transfer/shape_set.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kFormSymbol = "new_crdform";
constexpr size_t kLongestName = 9, kLongestDescription = 31;

// At most so many characters.
std::string cutCharacters(const std::string& text, size_t most) {
    size_t end = 0;
    for (size_t count = 0; end < text.size() && count < most; ++count) text::nextCodePoint(text, end);
    return text.substr(0, end);
}

// A name that has grown too long loses the last characters of what stands in front of its number, where that
// is long enough. The file has a byte for each character.
std::string shortened(const std::string& name) {
    std::string stored = text::encode(name);
    const size_t number = stored.find_first_of("0123456789");
    const size_t excess = stored.size() > kLongestName ? stored.size() - kLongestName : 0;
    if (number == std::string::npos || excess > number) return name;
    return text::decode(stored.erase(number - excess, excess));
}

// Nobody else works with a file that is to give way.
bool isFree(const std::string& path) {
    using files::RandomFile;
    return !files::exists(path) ||
           RandomFile::open(path, RandomFile::Mode::kUpdate, RandomFile::Sharing::kDenyWriters) != nullptr;
}

}  // namespace

FormOfNewFiles::FormOfNewFiles(bool alphanumeric) {
    acedGetSym(kFormSymbol, kept_.out());
    const ResultBuffers form(acutBuildList(RTSHORT, alphanumeric ? 1 : 0, 0));
    acedPutSym(kFormSymbol, form.get());
}

FormOfNewFiles::~FormOfNewFiles() {
    acedPutSym(kFormSymbol, kept_.get());
}

PointImport::~PointImport() {
    PointStoreClose();
    if (!temporary_.empty()) files::remove(temporary_);
}

bool PointImport::write(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids) {
    if (!open()) return false;
    progress.begin("Reading point : ", true);
    if (!readRecords(progress, report, ids)) return false;
    bool written = false;
    if (isKept_) {
        temporary_ = TemporaryPath(settings_.crdPath, PointStoreFormat());
        written = PointStoreWriteBeside(std::move(points_), temporary_);
    } else {
        const size_t count = points_.size();
        written = PointStoreWriteAll(std::move(points_), 1) == count;
    }
    if (!written) acutPrintf("\nThe points cannot be written to %s", settings_.crdPath.c_str());
    return written;
}

bool PointImport::open() {
    const FormOfNewFiles form(settings_.alphanumericCrd);
    isKept_ = !settings_.replacePoints && DetectFormat(settings_.crdPath) != kNoFile;
    if (isKept_) {
        if (!PointStoreOpen(settings_.crdPath, 0, -1)) return false;
    } else {
        if (!isFree(settings_.crdPath)) {
            acutPrintf("Could not open file: %s\nIt might be read-only or in use by another application.\n",
                       settings_.crdPath.c_str());
            return false;
        }
        temporary_ = TemporaryPath(settings_.crdPath, kAlphanumericCrd);
        if (!PointStoreOpen(temporary_, 1, -1)) return false;
    }
    numeric_ = PointStoreFormat() == kNumericCrd;
    return true;
}

bool PointImport::readRecords(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids) {
    IdCounter counter(table_, FindKeyFields(table_).id, [&](const std::string& id) { return idForm(id); });
    PointRecord point;
    point.description = cutCharacters(settings_.tableName, kLongestDescription);
    const bool hasHeight = shapes_.shapeType == shape::kPointZ;
    return ForEachImported(shapes_, table_, settings_.elevationField, progress,
                           [&](const ImportedRecord& record) {
                               point.northing = record.shape.y[0];
                               point.easting = record.shape.x[0];
                               point.elevation = hasHeight ? record.shape.z[0] : text::toReal(record.height);
                               const std::string wanted = idForm(record.id);
                               point.name = freeId(wanted, counter);
                               const bool isCut = cutCharacters(record.id, kLongestName) != record.id;
                               if (!record.id.empty() && (isCut || point.name != wanted)) ++report.idsChanged;
                               if (add(point, report)) report.points.push_back(point.name);
                               ids.push_back(point.name);
                               return true;
                           });
}

// An id as the coordinate file has it; "" for one that it cannot have.
std::string PointImport::idForm(const std::string& text) const {
    const std::string cut = cutCharacters(text, kLongestName);
    if (!numeric_) return WithoutRangeSyntax(UpperAscii(NormalizedName(cut)));
    const long number = text::toLong(cut);
    return number == 0 ? "" : std::to_string(number);
}

std::string PointImport::freeId(std::string id, IdCounter& counter) {
    if (id.empty()) id = counter.next();
    if (settings_.overwritePoints || !isTaken(id)) return id;
    const std::string wanted = id;
    if (auto known = continued_.find(wanted); known != continued_.end()) id = known->second;
    while (isTaken(id)) id = numeric_ ? counter.next() : shortened(NextPointName(id, 1));
    continued_[wanted] = id;
    return id;
}

bool PointImport::isTaken(const std::string& id) const {
    PointRecord point;
    return names_.contains(id) || (isKept_ && PointStoreFind(id, point, 1));
}

bool PointImport::add(PointRecord point, ImportReport& report) {
    const bool isSomewhere =
        std::isfinite(point.northing) && std::isfinite(point.easting) && std::isfinite(point.elevation);
    if (isSomewhere && PointStore.currentFile->ValidateName(point.name) == 0) {
        if (!names_.insert(point.name).second) ++report.pointsReplaced;
        points_.push_back(std::move(point));
        return true;
    }
    ++(isSomewhere ? report.pointsRefused : report.badCoordinates);
    acutPrintf("\nError writing point#: %s", point.name.c_str());
    return false;
}

bool PointImport::putInPlace() {
    bool done = false;
    if (isKept_) {
        done = PointStoreReplace(temporary_) != 0;
        PointStoreClose();
    } else {
        const std::string target = files::onDisk(settings_.crdPath);
        PointStoreClose();
        using files::RandomFile;
        const auto file = RandomFile::open(temporary_, RandomFile::Mode::kUpdate);
        done = file && file->sync() && std::rename(temporary_.c_str(), target.c_str()) == 0;
        // The notes of the points that were in the old file.
        if (done) files::remove(NotePath(target));
    }
    if (done) temporary_.clear();
    return done;
}

}  // namespace norvane
