#include "module/exchange/shape_index.h"

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "module/exchange/file_stem.h"
#include "module/exchange/shape_object.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"

namespace norvane {

using files::RandomFile;

namespace {

constexpr int64_t kFileHeaderSize = 100, kRecordHeaderSize = 8;
constexpr size_t kLengthAt = 24, kTypeAt = 32;
constexpr int64_t kSmallestContents = 4;  // the type alone: a null shape

struct FoundRecord {
    uint32_t number;
    int64_t offset, size;  // in bytes; the size without the header
};

// The least bytes of the contents of a record with that many parts and vertices.
int64_t leastContents(int32_t type, int64_t parts, int64_t vertices) {
    if (shape::IsPoint(type)) return shape::HasZ(type) ? 28 : 20;
    if (shape::IsMultipoint(type)) return 40 + vertices * 16;
    return 44 + parts * 4 + vertices * 16;
}

// Finds the records of a .shp one behind the other.
class RecordWalk {
  public:
    RecordWalk(RandomFile& file, int32_t type) : file_(file), type_(type) {}

    // Dead bytes between records, as one that shrank leaves them, are passed over and counted.
    std::vector<FoundRecord> records() {
        std::vector<FoundRecord> found;
        bool isLost = false;
        for (int64_t at = kFileHeaderSize; at < file_.size();) {
            FoundRecord record{};
            bool isRecord = readAt(at, record) && (!isLost || record.number > 0);
            if (isRecord) found.push_back(record);
            int64_t step =
                isRecord ? kRecordHeaderSize + record.size : std::min<int64_t>(2, file_.size() - at);
            if (!isRecord) passedOver_ += step;
            isLost = !isRecord;
            at += step;
        }
        return found;
    }
    int64_t passedOver() const { return passedOver_; }

  private:
    bool readAt(int64_t at, FoundRecord& record) {
        const char* header = file_.view(at, static_cast<size_t>(kRecordHeaderSize + kSmallestContents));
        if (!header) return false;
        record = {files::getBig32(header), at, int64_t{files::getBig32(header + 4)} * 2};
        auto type = files::getLittle<int32_t>(header + kRecordHeaderSize);
        if (record.size < kSmallestContents || at + kRecordHeaderSize + record.size > file_.size())
            return false;
        return type == 0 || (type == type_ && holdsShape(at, record.size));
    }

    // The counts of the record fit into it.
    bool holdsShape(int64_t at, int64_t size) {
        if (size < leastContents(type_, 0, 0)) return false;
        if (shape::IsPoint(type_)) return true;
        constexpr int64_t kCountsAt = kRecordHeaderSize + 36;
        const char* counts = file_.view(at + kCountsAt, shape::HasParts(type_) ? 8 : 4);
        if (!counts) return false;
        int32_t first = files::getLittle<int32_t>(counts);
        int32_t second = shape::HasParts(type_) ? files::getLittle<int32_t>(counts + 4) : 0;
        int32_t parts = shape::HasParts(type_) ? first : 0,
                vertices = shape::HasParts(type_) ? second : first;
        return parts >= 0 && vertices >= 0 && size >= leastContents(type_, parts, vertices);
    }

    RandomFile& file_;
    int32_t type_;
    int64_t passedOver_ = 0;
};

// A record that grew was written anew at the end under its old number. Where the numbers are those from 1 on,
// the last of each counts; other numbers mean nothing, and the records stand as they lie.
std::vector<FoundRecord> inTheirOrder(const std::vector<FoundRecord>& found) {
    std::map<uint32_t, FoundRecord> last;
    for (const FoundRecord& record : found) last.insert_or_assign(record.number, record);
    bool isNumbered = !last.empty() && last.begin()->first == 1 && last.rbegin()->first == last.size();
    if (!isNumbered) return found;
    std::vector<FoundRecord> records;
    for (const auto& [number, record] : last) records.push_back(record);
    return records;
}

std::string indexOf(std::string header, const std::vector<FoundRecord>& records) {
    constexpr size_t kEntrySize = 8;
    std::memcpy(header.data(), "\0\0\x27\x0A", 4);
    size_t bytes = header.size() + records.size() * kEntrySize;
    files::putBig32(&header[kLengthAt], static_cast<uint32_t>(bytes / 2));
    header.reserve(bytes);
    for (const FoundRecord& record : records) {
        char entry[kEntrySize];
        files::putBig32(entry, static_cast<uint32_t>(record.offset / 2));
        files::putBig32(entry + 4, static_cast<uint32_t>(record.size / 2));
        header.append(entry, sizeof entry);
    }
    return header;
}

}  // namespace

std::optional<ShapeIndexMade> ShapeMakeIndex(std::string_view path) {
    std::string stem = FileStem(path);
    auto file = RandomFile::open(stem + ".shp", RandomFile::Mode::kRead);
    const char* bytes = file ? file->view(0, static_cast<size_t>(kFileHeaderSize)) : nullptr;
    if (!bytes) return std::nullopt;
    std::string header(bytes, static_cast<size_t>(kFileHeaderSize));
    auto type = files::getLittle<int32_t>(&header[kTypeAt]);
    if (!shape::IsKnown(type)) return std::nullopt;
    RecordWalk walk(*file, type);
    std::vector<FoundRecord> found = walk.records(), records = inTheirOrder(found);
    if (!files::replace(stem + ".shx", indexOf(std::move(header), records))) return std::nullopt;
    return ShapeIndexMade{static_cast<int32_t>(records.size()),
                          static_cast<int32_t>(found.size() - records.size()), walk.passedOver()};
}

}  // namespace norvane
