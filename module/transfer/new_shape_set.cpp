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

bool canBeReplaced(const std::string& path) {
    const std::string there = files::onDisk(path);
    std::error_code error;
    if (!fs::exists(there, error)) return files::folderIsWritable(there);
    return fs::is_regular_file(there, error) && ::access(there.c_str(), W_OK) == 0 &&
           files::folderIsWritable(there);
}

bool isOnDisk(const std::string& path) {
    std::unique_ptr<files::RandomFile> file = files::RandomFile::open(path, files::RandomFile::Mode::kUpdate);
    return file && file->sync();
}

}  // namespace

std::unique_ptr<NewShapeSet> NewShapeSet::make(const std::string& stem, int32_t shapeType) {
    for (const char* part : {"shp", "shx", "dbf"})
        if (!canBeReplaced(stem + "." + part)) {
            acutPrintf("\nCannot create %s file!", part);
            return nullptr;
        }
    std::unique_ptr<NewShapeSet> set(new NewShapeSet(files::native(stem)));
    if (set->open(shapeType)) return set;
    acutPrintf("\nCannot create shp file!");
    return nullptr;
}

bool NewShapeSet::open(int32_t shapeType) {
    constexpr size_t kLongestMark = 100;
    const std::string mark(text::cutToBytes(files::nameOf(stem_), kLongestMark));
    std::string pattern = files::onDisk(files::folderOf(stem_)) + "." + mark + "-XXXXXX";
    if (!::mkdtemp(pattern.data())) return false;
    folder_ = pattern;
    shapes_.reset(ShapeCreate(unfinished("shp"), shapeType));
    table_.reset(DbfCreate(unfinished("dbf")));
    return shapes_ && table_;
}

NewShapeSet::~NewShapeSet() {
    shapes_.reset();
    table_.reset();
    std::error_code error;
    if (!folder_.empty()) fs::remove_all(folder_, error);
}

std::string NewShapeSet::unfinished(const std::string& extension) const {
    return files::join(folder_, "set." + extension);
}

bool NewShapeSet::putInPlace(const std::string& extension) {
    const std::string target = stem_ + "." + extension;
    // A file of the same name in other letters is the old one too.
    const std::string old = files::onDisk(target);
    std::error_code error;
    fs::rename(unfinished(extension), files::onDisk(files::folderOf(target)) + files::nameOf(target), error);
    if (!error && files::nameOf(old) != files::nameOf(target)) files::remove(old);
    return !error;
}

bool NewShapeSet::finish(const std::string& reference) {
    const bool shapesWritten = ShapeClose(shapes_.release());
    const bool tableWritten = DbfClose(table_.release());
    bool whole = shapesWritten && tableWritten && files::replace(unfinished("cpg"), "1252");
    if (!reference.empty()) whole = whole && files::replace(unfinished("prj"), reference);
    for (const char* part : kParts) whole = whole && isOnDisk(unfinished(part));
    if (!whole) return false;
    for (const char* companion : kCompanions) files::remove(stem_ + "." + companion);
    for (const char* part : kParts) whole = putInPlace(part) && whole;
    whole = putInPlace("cpg") && whole;
    if (!reference.empty()) whole = putInPlace("prj") && whole;
    return whole;
}

}  // namespace norvane
