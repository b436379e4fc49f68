// Records of a shape file: their bytes as objects and back.
//
// A record is a header of 8 bytes (number and length, the only big-endian numbers), the type, and by type:
//   points                  X Y [Z] [M]
//   multipoints             box, vertex count, XY pairs, [Z range and values], [M range and values]
//   arcs, polygons, patches box, part count, vertex count, part starts, [part types], XY pairs, [Z], [M]
#include <algorithm>
#include <cstring>
#include <limits>

#include "module/exchange/shape_file.h"
#include "platform/files/byte_order.h"

namespace norvane {

namespace {

constexpr size_t kHeaderSize = 8;
constexpr size_t kBoxAt = 12, kPointAt = 12, kMultipointCountAt = 44, kMultipointVerticesAt = 48;
constexpr size_t kPartCountAt = 44, kPartsAt = 52;

// The bytes of a record, header included, read one behind the other.
class RecordReader {
  public:
    RecordReader(const char* bytes, size_t size) : bytes_(bytes), size_(size) {}

    void moveTo(size_t position) { position_ = position; }
    bool fits(size_t count) const { return position_ <= size_ && count <= size_ - position_; }
    int32_t integer() { return next<int32_t>(); }
    double real() { return next<double>(); }

  private:
    template <typename Number>
    Number next() {
        auto value = files::getLittle<Number>(bytes_ + position_);
        position_ += sizeof(Number);
        return value;
    }

    const char* bytes_;
    size_t size_;
    size_t position_ = 0;
};

// Puts the contents of a record one behind the other.
class RecordWriter {
  public:
    explicit RecordWriter(char* to) : to_(to) {}

    void integer(int32_t value) { put(value); }
    void real(double value) { put(value); }
    void range(double low, double high, const double* values, int32_t count) {
        real(low);
        real(high);
        for (int32_t i = 0; i < count; ++i) real(values[i]);
    }

  private:
    template <typename Number>
    void put(Number value) {
        files::putLittle(to_, value);
        to_ += sizeof value;
    }

    char* to_;
};

// --- Reading ------------------------------------------------------------------------------------------

void readBox(RecordReader& in, ShapeObject& object) {
    in.moveTo(kBoxAt);
    object.xMin = in.real();
    object.yMin = in.real();
    object.xMax = in.real();
    object.yMax = in.real();
}

// Part starts, and the types of a multipatch. False when they do not fit or point outside the vertices.
bool readParts(RecordReader& in, ShapeObject& object, int32_t vertexCount) {
    size_t parts = static_cast<size_t>(object.partCount);
    bool typed = object.shapeType == shape::kMultipatch;
    if (!in.fits(parts * (typed ? 8 : 4))) return false;
    object.partStarts.resize(parts);
    object.partTypes.assign(parts, shape::kRing);
    int32_t previous = 0;
    for (int32_t& start : object.partStarts) {
        start = in.integer();
        if (start < previous || start > vertexCount) return false;
        previous = start;
    }
    if (typed)
        for (int32_t& type : object.partTypes) type = in.integer();
    return true;
}

bool readVertices(RecordReader& in, ShapeObject& object, int32_t count, int32_t listForm) {
    size_t n = static_cast<size_t>(count);
    size_t measures = 16 + n * 8;
    bool hasZ = shape::HasZ(object.shapeType);
    if (!in.fits(n * 16 + (hasZ ? measures : 0))) return false;
    if (listForm)
        object.allocateList(count);
    else
        object.allocateArrays(count);
    object.forEachVertex([&](double& x, double& y, double&, double&) {
        x = in.real();
        y = in.real();
    });
    if (hasZ) {
        object.zMin = in.real();
        object.zMax = in.real();
        object.forEachVertex([&](double&, double&, double& z, double&) { z = in.real(); });
    }
    if (in.fits(measures)) {
        object.mMin = in.real();
        object.mMax = in.real();
        object.forEachVertex([&](double&, double&, double&, double& m) { m = in.real(); });
    }
    return true;
}

bool readManyVertices(RecordReader& in, ShapeObject& object, int32_t listForm) {
    bool parts = shape::HasParts(object.shapeType);
    if (!in.fits(parts ? kPartsAt : kMultipointVerticesAt)) return false;
    readBox(in, object);
    in.moveTo(parts ? kPartCountAt : kMultipointCountAt);
    if (parts) object.partCount = in.integer();
    int32_t vertexCount = in.integer();
    if (object.partCount < 0 || vertexCount < 0 || (listForm && vertexCount < 2)) return false;
    if (parts && !readParts(in, object, vertexCount)) return false;
    return readVertices(in, object, vertexCount, listForm);
}

bool readPoint(RecordReader& in, ShapeObject& object) {
    bool z = shape::HasZ(object.shapeType);
    in.moveTo(kPointAt);
    if (!in.fits(z ? 24 : 16)) return false;
    object.allocateArrays(1);
    *object.x = in.real();
    *object.y = in.real();
    if (z) *object.z = in.real();
    if (in.fits(8)) *object.m = in.real();
    ShapeComputeExtents(&object);
    return true;
}

// --- Writing ------------------------------------------------------------------------------------------

// Records of patches are written without M, though they are read with it.
bool writesM(int32_t fileType) {
    return fileType != shape::kMultipatch && (shape::HasZ(fileType) || shape::HasM(fileType));
}

void writeMany(RecordWriter& out, int32_t fileType, const ShapeObject& object) {
    bool parts = shape::HasParts(fileType);
    for (double bound : {object.xMin, object.yMin, object.xMax, object.yMax}) out.real(bound);
    if (parts) out.integer(object.partCount);
    out.integer(object.vertexCount);
    if (parts) {
        size_t count = static_cast<size_t>(object.partCount);
        for (size_t i = 0; i < count; ++i) out.integer(object.partStarts[i]);
        for (size_t i = 0; i < count && fileType == shape::kMultipatch; ++i) out.integer(object.partTypes[i]);
    }
    for (int32_t i = 0; i < object.vertexCount; ++i) {
        out.real(object.x[i]);
        out.real(object.y[i]);
    }
    if (shape::HasZ(fileType)) out.range(object.zMin, object.zMax, object.z, object.vertexCount);
    if (writesM(fileType)) out.range(object.mMin, object.mMax, object.m, object.vertexCount);
}

void writePoint(RecordWriter& out, int32_t fileType, const ShapeObject& object) {
    out.real(*object.x);
    out.real(*object.y);
    if (shape::HasZ(fileType)) out.real(*object.z);
    if (writesM(fileType)) out.real(*object.m);
}

bool isWritable(int32_t fileType, const ShapeObject& object) {
    if (!shape::IsKnown(fileType) || !object.x || object.vertexCount < 0) return false;
    if (shape::IsPoint(fileType)) return object.vertexCount > 0;
    size_t parts = static_cast<size_t>(std::max(object.partCount, 0));
    return object.partCount >= 0 && object.partStarts.size() >= parts && object.partTypes.size() >= parts;
}

// In bytes, with the header.
size_t recordSize(int32_t fileType, const ShapeObject& object) {
    size_t numbers = 2 + (shape::HasZ(fileType) ? 1 : 0) + (writesM(fileType) ? 1 : 0);
    if (shape::IsPoint(fileType)) return kPointAt + numbers * 8;
    size_t vertices = static_cast<size_t>(object.vertexCount) * numbers * 8 + (numbers - 2) * 16;
    if (!shape::HasParts(fileType)) return kMultipointVerticesAt + vertices;
    size_t ofOnePart = fileType == shape::kMultipatch ? 8 : 4;
    return kPartsAt + static_cast<size_t>(object.partCount) * ofOnePart + vertices;
}

void writeRecord(char* record, size_t size, int32_t fileType, int32_t index, const ShapeObject& object) {
    files::putBig32(record, static_cast<uint32_t>(index) + 1);
    files::putBig32(record + 4, static_cast<uint32_t>((size - kHeaderSize) / 2));
    RecordWriter out(record + kHeaderSize);
    out.integer(fileType);
    if (shape::IsPoint(fileType))
        writePoint(out, fileType, object);
    else
        writeMany(out, fileType, object);
}

bool makeRoomForOneMore(ShapeHandle& handle) {
    if (handle.recordCount < handle.recordCapacity) return true;
    return handle.reserveRecords(static_cast<int32_t>(handle.recordCapacity * 1.3 + 100));
}

void widenBounds(ShapeHandle& handle, const ShapeObject& object) {
    if (object.vertexCount == 0) return;
    const double *x = object.x, *y = object.y, *z = object.z, *m = object.m;
    ShapeBounds &low = handle.boundsMin, &high = handle.boundsMax;
    ShapeExtents bounds{low[0], low[1], low[2], low[3], high[0], high[1], high[2], high[3]};
    if (handle.recordCount == 1) bounds = ShapeExtents::of(x[0], y[0], z[0], m[0]);
    for (int32_t i = 0; i < object.vertexCount; ++i) bounds.widen(x[i], y[i], z[i], m[i]);
    low = {bounds.xMin, bounds.yMin, bounds.zMin, bounds.mMin};
    high = {bounds.xMax, bounds.yMax, bounds.zMax, bounds.mMax};
}

// A record that is written behind lost ones leaves zeros in their places. One that was cut in its middle
// would then read as a whole one with zeros in it, so its length is taken away.
bool clearHalfRecords(ShapeHandle& handle) {
    for (const auto& [record, size] : handle.lostSizes) {
        int64_t offset = handle.recordOffsets[static_cast<size_t>(record)];
        if (offset < handle.shpFile->size() &&
            !handle.shpFile->write(offset + 4, std::string_view("\0\0\0\0", 4)))
            return false;
    }
    return true;
}

}  // namespace

ShapeObject* ShapeReadObject(ShapeHandle* handle, int32_t index, int32_t listForm) {
    if (index < 0 || index >= handle->recordCount) return nullptr;
    int32_t offset = handle->recordOffsets[static_cast<size_t>(index)];
    int32_t size = handle->recordSizes[static_cast<size_t>(index)];
    if (offset < 0 || size < 0) return nullptr;
    const char* record = handle->shpFile->view(offset, static_cast<size_t>(size) + kHeaderSize);
    if (!record) return nullptr;
    // A record that shrank keeps its old size in the index; what is behind its own length is dead.
    uint64_t contents = uint64_t{files::getBig32(record + 4)} * 2;
    size_t end = static_cast<size_t>(std::min<uint64_t>(contents, static_cast<uint64_t>(size))) + kHeaderSize;

    OwnedShape object(new ShapeObject);
    object->shapeType = handle->shapeType;
    object->shapeId = index;
    object->listForm = listForm;
    RecordReader in(record, end);
    bool read = false;
    if (shape::IsPoint(object->shapeType))
        read = readPoint(in, *object);
    else if (shape::IsKnown(object->shapeType))
        read = readManyVertices(in, *object, listForm);
    return read ? object.release() : nullptr;
}

int32_t ShapeWriteObject(ShapeHandle* handle, int32_t index, const ShapeObject* object) {
    handle->updated = 1;
    bool append = index == -1;
    if (append) index = handle->recordCount;
    if (index < 0 || (!append && index >= handle->recordCount) || !isWritable(handle->shapeType, *object))
        return -1;
    size_t at = static_cast<size_t>(index);
    size_t size = recordSize(handle->shapeType, *object);
    size_t room = append ? 0 : static_cast<size_t>(std::max(handle->recordSizes[at], 0));
    bool atEnd = append || size - kHeaderSize > room;
    // Sizes are kept in 32 bits.
    if (atEnd && size > static_cast<size_t>(std::numeric_limits<int32_t>::max() - handle->fileSize))
        return -1;
    if (append && !makeRoomForOneMore(*handle)) return -1;
    int32_t offset = atEnd ? handle->fileSize : handle->recordOffsets[at];
    if (offset > handle->shpFile->size() && !clearHalfRecords(*handle)) return -1;
    char* record = handle->shpFile->place(offset, size);
    if (!record) return -1;
    writeRecord(record, size, handle->shapeType, index, *object);
    if (atEnd) {
        handle->recordOffsets[at] = offset;
        handle->recordSizes[at] = static_cast<int32_t>(size - kHeaderSize);
        handle->fileSize += static_cast<int32_t>(size);
        handle->lostSizes.erase(index);
    }
    if (append) ++handle->recordCount;
    widenBounds(*handle, *object);
    return index;
}

}  // namespace norvane
