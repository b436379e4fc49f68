#include "module/transfer/new_shape_set.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/ads/editor.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

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
    return true;
}

}  // namespace

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

NewShapeSet::~NewShapeSet() {
    if (isWhole_ || unfinished_.empty()) return;
    shapes_.reset();
    table_.reset();
    std::error_code error;
    fs::remove_all(unfinished_, error);
}

bool NewShapeSet::open(int32_t shapeType) {
    unfinished_ = folder_.makeUnfinished();
    if (unfinished_.empty()) return false;
    shapes_.reset(ShapeCreate(unfinished_ + name_ + ".shp", shapeType));
    table_.reset(DbfCreate(unfinished_ + name_ + ".dbf"));
    return shapes_ && table_;
}

bool NewShapeSet::close(const std::string& reference) {
    const std::string stem = unfinished_ + name_;
    const bool shapesWritten = ShapeClose(shapes_.release());
    const bool tableWritten = DbfClose(table_.release());
    isWhole_ = shapesWritten && tableWritten && writeText(stem + ".cpg", "1252") &&
               (reference.empty() || writeText(stem + ".prj", reference));
    return isWhole_;
}

}  // namespace norvane
