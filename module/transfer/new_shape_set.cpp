#include "module/transfer/new_shape_set.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

// In the order in which they are put in place.
constexpr const char* kParts[] = {"dbf", "shx", "shp"};
// What other programs, and we, keep beside a set and would take for the new one's.
constexpr const char* kCompanions[] = {"cpg", "prj", "sbn", "sbx", "qix"};

bool canBeReplaced(const SetFolder& folder, const std::string& name) {
    std::error_code error;
    for (const std::string& there : folder.find(name))
        if (const std::string path = folder.path() + there;
            !fs::is_regular_file(path, error) || ::access(path.c_str(), W_OK) != 0)
            return false;
    return folder.isWritable();
}

bool isOnDisk(const std::string& path) {
    std::unique_ptr<files::RandomFile> file = files::RandomFile::open(path, files::RandomFile::Mode::kUpdate);
    return file && file->sync();
}

}  // namespace

// --- The folder ----------------------------------------------------------------------------------------

SetFolder::SetFolder(const std::string& path)
    : path_(files::onDisk(files::native(path))), isWritable_(files::folderIsWritable(path_)) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_.empty() ? "." : path_, error))
        add(entry.path().filename().string());
}

std::vector<std::string> SetFolder::find(const std::string& name) const {
    std::vector<std::string> found;
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last; ++it) found.push_back(it->second);
    return found;
}

void SetFolder::add(const std::string& name) {
    for (const std::string& there : find(name))
        if (there == name) return;
    names_.emplace(text::upper(name), name);
}

void SetFolder::removeOthers(const std::string& name) {
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last;) {
        std::error_code error;
        const bool goes = it->second != name && fs::remove(path_ + it->second, error);
        it = goes ? names_.erase(it) : std::next(it);
    }
}

void SetFolder::remove(const std::string& name) {
    removeOthers(name);
    std::error_code error;
    if (!find(name).empty() && fs::remove(path_ + name, error)) names_.erase(text::upper(name));
}

// --- The set -------------------------------------------------------------------------------------------

std::unique_ptr<NewShapeSet> NewShapeSet::make(SetFolder& folder, const std::string& name,
                                               int32_t shapeType) {
    for (const char* part : {"shp", "shx", "dbf"})
        if (!canBeReplaced(folder, name + "." + part)) {
            acutPrintf("\nCannot create %s file!", part);
            return nullptr;
        }
    std::unique_ptr<NewShapeSet> set(new NewShapeSet(folder, name));
    if (set->open(shapeType)) return set;
    acutPrintf("\nCannot create shp file!");
    return nullptr;
}

bool NewShapeSet::open(int32_t shapeType) {
    constexpr size_t kLongestMark = 100;
    std::string pattern =
        folder_.path() + "." + std::string(text::cutToBytes(name_, kLongestMark)) + "-XXXXXX";
    if (!::mkdtemp(pattern.data())) return false;
    unfinishedFolder_ = pattern;
    shapes_.reset(ShapeCreate(unfinished("shp"), shapeType));
    table_.reset(DbfCreate(unfinished("dbf")));
    return shapes_ && table_;
}

NewShapeSet::~NewShapeSet() {
    shapes_.reset();
    table_.reset();
    std::error_code error;
    if (!unfinishedFolder_.empty()) fs::remove_all(unfinishedFolder_, error);
}

std::string NewShapeSet::unfinished(const std::string& extension) const {
    return unfinishedFolder_ + "/set." + extension;
}

// A file of the same name in other letters is the old one too.
bool NewShapeSet::putInPlace(const std::string& extension) {
    const std::string name = name_ + "." + extension;
    std::error_code error;
    fs::rename(unfinished(extension), folder_.path() + name, error);
    if (error) return false;
    folder_.add(name);
    folder_.removeOthers(name);
    return true;
}

bool NewShapeSet::finish(const std::string& reference) {
    const bool shapesWritten = ShapeClose(shapes_.release());
    const bool tableWritten = DbfClose(table_.release());
    bool whole = shapesWritten && tableWritten && files::replace(unfinished("cpg"), "1252");
    if (!reference.empty()) whole = whole && files::replace(unfinished("prj"), reference);
    for (const char* part : kParts) whole = whole && isOnDisk(unfinished(part));
    if (!whole) return false;
    for (const char* companion : kCompanions) folder_.remove(name_ + "." + companion);
    for (const char* part : kParts) whole = putInPlace(part) && whole;
    whole = putInPlace("cpg") && whole;
    if (!reference.empty()) whole = putInPlace("prj") && whole;
    return whole;
}

}  // namespace norvane
