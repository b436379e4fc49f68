#include "module/coords/alphanumeric_file.h"

#include <algorithm>

#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kRecordSize = 66;
constexpr size_t kNumberAt = 0, kDateAt = 8, kTextAt = 40, kTextRoom = 32;
constexpr size_t kNameAt = 56, kNameRoom = 10;
constexpr size_t kSortedAt = kAlphanumericMarkAt + 14;
constexpr size_t kLongestDescription = 31, kLongestName = 9, kLongestAsked = 255;

// The name of a record as it is stored.
std::string_view storedName(const char* record) {
    std::string_view room(record + kNameAt, kNameRoom);
    return room.substr(0, std::min(room.find('\0'), kNameRoom - 1));
}

// The records of a block, in order of their names; equal names stay in theirs.
std::string sorted(std::string_view records) {
    struct Named {
        std::string_view name;
        const char* record;
    };
    std::vector<Named> order;
    order.reserve(records.size() / kRecordSize);
    for (size_t at = 0; at + kRecordSize <= records.size(); at += kRecordSize)
        order.push_back({storedName(&records[at]), &records[at]});
    std::stable_sort(order.begin(), order.end(),
                     [](const Named& a, const Named& b) { return CompareNames(a.name, b.name) < 0; });
    std::string out;
    out.reserve(records.size());
    for (const Named& named : order) out.append(named.record, kRecordSize);
    return out;
}

// Of records with equal names the last one stays.
std::string withoutRepeats(const std::string& records) {
    std::string out;
    out.reserve(records.size());
    for (size_t at = 0; at < records.size(); at += kRecordSize) {
        size_t next = at + kRecordSize;
        bool repeated =
            next < records.size() && CompareNames(storedName(&records[at]), storedName(&records[next])) == 0;
        if (!repeated) out.append(records, at, kRecordSize);
    }
    return out;
}

}  // namespace

AlphanumericFile::AlphanumericFile()
    : FlatFile(kAlphanumericCrd, {kAlphanumericHeaderSize, static_cast<int64_t>(kRecordSize)}) {}

std::string AlphanumericFile::newHeader() const {
    std::string header(kAlphanumericHeaderSize, '\0');
    CreationDate date = Today();
    std::string day = text::format("%2d/%2d/%4d", date.month, date.day, date.year);
    putText(&header[kDateAt], kTextRoom, ZeroFilled(day));
    putText(&header[kAlphanumericMarkAt], kTextRoom, std::string(kAlphanumericMark) + "2");
    return header;
}

bool AlphanumericFile::load() {
    const char* header = file_->view(0, kAlphanumericHeaderSize);
    if (!header) return fail(kReadFailed);
    if (!IsAlphanumericHeader({header, kAlphanumericHeaderSize})) return fail(kNotSupported);
    headerNumber = text::format("%.3f", files::getLittle<double>(header + kNumberAt));
    headerDate = textAt(header + kDateAt, kTextRoom);
    headerText = textAt(header + kTextAt, kTextRoom);
    bool unsorted = header[kSortedAt] != '2' && file_->size() > static_cast<int64_t>(kAlphanumericHeaderSize);
    if (unsorted && !sortRecords()) return false;
    readBounds();
    return true;
}

// Brings a file of the older kind into order. A new file takes its place, so that no point is lost on the
// way.
bool AlphanumericFile::sortRecords() {
    const char* bytes = file_->view(0, static_cast<size_t>(file_->size()));
    if (!bytes) return fail(kReadFailed);
    std::string content(bytes, static_cast<size_t>(file_->size()));
    size_t length = static_cast<size_t>(RecordCount()) * kRecordSize;
    std::string records = sorted(std::string_view(content).substr(kAlphanumericHeaderSize, length));
    content.replace(kAlphanumericHeaderSize, length, records);
    putText(&content[kAlphanumericMarkAt], kTextRoom, std::string(kAlphanumericMark) + "2");
    return replaceContent(content) || fail(kReadFailed);
}

void AlphanumericFile::readBounds() {
    auto count = static_cast<int32_t>(RecordCount());
    lowestName = count > 0 ? text::decode(nameAt(0)) : "";
    highestName = count > 0 ? text::decode(nameAt(count - 1)) : "";
}

const char* AlphanumericFile::record(int32_t index) const {
    return file_ && index >= 0 ? file_->view(offsetOf(index), kRecordSize) : nullptr;
}

std::string_view AlphanumericFile::nameAt(int32_t index) const {
    const char* bytes = record(index);
    return bytes ? storedName(bytes) : std::string_view();
}

bool AlphanumericFile::take(int32_t index, PointRecord& point) {
    const char* bytes = record(index);
    if (!bytes) return fail(kReadFailed);
    readCoordinates(bytes, point);
    point.name = text::decode(storedName(bytes));
    point.recordPosition = index;
    position = index;
    lastName = point.name;
    error = kNoError;
    return true;
}

// How a stored name stands to a name: -1 below it, 0 equal, 1 above.
bool AlphanumericFile::compareAt(int32_t index, const std::string& name, int& order) const {
    const char* bytes = record(index);
    if (bytes) order = CompareNames(storedName(bytes), name);
    return bytes != nullptr;
}

// Looks at the last record first, so that appending in order costs one read.
bool AlphanumericFile::search(const std::string& name, Place& place) const {
    int32_t low = 0, high = static_cast<int32_t>(const_cast<AlphanumericFile*>(this)->RecordCount()) - 1;
    int order = 0;
    place = {0, false};
    if (high < 0) return true;
    if (!compareAt(high, name, order)) return false;
    place = {order < 0 ? high + 1 : high, order == 0};
    if (order <= 0) return true;
    if (!compareAt(low, name, order)) return false;
    if (order >= 0) {
        place = {low, order == 0};
        return true;
    }
    while (high - low > 1) {
        int32_t middle = low + (high - low) / 2;
        if (!compareAt(middle, name, order)) return false;
        if (order == 0) {
            place = {middle, true};
            return true;
        }
        (order < 0 ? low : high) = middle;
    }
    place = {high, false};
    return true;
}

int AlphanumericFile::Find(const std::string& name, PointRecord& point, int direction, int) {
    std::string wanted = text::encode(NormalizedName(text::cutToBytes(name, kLongestAsked)));
    Place place;
    if (!search(wanted, place)) return fail(kReadFailed);
    if (place.found) return take(place.index, point);
    // The place is that of the next point above. A step from here reaches it or the one below, and from
    // outside of the file its nearest end.
    bool fromAbove = direction < 0 || place.index == RecordCount();
    position = place.index > 0 && fromAbove ? place.index : place.index - 1;
    return direction ? Move(nullptr, point, direction) : fail(kNoSuchPoint);
}

int AlphanumericFile::Move(const int32_t* from, PointRecord& point, int delta) {
    int64_t index = int64_t{from ? *from : position} + delta;
    if (index < 0 || index >= RecordCount()) return fail(kNoSuchPoint);
    return take(static_cast<int32_t>(index), point);
}

std::string AlphanumericFile::recordOf(const PointRecord& point, int quiet) {
    std::string name = text::encode(UpperAscii(WithoutRangeSyntax(std::string(text::trim(point.name)))));
    std::string description = text::encode(point.description);
    if (name.empty()) {
        fail(kNameEmpty, quiet, "\nInvalid point number: empty string.");
        return "";
    }
    if (name.size() > kLongestName || description.size() > kLongestDescription) {
        fail(name.size() > kLongestName ? kNameTooLong : kDescriptionTooLong);
        return "";
    }
    std::string bytes(kRecordSize, '\0');
    putCoordinates(bytes.data(), point, description);
    putText(&bytes[kNameAt], kNameRoom, name);
    return bytes;
}

int AlphanumericFile::Write(const PointRecord& point, int quiet) {
    error = kNoError;
    if (!file_) return fail(kCannotOpen);
    std::string bytes = recordOf(point, quiet);
    if (bytes.empty()) return 0;
    std::string name(storedName(bytes.data()));
    Place place;
    if (!search(name, place)) return fail(kReadFailed);
    lastName.clear();
    bool inPlace = place.found || place.index == RecordCount();
    if (!(inPlace ? overwrite(place.index, bytes) : insert(place.index, bytes))) return fail(kReadFailed);
    widenBounds(text::decode(name));
    return 1;
}

// Over the record of that index, or behind the last.
bool AlphanumericFile::overwrite(int32_t index, const std::string& bytes) {
    int64_t oldSize = file_->size();
    if (file_->write(offsetOf(index), bytes) && file_->flush()) return true;
    file_->truncate(oldSize);
    return false;
}

// Records cannot move up in place without a moment in which one of them is nowhere: a process that is killed
// then would lose it. So the file is made anew.
bool AlphanumericFile::insert(int32_t index, const std::string& bytes) {
    std::string content = wholeRecords();
    if (content.empty()) return false;
    content.insert(static_cast<size_t>(offsetOf(index)), bytes);
    return replaceContent(content);
}

// The file without what stands behind its last whole record; "" when it cannot be read.
std::string AlphanumericFile::wholeRecords() {
    size_t size = static_cast<size_t>(offsetOf(RecordCount()));
    const char* bytes = file_->view(0, size);
    return bytes ? std::string(bytes, size) : "";
}

// The new version is written under its own name, which Replace syncs and renames: a writer that is killed
// leaves that one file, over which the next goes, and no names that pile up.
bool AlphanumericFile::replaceContent(const std::string& content) {
    std::string temporary = TemporaryPath(path, format);
    auto file = files::RandomFile::open(temporary, files::RandomFile::Mode::kCreate,
                                        files::RandomFile::Sharing::kDenyWriters);
    bool written = file && file->write(0, content) && file->flush();
    bool isOurs = file != nullptr;
    file.reset();
    if (isOurs && !written) files::remove(temporary);
    return written && Replace(temporary);
}

size_t AlphanumericFile::WriteAll(const std::vector<PointRecord>& points, int quiet) {
    error = kNoError;
    if (!file_) return static_cast<size_t>(fail(kCannotOpen));
    std::string content = wholeRecords();
    if (content.empty()) return static_cast<size_t>(fail(kReadFailed));
    size_t written = 0;
    int refusal = kNoError;
    for (const PointRecord& point : points) {
        std::string bytes = recordOf(point, quiet);
        if (bytes.empty())
            refusal = error;
        else
            ++written;
        content += bytes;
    }
    std::string header = content.substr(0, kAlphanumericHeaderSize);
    std::string records = sorted(std::string_view(content).substr(kAlphanumericHeaderSize));
    if (written > 0 && !replaceContent(header + withoutRepeats(records)))
        return static_cast<size_t>(fail(kReadFailed));
    error = refusal;
    return written;
}

int AlphanumericFile::WriteHeader() {
    if (!file_) return fail(kCannotOpen);
    char header[kAlphanumericMarkAt];
    files::putLittle(header + kNumberAt, text::toReal(headerNumber));
    putText(header + kDateAt, kTextRoom, text::encode(headerDate));
    putText(header + kTextAt, kTextRoom, text::encode(headerText));
    bool written = file_->write(0, {header, sizeof header}) && file_->flush();
    return written ? 1 : fail(kReadFailed);
}

}  // namespace norvane
