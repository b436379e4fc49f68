// Shape files of any bytes: the first two bytes of the input are the length of the .shp, the .shx follows it.
// What cannot be read leaves the files as they are, and what is written reads back.
#include <algorithm>

#include "fuzz/fuzz_folder.h"
#include "module/exchange/shape_file.h"
#include "module/exchange/shape_index.h"

using namespace norvane;

namespace {

constexpr int32_t kMostRecords = 2000;

void checkParts(const ShapeObject& object) {
    require(object.vertexCount >= 0 && object.partCount >= 0, "negative counts");
    for (int32_t start : object.partStarts)
        require(start >= 0 && start <= object.vertexCount, "a part outside the vertices");
}

void readAll(ShapeHandle* file) {
    for (int32_t i = -1; i <= std::min(file->recordCount, kMostRecords); ++i) {
        OwnedShape arrays(ShapeReadObject(file, i, 0)), list(ShapeReadObject(file, i, 1));
        if (arrays) checkParts(*arrays);
        if (arrays) ShapeComputeExtents(arrays.get());
        if (!list) continue;
        require(arrays && list->vertexCount == arrays->vertexCount, "the two forms differ");
        ShapeComputeExtents(list.get());
    }
}

void rewrite(const std::string& path) {
    OpenShapeFile file(ShapeOpen(path, "r+b"));
    if (!file) return;
    double v[] = {1, 2, 3, 4, 5};
    OwnedShape object(ShapeCreateObject(file->shapeType, -1, 1, nullptr, nullptr,
                                        shape::IsPoint(file->shapeType) ? 1 : 5, v, v, v, v, 0));
    int32_t written = ShapeWriteObject(file.get(), -1, object.get());
    if (file->recordCount > 1) ShapeWriteObject(file.get(), 0, object.get());
    require(ShapeClose(file.release()), "the files cannot be written");
    if (written < 0) return;
    file.reset(ShapeOpen(path, "rb"));
    require(file != nullptr, "a file that was written does not open");
    OwnedShape read(ShapeReadObject(file.get(), written, 0));
    require(read && read->vertexCount == object->vertexCount && read->x[0] == 1,
            "a shape that was written is gone");
}

// An index that is made of the shapes opens, and names as many records as it told.
void remakeIndex(const std::string& path) {
    std::optional<ShapeIndexMade> made = ShapeMakeIndex(path);
    if (!made) return;
    OpenShapeFile file(ShapeOpen(path, "rb"));
    require(file && file->recordCount == made->recordCount, "an index that was made anew is none");
    readAll(file.get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    size_t length = std::min<size_t>(data[0] | data[1] << 8, size - 2);
    std::string_view shp = bytes.substr(2, length), shx = bytes.substr(2 + length);
    putFuzzFile("file.shp", shp);
    putFuzzFile("file.shx", shx);
    OpenShapeFile file(ShapeOpen(fuzzFile("file"), "r+b"));
    if (!file) return 0;
    readAll(file.get());
    file.reset();
    require(fuzzFileContent("file.shp") == shp && fuzzFileContent("file.shx") == shx,
            "reading has changed a file");
    remakeIndex(fuzzFile("file"));
    putFuzzFile("file.shx", shx);
    rewrite(fuzzFile("file"));
    remakeIndex(fuzzFile("file"));
    return 0;
}
