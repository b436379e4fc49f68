#include "module/exchange/shape_file.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "module/exchange/file_stem.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"

namespace norvane {

using files::RandomFile;

namespace {

constexpr size_t kHeaderSize = 100;
constexpr size_t kEntrySize = 8;
constexpr int32_t kVersion = 1000;
constexpr size_t kLengthAt = 24, kVersionAt = 28, kTypeAt = 32;
// Where the two bounds of X, Y, Z, M stand.
constexpr size_t kMinAt[] = {36, 44, 68, 84};
constexpr size_t kMaxAt[] = {52, 60, 76, 92};

// Lengths in the files count words of two bytes. One that does not fit comes out negative.
int32_t bytesOfWords(const char* bytes) {
    return static_cast<int32_t>(files::getBig32(bytes) * 2);
}

bool isIndexFile(const char* header) {
    return std::memcmp(header, "\0\0\x27", 3) == 0 && (header[3] == 0x0A || header[3] == 0x0D);
}

std::array<char, kHeaderSize> formatHeader(int64_t bytes, const ShapeHandle& handle) {
    std::array<char, kHeaderSize> header{};
    header[2] = 0x27;
    header[3] = 0x0A;
    files::putBig32(&header[kLengthAt], static_cast<uint32_t>(bytes / 2));
    files::putLittle(&header[kVersionAt], kVersion);
    files::putLittle(&header[kTypeAt], handle.shapeType);
    for (size_t i = 0; i < handle.boundsMin.size(); ++i) {
        files::putLittle(&header[kMinAt[i]], handle.boundsMin[i]);
        files::putLittle(&header[kMaxAt[i]], handle.boundsMax[i]);
    }
    return header;
}

bool lengthen(IndexArray& array, size_t entries) {
    void* memory = std::realloc(array.get(), entries * sizeof(int32_t));
    if (!memory) return false;
    (void)array.release();
    array.reset(static_cast<int32_t*>(memory));
    return true;
}

// The entries of the index, as many as the header tells and the file holds.
bool readIndex(ShapeHandle& handle, int64_t bytesTold, int64_t shpSizeTold) {
    int64_t bytes = std::min<int64_t>(bytesTold, handle.shxFile->size()) - static_cast<int64_t>(kHeaderSize);
    handle.recordCount = static_cast<int32_t>(std::max<int64_t>(bytes, 0) / static_cast<int64_t>(kEntrySize));
    if (!handle.reserveRecords(handle.recordCount)) return false;
    size_t count = static_cast<size_t>(handle.recordCount);
    const char* entry = handle.shxFile->view(kHeaderSize, count * kEntrySize);
    if (!entry) return false;
    for (size_t i = 0; i < count; ++i, entry += kEntrySize) {
        handle.recordOffsets[i] = bytesOfWords(entry);
        handle.recordSizes[i] = bytesOfWords(entry + 4);
        // One that reaches out of the file has no room: were it written in place, it would meet later
        // records.
        int64_t end = int64_t{handle.recordOffsets[i]} + handle.recordSizes[i] + 8;
        bool isBroken = handle.recordOffsets[i] < 0 || handle.recordSizes[i] < 0;
        if (!isBroken && end <= handle.shpFile->size()) continue;
        if (!isBroken && end <= shpSizeTold)
            handle.lostSizes.emplace(static_cast<int32_t>(i), handle.recordSizes[i]);
        handle.recordSizes[i] = 0;
    }
    return true;
}

// Where records may be appended: a header that tells too little must not make them overwrite others.
int32_t endOfRecords(const ShapeHandle& handle, int32_t told) {
    int64_t end = std::max<int64_t>(told, kHeaderSize);
    for (size_t i = 0; i < static_cast<size_t>(handle.recordCount); ++i) {
        int64_t recordEnd = int64_t{handle.recordOffsets[i]} + handle.recordSizes[i] + 8;
        if (handle.recordSizes[i] > 0) end = std::max(end, recordEnd);
    }
    return static_cast<int32_t>(std::min<int64_t>(end, std::numeric_limits<int32_t>::max()));
}

bool writeIndex(ShapeHandle& handle) {
    constexpr size_t kBlock = 4096;
    size_t count = static_cast<size_t>(handle.recordCount);
    std::array<char, kBlock * kEntrySize> block;
    for (size_t first = 0; first < count; first += kBlock) {
        size_t entries = std::min(kBlock, count - first);
        for (size_t i = 0; i < entries; ++i) {
            files::putBig32(&block[i * kEntrySize],
                            static_cast<uint32_t>(handle.recordOffsets[first + i]) / 2);
            files::putBig32(&block[i * kEntrySize + 4],
                            static_cast<uint32_t>(handle.recordSizes[first + i]) / 2);
        }
        int64_t at = static_cast<int64_t>(kHeaderSize + first * kEntrySize);
        if (!handle.shxFile->write(at, {block.data(), entries * kEntrySize})) return false;
    }
    for (const auto& [record, size] : handle.lostSizes) {
        char words[4];
        files::putBig32(words, static_cast<uint32_t>(size) / 2);
        int64_t at = static_cast<int64_t>(kHeaderSize) + int64_t{record} * kEntrySize + 4;
        if (!handle.shxFile->write(at, {words, sizeof words})) return false;
    }
    return true;
}

bool writeAtClose(ShapeHandle& handle) {
    auto shp = formatHeader(handle.fileSize, handle);
    auto shx = formatHeader(int64_t{handle.recordCount} * kEntrySize + kHeaderSize, handle);
    bool written = handle.shpFile->write(0, {shp.data(), shp.size()});
    written = handle.shxFile->write(0, {shx.data(), shx.size()}) && written;
    written = writeIndex(handle) && written;
    return handle.shxFile->flush() && handle.shpFile->flush() && written;
}

bool createOne(const std::string& path, const ShapeHandle& empty) {
    auto file = RandomFile::open(path, RandomFile::Mode::kCreate);
    auto header = formatHeader(kHeaderSize, empty);
    return file && file->write(0, {header.data(), header.size()}) && file->flush();
}

}  // namespace

bool ShapeHandle::reserveRecords(int32_t capacity) {
    size_t entries = static_cast<size_t>(std::max(capacity, 1));
    if (!lengthen(recordOffsets, entries) || !lengthen(recordSizes, entries)) return false;
    recordCapacity = capacity;
    return true;
}

ShapeHandle* ShapeOpen(std::string_view path, std::string_view mode) {
    bool update = mode == "rb+" || mode == "r+b" || mode == "r+";
    auto fileMode = update ? RandomFile::Mode::kUpdate : RandomFile::Mode::kRead;
    std::string stem = FileStem(path);
    auto handle = std::make_unique<ShapeHandle>();
    handle->shpFile = RandomFile::open(stem + ".shp", fileMode);
    handle->shxFile = RandomFile::open(stem + ".shx", fileMode);
    if (!handle->shpFile || !handle->shxFile) return nullptr;

    const char* shp = handle->shpFile->view(0, kHeaderSize);
    const char* shx = handle->shxFile->view(0, kHeaderSize);
    if (!shp || !shx || !isIndexFile(shx)) return nullptr;
    int32_t sizeTold = bytesOfWords(shp + kLengthAt);
    handle->shapeType = static_cast<unsigned char>(shx[kTypeAt]);
    for (size_t i = 0; i < handle->boundsMin.size(); ++i) {
        handle->boundsMin[i] = files::getLittle<double>(shx + kMinAt[i]);
        handle->boundsMax[i] = files::getLittle<double>(shx + kMaxAt[i]);
    }
    int64_t indexBytes = int64_t{files::getBig32(shx + kLengthAt)} * 2;
    if (!readIndex(*handle, indexBytes, sizeTold)) return nullptr;
    handle->fileSize = update ? endOfRecords(*handle, sizeTold) : sizeTold;
    return handle.release();
}

ShapeHandle* ShapeCreate(std::string_view path, int32_t shapeType) {
    std::string stem = FileStem(path);
    ShapeHandle empty;
    empty.shapeType = shapeType;
    if (!createOne(stem + ".shp", empty) || !createOne(stem + ".shx", empty)) return nullptr;
    return ShapeOpen(path, "r+b");
}

void ShapeGetInfo(const ShapeHandle* handle, int32_t* recordCount, int32_t* shapeType, ShapeBounds* boundsMin,
                  ShapeBounds* boundsMax) {
    if (recordCount) *recordCount = handle->recordCount;
    if (shapeType) *shapeType = handle->shapeType;
    if (boundsMin) *boundsMin = handle->boundsMin;
    if (boundsMax) *boundsMax = handle->boundsMax;
}

bool ShapeClose(ShapeHandle* handle) {
    std::unique_ptr<ShapeHandle> closing(handle);
    return !handle || !handle->updated || writeAtClose(*handle);
}

}  // namespace norvane
