#include "module/coords/indexed_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "module/coords/flat_file.h"
#include "module/coords/point_names.h"
#include "module/coords/point_range.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kAttributeAt = 11, kAttributeRoom = 5, kNorthingAt = 16, kEastingAt = 24, kElevationAt = 32,
                 kDescriptionAt = 40, kDescriptionRoom = 104;
constexpr int kLongestDescription = 100;
constexpr size_t kLongestAsked = 255;

int errorOfOpening(int status) {
    switch (status) {
        case 1:
        case 2:
            return kNoError;
        case -15:
        case -11:
        case -10:
        case -9:
            return kTooManyFiles;
        case -14:
        case -4:
            return kReadFailed;
        case -13:
        case -12:
            return kCannotOpen;
        case -8:
        case -7:
            return kWrongVersion;
        case -6:
            return kOutOfMemory;
        case -5:
            return kNoDrawing;
        case -3:
        case -1:
            return kIndexFailed;
        default:
            return kNotSupported;
    }
}

// As names are kept, so that none of them holds what ranges are written with.
std::string keyOf(const std::string& name) {
    return text::encode(WithoutRangeSyntax(NormalizedName(name)));
}

std::string textAt(const RecordStore::Record& record, size_t at, size_t room) {
    std::string_view bytes(record.data() + at, room);
    return text::decode(bytes.substr(0, bytes.find('\0')));
}

void putText(RecordStore::Record& record, size_t at, const std::string& encoded) {
    std::copy(encoded.begin(), encoded.end(), record.begin() + static_cast<std::ptrdiff_t>(at));
}

std::unique_ptr<files::RandomFile> openAlone(const std::string& path) {
    return files::RandomFile::open(path, files::RandomFile::Mode::kUpdate,
                                   files::RandomFile::Sharing::kDenyWriters);
}

// Nobody has the file open, and all of it has reached the disk.
bool isOnDisk(const std::string& path) {
    auto file = openAlone(path);
    return file && file->sync();
}

bool renameFile(const std::string& from, const std::string& to) {
    return std::rename(files::onDisk(from).c_str(), files::onDisk(to).c_str()) == 0;
}

}  // namespace

// --- The pair of files --------------------------------------------------------------------------------

int IndexedFile::opened(int status, const std::string& filePath) {
    error = errorOfOpening(status);
    if (error == kCannotOpen)
        TheCoordinateHost().alert(
            "Failed to open coordinate file. File may already be opened by another application\n"
            "or may not exist or may be read-only.");
    if (error) return 0;
    path = filePath;
    key_.clear();
    lastName.clear();
    headerText = text::decode(store_.header().text);
    headerNumber = text::format("%.3f", store_.header().number);
    headerDate = text::decode(store_.header().date);
    readBounds();
    return 1;
}

void IndexedFile::readBounds() {
    RecordStore::Record record;
    std::string first, last;
    lowestName = store_.first(first, record) == RecordStore::kDone ? text::decode(first) : "";
    highestName = store_.last(last, record) == RecordStore::kDone ? text::decode(last) : "";
}

int IndexedFile::Open(const std::string& filePath) {
    std::string native = files::native(filePath);
    return opened(store_.open(native, IndexPath(native)), native);
}

int IndexedFile::createEmpty(const std::string& filePath, int descriptionLimit) {
    std::string native = files::native(filePath);
    bool known = text::endsWithNoCase(native, ".crd") || text::endsWithNoCase(native, ".zgc");
    if (!known) return fail(kReadFailed);
    RecordStore::Header header;
    bool good = descriptionLimit >= 1 && descriptionLimit <= kLongestDescription;
    header.descriptionLimit = good ? descriptionLimit : kLongestDescription;
    CreationDate date = Today();
    header.date = ZeroFilled(text::format("%2d/%2d/%4d", date.month, date.day, date.year));
    int status = store_.create(native, IndexPath(native), header);
    return opened(status, native);
}

int IndexedFile::DeleteFile() {
    store_.close();
    bool removed = files::remove(path);
    return removed && files::remove(IndexPath(path)) ? 1 : fail(kCannotDelete);
}

int IndexedFile::CopyFile(const std::string& newPath) {
    std::string target = files::native(newPath), source = path;
    if (!store_.close()) return fail(kReadFailed);
    std::optional<std::string> data = files::read(source);
    // A file that somebody works with is left alone.
    if (files::exists(target) && !openAlone(target)) data.reset();
    // The index of the copy is made from its data when it is opened.
    bool copied = data && files::replace(target, *data) && files::remove(IndexPath(target));
    if (copied) return Open(target);
    Open(source);
    return fail(kCannotCreate);
}

// The data file first, then the index. When the second does not go, the first comes back.
bool IndexedFile::moveBoth(const std::string& from, const std::string& to) {
    if (!renameFile(from, to)) return false;
    if (renameFile(IndexPath(from), IndexPath(to))) return true;
    renameFile(to, from);
    return false;
}

int IndexedFile::RenameFile(const std::string& newPath) {
    std::string old = path, target = files::native(newPath);
    store_.close();
    // Another file of that name is not overwritten.
    bool moved = !files::exists(target) && moveBoth(old, target);
    if (moved && Open(target)) return 1;
    if (moved) moveBoth(target, old);
    Open(old);
    return fail(moved ? kReadFailed : kCannotRename);
}

// The new data file takes the place of the old one in one step; an index that is then still the old one is
// seen to be of another file, and is made anew.
int IndexedFile::Replace(const std::string& temporaryPath) {
    std::string temporary = files::native(temporaryPath), target = path;
    store_.close();
    bool moved = isOnDisk(temporary) && renameFile(temporary, target);
    if (moved) renameFile(IndexPath(temporary), IndexPath(target));
    int reopened = Open(target);
    return moved ? reopened : fail(kCannotRename);
}

int IndexedFile::WriteHeader() {
    RecordStore::Header header = store_.header();
    header.number = text::toReal(headerNumber);
    header.date = text::encode(headerDate);
    header.text = text::encode(headerText);
    if (!store_.isOpen()) return fail(kCannotOpen);
    return done(store_.setHeader(header));
}

// --- Points -------------------------------------------------------------------------------------------

int IndexedFile::done(int status) {
    switch (status) {
        case RecordStore::kDone:
            error = kNoError;
            return 1;
        case RecordStore::kNoKey:
            return fail(kNoSuchPoint);
        case RecordStore::kFailed:
            return fail(kReadFailed);
        default:
            return fail(kRefused);
    }
}

int IndexedFile::take(int status, const RecordStore::Record& record, PointRecord& point) {
    if (!done(status)) return 0;
    point.name = NormalizedName(textAt(record, 0, kAttributeAt));
    point.attribute = textAt(record, kAttributeAt, kAttributeRoom);
    point.northing = files::getLittle<double>(&record[kNorthingAt]);
    point.easting = files::getLittle<double>(&record[kEastingAt]);
    point.elevation = files::getLittle<double>(&record[kElevationAt]);
    point.description = textAt(record, kDescriptionAt, kDescriptionRoom);
    point.recordPosition = store_.recordNumber();
    lastName = point.name;
    return 1;
}

int IndexedFile::Find(const std::string& name, PointRecord& point, int direction, int) {
    if (name.size() > kLongestAsked) return fail(kNameTooLong);
    std::string key = keyOf(name);
    if (key.empty()) return fail(kNameEmpty);
    if (key.size() > RecordStore::kLongestKey) return fail(kNameTooLong);
    RecordStore::Record record;
    int status = store_.read(key, record);
    if (status == RecordStore::kNoKey && direction > 0) status = store_.next(key, record);
    if (status == RecordStore::kNoKey && direction < 0) status = store_.previous(key, record);
    if (status == RecordStore::kDone) key_ = key;
    return take(status, record, point);
}

int IndexedFile::Move(const int32_t* from, PointRecord& point, int delta) {
    if (delta < -1 || delta > 1) return fail(kNotSupported);
    std::string key = key_;
    if (from && *from < 0) key.clear();
    if (from && *from >= 0)
        if (int status = store_.keyOf(*from, key); status != RecordStore::kDone) return done(status);
    RecordStore::Record record;
    int status = RecordStore::kNoKey;
    if (delta > 0)
        status = key.empty() ? store_.first(key, record) : store_.next(key, record);
    else if (!key.empty())
        status = delta < 0 ? store_.previous(key, record) : store_.read(key, record);
    if (status == RecordStore::kDone) key_ = key;
    return take(status, record, point);
}

int IndexedFile::put(const std::string& key, const PointRecord& point) {
    error = kNoError;
    std::string attribute = text::encode(point.attribute), description = text::encode(point.description);
    if (key.empty()) return fail(kNoNumber);
    if (key.size() > RecordStore::kLongestKey) return fail(kNameTooLong);
    if (static_cast<int>(description.size()) > store_.header().descriptionLimit)
        return fail(kDescriptionTooLong);
    if (attribute.size() >= kAttributeRoom) return fail(kAttributeTooLong);
    RecordStore::Record record{};
    putText(record, 0, key);
    putText(record, kAttributeAt, attribute);
    files::putLittle(&record[kNorthingAt], point.northing);
    files::putLittle(&record[kEastingAt], point.easting);
    files::putLittle(&record[kElevationAt], point.elevation);
    putText(record, kDescriptionAt, description);
    int status = store_.add(key, record);
    if (status == RecordStore::kRefusedKey) status = store_.rewrite(key, record);
    lastName.clear();
    if (status == RecordStore::kDone) widenBounds(text::decode(key));
    return done(status);
}

int IndexedFile::Write(const PointRecord& point, int) {
    if (!store_.isOpen()) return fail(kCannotOpen);
    return put(keyOf(point.name), point) && store_.flush() ? 1 : fail(error ? error : kReadFailed);
}

size_t IndexedFile::WriteAll(const std::vector<PointRecord>& points, int) {
    if (!store_.isOpen()) return static_cast<size_t>(fail(kCannotOpen));
    // In the order of their keys the index grows at its end and records stand as they are walked.
    std::vector<std::pair<std::string, const PointRecord*>> order;
    order.reserve(points.size());
    for (const PointRecord& point : points) order.emplace_back(keyOf(point.name), &point);
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return CompareNames(a.first, b.first) < 0; });
    size_t written = 0;
    int refusal = kNoError;
    for (const auto& [key, point] : order) {
        if (put(key, *point))
            ++written;
        else
            refusal = error;
    }
    error = refusal;
    return store_.flush() ? written : static_cast<size_t>(fail(kReadFailed));
}

int IndexedFile::Remove(const std::string& name, int) {
    PointRecord point;
    if (!Find(name, point, 0, 1)) return 0;
    int removed = done(store_.remove(key_)) && store_.flush();
    lastName.clear();
    readBounds();
    if (removed) RemoveNotes(PointRange(name));
    return removed;
}

int IndexedFile::RemoveRange(const char* range, const char* descriptionPattern, int) {
    PointRange wanted(range ? range : "ALL");
    int removed = 0;
    PointRecord point;
    Rewind();
    while (Move(nullptr, point, 1)) {
        if (!isWanted(point, wanted, descriptionPattern)) continue;
        // The walk goes on from the key, which needs no record.
        if (!done(store_.remove(key_))) break;
        ++removed;
    }
    bool whole = error == kNoSuchPoint || error == kNoError;
    store_.flush();
    lastName.clear();
    readBounds();
    if (removed > 0) RemoveNotes(wanted);
    return whole ? removed : -1;
}

}  // namespace norvane
