#include "module/transfer/new_shape_set.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

// What other programs, and we, keep beside a set and would take for the new one's.
constexpr const char* kCompanions[] = {"cpg", "prj", "sbn", "sbx", "qix"};

bool writeText(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return !file.fail();
}

bool canBeReplaced(const SetFolder& folder, const std::string& name) {
    std::error_code error;
    for (const std::string& there : folder.find(name))
        if (const std::string path = folder.path() + there;
            !fs::is_regular_file(path, error) || ::access(path.c_str(), W_OK) != 0)
            return false;
    return folder.isWritable();
}

}  // namespace

// --- The folder ----------------------------------------------------------------------------------------

SetFolder::SetFolder(const std::string& path)
    : path_(files::onDisk(files::native(path))), isWritable_(files::folderIsWritable(path_)) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_.empty() ? "." : path_, error))
        if (std::string name = entry.path().filename().string(); !name.empty()) {
            std::string key = text::upper(name);
            names_.emplace(std::move(key), std::move(name));
        }
}

SetFolder::~SetFolder() {
    std::error_code error;
    if (!unfinished_.empty()) fs::remove_all(unfinished_, error);
}

std::string SetFolder::nextUnfinished() {
    if (unfinished_.empty()) {
        std::string pattern = path_ + ".export-XXXXXX";
        if (!::mkdtemp(pattern.data())) return "";
        unfinished_ = pattern;
    }
    // A folder for each: a file is looked for in any case of letters, which costs what its folder holds.
    const std::string folder = unfinished_ + "/" + std::to_string(++sets_);
    std::error_code error;
    return fs::create_directory(folder, error) ? folder + "/set" : "";
}

bool SetFolder::sync() const {
    return files::syncFileSystem(path_.empty() ? "." : path_);
}

std::vector<std::string> SetFolder::find(const std::string& name) const {
    std::vector<std::string> found;
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last; ++it) found.push_back(it->second);
    return found;
}

void SetFolder::removeOthers(const std::string& name) {
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last;) {
        std::error_code error;
        const bool goes = it->second != name && fs::remove(path_ + it->second, error);
        it = goes ? names_.erase(it) : std::next(it);
    }
}

bool SetFolder::put(const std::string& unfinished, const std::string& name) {
    std::error_code error;
    fs::rename(unfinished, path_ + name, error);
    if (error) return false;
    removeOthers(name);
    if (find(name).empty()) names_.emplace(text::upper(name), name);
    return true;
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
    unfinished_ = folder_.nextUnfinished();
    if (unfinished_.empty()) return false;
    shapes_.reset(ShapeCreate(unfinished_ + ".shp", shapeType));
    table_.reset(DbfCreate(unfinished_ + ".dbf"));
    return shapes_ && table_;
}

bool NewShapeSet::close(const std::string& reference) {
    hasReference_ = !reference.empty();
    const bool shapesWritten = ShapeClose(shapes_.release());
    const bool tableWritten = DbfClose(table_.release());
    return shapesWritten && tableWritten && writeText(unfinished_ + ".cpg", "1252") &&
           (!hasReference_ || writeText(unfinished_ + ".prj", reference));
}

bool NewShapeSet::putInPlace() {
    for (const char* companion : kCompanions) folder_.remove(name_ + "." + companion);
    std::vector<std::string> parts = {"dbf", "shx", "shp", "cpg"};
    if (hasReference_) parts.push_back("prj");
    bool done = true;
    for (const std::string& part : parts)
        done = folder_.put(unfinished_ + "." + part, name_ + "." + part) && done;
    return done;
}

}  // namespace norvane
