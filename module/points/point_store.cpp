#include "module/points/point_store.h"

#include "module/cad/ads_owners.h"
#include "module/cad/lisp_symbols.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "module/coords/point_names.h"
#include "module/points/drawing_points.h"
#include "module/points/module_points.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

PointStoreRecord PointStore;

namespace {

// The CAD host in the eyes of coordinate files.
class CadHost : public CoordinateHost {
  public:
    void print(const std::string& message) override { acutPrintf("%s", message.c_str()); }
    void alert(const std::string& message) override { acedAlert(message.c_str()); }
    int formatOfNewFiles() override {
        std::string value;
        if (!GetLispValue(value, "new_crdform")) return kAlphanumericCrd;
        return static_cast<int>(text::toLong(value));
    }
};

void useCadHost() {
    static CadHost host;
    SetCoordinateHost(&host);
}

std::unique_ptr<CoordinateFile> makeFile(int format) {
    switch (format) {
        case kModuleZak:
        case kModuleMdb:
            return std::make_unique<ModulePoints>(format);
        case kDrawingPoints:
            return std::make_unique<DrawingPoints>();
        default:
            return MakeCoordinateFile(format);
    }
}

void dropRange() {
    PointStore.walk.reset();
    PointStore.rangeText.clear();
}

CoordinateFile* openFile(int quiet) {
    if (!PointStore.currentFile && !quiet) acutPrintf("\nError3: crd file not open");
    return PointStore.currentFile.get();
}

int told(int found, const std::string& name, int quiet) {
    if (!found && !quiet && PointStore.currentFile->error == kNoSuchPoint)
        acutPrintf("\nRequested point# %s has no coordinate stored.", name.c_str());
    return found;
}

// Cuts a description to what the file holds. Its code page has one byte for each character.
void cutDescription(PointRecord& point, int most) {
    size_t end = 0;
    for (int characters = 0; end < point.description.size() && characters < most; ++characters)
        text::nextCodePoint(point.description, end);
    point.description.resize(end);
}

PointRecord fileForm(const CoordinateFile& file, PointRecord point) {
    cutDescription(point, file.MaxDescriptionLength() - 1);
    ToFileForm(point, file.format);
    return point;
}

// The points of the groups in a range, as the survey product knows them.
bool expandGroups(const std::string& path, std::string& range) {
    ResultBuffers call(acutBuildList(RTSTR, "cf:pointgroupmanager", RTSTR, path.c_str(), RTSTR, "ParseRange",
                                     RTSTR, range.c_str(), 0));
    ResultBuffers result;
    if (acedInvoke(call.get(), result.out()) != RTNORM || !result) return false;
    std::vector<std::string> parts;
    for (const resbuf* item = result.get(); item; item = item->rbnext)
        if (item->restype == RTSTR && item->resval.rstring) parts.emplace_back(item->resval.rstring);
    range = text::join(parts, ",");
    return true;
}

}  // namespace

int PointStoreOpen(const std::string& path, int create, int format) {
    useCadHost();
    PointStoreClose();
    int found = DetectFormat(path);
    bool isNew = found == kNoFile || create != 0;
    if (isNew)
        found = format == -1 ? FormatOfNewFile(path) : format;
    else if (found == kIndexMissing)
        return 0;
    std::unique_ptr<CoordinateFile> file = makeFile(found);
    if (!file || !(isNew ? file->Create(path, 31) : file->Open(path)) || file->error) {
        acutPrintf("Could not open file: %s\nIt might be read-only or in use by another application.\n",
                   path.c_str());
        return 0;
    }
    PointStore.currentFile = std::move(file);
    PointStore.isAutomation = found == kDrawingPoints ? 1 : 0;
    return 1;
}

void PointStoreClose() {
    dropRange();
    PointStore.currentFile.reset();
    PointStore.isAutomation = 0;
}

int PointStoreIsOpen() {
    return PointStore.currentFile ? 1 : 0;
}

int PointStoreFormat() {
    return PointStore.currentFile ? PointStore.currentFile->format : -1;
}

std::string PointStorePath() {
    return PointStore.currentFile ? PointStore.currentFile->path : "";
}

long PointStoreCount(const char* range) {
    CoordinateFile* file = PointStore.currentFile.get();
    if (!file) return 0;
    bool numeric = file->format == kNumericCrd;
    if (!range || (text::equalNoCase(text::trim(range), "all") && !numeric)) return file->RecordCount();
    RangeWalk walk(*file, PointRange(range, numeric));
    long count = 0;
    PointRecord point;
    while (walk.next(point)) ++count;
    return count;
}

int PointStoreFind(const std::string& name, PointRecord& point, int quiet) {
    return PointStoreFindNear(name, point, quiet, 0);
}

int PointStoreFindNear(const std::string& name, PointRecord& point, int quiet, int direction) {
    CoordinateFile* file = openFile(quiet);
    if (!file) return 0;
    file->error = kNoError;
    int found = told(FindNear(*file, name, point, quiet, direction), name, quiet);
    if (found) ToWorkingForm(point, file->format);
    return found;
}

int PointStoreWrite(const PointRecord& point, int quiet) {
    CoordinateFile* file = openFile(quiet);
    return file ? file->Write(fileForm(*file, point), quiet) : 0;
}

size_t PointStoreWriteAll(std::vector<PointRecord> points, int quiet) {
    CoordinateFile* file = openFile(quiet);
    if (!file) return 0;
    for (PointRecord& point : points) point = fileForm(*file, std::move(point));
    return file->WriteAll(points, quiet);
}

bool PointStoreWriteBeside(std::vector<PointRecord> points, const std::string& temporaryPath) {
    CoordinateFile* file = openFile(0);
    if (!file) return false;
    const std::optional<std::string> content = files::read(file->path);
    // An index that is left of another file is not this copy's, whose own is made from its points.
    if (!content || !files::remove(IndexPath(temporaryPath)) || !files::replace(temporaryPath, *content))
        return false;
    for (PointRecord& point : points) point = fileForm(*file, std::move(point));
    const std::unique_ptr<CoordinateFile> copy = makeFile(file->format);
    const bool whole = copy && copy->Open(temporaryPath) && copy->WriteAll(points, 1) == points.size();
    if (!whole) files::remove(temporaryPath);
    return whole;
}

std::string PointStoreHighest() {
    return PointStore.currentFile ? PointStore.currentFile->highestName : "";
}

std::string PointStoreLowest() {
    return PointStore.currentFile ? PointStore.currentFile->lowestName : "";
}

int PointStoreSetRange(const std::string& range) {
    dropRange();
    if (!openFile(0)) return 0;
    std::string expanded = NormalizedName(range);
    if (expanded.find("GROUP") != std::string::npos) {
        // The file is let go meanwhile: the survey product reads it too.
        std::string path = PointStorePath();
        PointStoreClose();
        bool known = expandGroups(path, expanded);
        if (!PointStoreOpen(path, 0, -1) || !known) return 0;
    }
    CoordinateFile& file = *PointStore.currentFile;
    PointStore.rangeText = expanded;
    PointStore.walk.emplace(file, PointRange(expanded, file.format == kNumericCrd));
    return 1;
}

int PointStoreNext(PointRecord& point) {
    CoordinateFile* file = openFile(0);
    if (!file) return 0;
    int found = PointStore.walk ? PointStore.walk->next(point) : file->Move(nullptr, point, 1);
    if (found) ToWorkingForm(point, file->format);
    return found;
}

int IncrementPointName(std::string& name, long step) {
    if (step == 0) return 1;
    bool numeric = PointStoreFormat() == kNumericCrd;
    std::string next = name.empty() ? std::to_string(step) : NextPointName(WithPositiveNumber(name), step);
    if (!numeric) {
        name = WithPositiveNumber(next);
        return 1;
    }
    constexpr int32_t kLowest = 1, kHighest = 99999;
    int32_t number = NumberOfName(next);
    if (number < kLowest) next = std::to_string(kLowest);
    if (number > kHighest) next = std::to_string(kHighest);
    name = next;
    return number < kLowest || number > kHighest ? 0 : 1;
}

int PointStoreCopyHeader(const CoordinateFile& source) {
    return PointStore.currentFile ? PointStore.currentFile->CopyHeader(source) : 0;
}

int PointStoreDelete() {
    if (!PointStore.currentFile || !PointStore.currentFile->DeleteFile()) return 0;
    PointStoreClose();
    return 1;
}

int PointStoreRename(const std::string& newPath) {
    return PointStore.currentFile ? PointStore.currentFile->RenameFile(newPath) : 0;
}

int PointStoreReplace(const std::string& temporaryPath) {
    return PointStore.currentFile ? PointStore.currentFile->Replace(temporaryPath) : 0;
}

}  // namespace norvane
