// Shape files: the pair of a main file (.shp) and an index file (.shx).
//
// A failure is a null or a -1, and nothing is printed: the caller words the message. The two files are valid
// only after ShapeClose: until then they hold a header without records.
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string_view>

#include "module/exchange/shape_object.h"
#include "platform/files/random_file.h"

namespace norvane {

// X, Y, Z, M.
using ShapeBounds = std::array<double, 4>;

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
// Grown by realloc, which moves the pages of a large index instead of copying them.
using IndexArray = std::unique_ptr<int32_t[], FreeMemory>;

// One open pair.
struct ShapeHandle {
    // Makes both arrays of the index so long, one entry at least. False when there is no memory for them.
    bool reserveRecords(int32_t capacity);

    std::unique_ptr<files::RandomFile> shpFile;
    std::unique_ptr<files::RandomFile> shxFile;
    int32_t shapeType = 0;
    int32_t fileSize = 0;  // bytes of the .shp; where the next appended record goes
    int32_t recordCount = 0;
    int32_t recordCapacity = 0;  // entries in the two arrays of the index
    IndexArray recordOffsets;    // of each record's header, in bytes
    IndexArray recordSizes;      // in bytes, without the header of 8
    // What the index says of records that a .shp has lost at its end: 0 above, so that none is written in
    // their place, but the index keeps it.
    std::map<int32_t, int32_t> lostSizes;
    ShapeBounds boundsMin{}, boundsMax{};
    int32_t updated = 0;  // a write was tried: ShapeClose writes the headers and the index
};

// Opens the pair that a path names with or without extension, in either case of letters. Mode "r+b", "rb+" or
// "r+" allows writing, any other only reading.
ShapeHandle* ShapeOpen(std::string_view path, std::string_view mode);
// Makes an empty pair in place of one that is there, and opens it for writing. An unknown type is refused
// when the first record is written.
ShapeHandle* ShapeCreate(std::string_view path, int32_t shapeType);
// Every out argument may be null.
void ShapeGetInfo(const ShapeHandle* handle, int32_t* recordCount, int32_t* shapeType, ShapeBounds* boundsMin,
                  ShapeBounds* boundsMax);
// A new object for the caller, or null. With listForm its vertices are a list, which needs two at least;
// points are always in arrays. What the record does not hold of Z and M is 0.
ShapeObject* ShapeReadObject(ShapeHandle* handle, int32_t index, int32_t listForm);
// Writes an object over the record of that index, or behind the last with -1. The index, or -1. The object
// must be in array form; the type of the file rules what is written of it.
int32_t ShapeWriteObject(ShapeHandle* handle, int32_t index, const ShapeObject* object);
// Writes headers and index if anything was written, and closes. False when not all of it reached the files.
// Null is allowed.
bool ShapeClose(ShapeHandle* handle);

struct ShapeCloser {
    void operator()(ShapeHandle* handle) const { ShapeClose(handle); }
};
using OpenShapeFile = std::unique_ptr<ShapeHandle, ShapeCloser>;

}  // namespace norvane
