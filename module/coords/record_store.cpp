#include "module/coords/record_store.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <limits>
#include <random>

#include "module/coords/point_names.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"

namespace norvane {

using files::RandomFile;

namespace {

constexpr size_t kHeaderSize = 288;
constexpr std::string_view kKind = "a coordinate file; its index stands beside it";
constexpr size_t kMarkAt = 50, kVersionAt = 56, kIdentityAt = 64, kStateAt = 72, kLimitAt = 76,
                 kNumberAt = 80, kDateAt = 88, kTextAt = 120, kTextRoom = 32;
constexpr std::string_view kVersion = "VER 3", kOlderVersion = "VER 1";
constexpr int kMostStores = 7;

// Which pairs of file numbers are in use, process-wide.
std::bitset<kMostStores + 1> slots;

int takeSlot() {
    for (int i = 1; i <= kMostStores; ++i)
        if (!slots[static_cast<size_t>(i)]) {
            slots.set(static_cast<size_t>(i));
            return i;
        }
    return 0;
}

std::string textAt(const char* bytes) {
    std::string_view room(bytes, kTextRoom);
    return std::string(room.substr(0, std::min(room.find('\0'), kTextRoom - 1)));
}

void putText(char* bytes, const std::string& text) {
    std::fill(bytes, bytes + kTextRoom, '\0');
    std::copy_n(text.data(), std::min(text.size(), kTextRoom - 1), bytes);
}

std::string_view keyIn(const char* record) {
    std::string_view room(record, RecordStore::kLongestKey + 1);
    return room.substr(0, std::min(room.find('\0'), RecordStore::kLongestKey));
}

bool isKey(const std::string& key) {
    return !key.empty() && key.size() <= RecordStore::kLongestKey && key.find('\0') == std::string::npos;
}

}  // namespace

RecordStore::RecordStore() = default;

RecordStore::~RecordStore() {
    close();
}

// --- Opening and closing ------------------------------------------------------------------------------

int RecordStore::open(const std::string& dataPath, const std::string& indexPath) {
    close();
    auto data = RandomFile::open(dataPath, RandomFile::Mode::kUpdate, RandomFile::Sharing::kDenyWriters);
    if (!data) return kNoAccess;
    data_ = std::move(data);
    if (!loadHeader()) {
        data_.reset();
        return kNoStore;
    }
    return attach(indexPath);
}

int RecordStore::create(const std::string& dataPath, const std::string& indexPath, const Header& header) {
    close();
    auto data = RandomFile::open(dataPath, RandomFile::Mode::kCreate, RandomFile::Sharing::kDenyWriters);
    if (!data) return kNoAccess;
    data_ = std::move(data);
    header_ = header;
    std::random_device random;
    identity_ = (uint64_t{random()} << 32 | random()) & std::numeric_limits<int64_t>::max();
    std::string bytes(kHeaderSize, '\0');
    std::copy(kKind.begin(), kKind.end(), bytes.begin());
    bool zgc = text::endsWithNoCase(dataPath, ".zgc");
    bytes.replace(kMarkAt, zgc ? 3 : 2, zgc ? "XXX" : "XX");
    bytes.replace(kVersionAt, kVersion.size(), kVersion);
    files::putLittle(&bytes[kIdentityAt], identity_);
    if (!data_->write(0, bytes) || !writeHeader() || !data_->flush()) {
        data_.reset();
        return kUnreadable;
    }
    files::remove(indexPath);
    return attach(indexPath);
}

// The index of an opened data file, and a pair of numbers.
int RecordStore::attach(const std::string& indexPath) {
    slot_ = takeSlot();
    if (slot_ && !indexMayBeBehind()) index_ = files::KeyIndex::open(indexPath, identity_, CompareNames);
    if (slot_ && (index_ || rebuildIndex(indexPath))) return kOpened;
    int status = slot_ ? kNoIndex : kTooMany;
    index_.reset();
    data_.reset();
    slots.reset(static_cast<size_t>(slot_));
    slot_ = 0;
    return status;
}

bool RecordStore::close() {
    if (!data_) return true;
    bool whole = data_->flush();
    if (changing_) whole = index_->commit() && whole;
    index_.reset();
    if (changing_ && whole) whole = writeState(0);
    changing_ = false;
    data_.reset();
    slots.reset(static_cast<size_t>(slot_));
    slot_ = 0;
    recordNumber_ = -1;
    return whole;
}

bool RecordStore::loadHeader() {
    const char* bytes = data_->view(0, kHeaderSize);
    if (!bytes || std::string_view(bytes, kKind.size()) != kKind) return false;
    std::string_view version(bytes + kVersionAt, kVersion.size());
    if (version != kVersion && version != kOlderVersion) return false;
    identity_ = files::getLittle<uint64_t>(bytes + kIdentityAt);
    header_.descriptionLimit = std::clamp(files::getLittle<int32_t>(bytes + kLimitAt), 1, 103);
    header_.number = files::getLittle<double>(bytes + kNumberAt);
    header_.date = textAt(bytes + kDateAt);
    header_.text = textAt(bytes + kTextAt);
    return true;
}

bool RecordStore::writeHeader() {
    char bytes[kTextAt + kTextRoom - kLimitAt];
    files::putLittle(bytes, header_.descriptionLimit);
    files::putLittle(bytes + (kNumberAt - kLimitAt), header_.number);
    putText(bytes + (kDateAt - kLimitAt), header_.date);
    putText(bytes + (kTextAt - kLimitAt), header_.text);
    return data_->write(kLimitAt, {bytes, sizeof bytes});
}

int RecordStore::setHeader(const Header& header) {
    header_ = header;
    return writeHeader() && data_->flush() ? kDone : kFailed;
}

bool RecordStore::writeState(int32_t behind) {
    char bytes[sizeof behind];
    files::putLittle(bytes, behind);
    return data_->write(kStateAt, {bytes, sizeof bytes}) && data_->flush();
}

bool RecordStore::flush() {
    return data_->flush();
}

// --- The index ----------------------------------------------------------------------------------------

bool RecordStore::indexMayBeBehind() {
    const char* state = data_->view(kStateAt, sizeof(int32_t));
    return !state || files::getLittle<int32_t>(state) != 0;
}

// Of records of the same key, which only a process that died can leave, the last one counts.
bool RecordStore::rebuildIndex(const std::string& indexPath) {
    index_ = files::KeyIndex::create(indexPath, identity_, CompareNames);
    bool whole = index_ && index_->begin();
    for (int32_t i = 0, total = recordTotal(); whole && i < total; ++i) {
        const char* bytes = data_->view(offsetOf(i), kRecordSize);
        std::string key(bytes ? keyIn(bytes) : std::string_view());
        whole = bytes && (key.empty() || index_->put(key, i));
    }
    return whole && index_->commit() && writeState(0);
}

// From here on the index may be behind: the header says so until both files are closed.
bool RecordStore::beginChange() {
    if (!changing_) changing_ = writeState(1) && index_->begin();
    return changing_;
}

// --- Records ------------------------------------------------------------------------------------------

int64_t RecordStore::offsetOf(int32_t number) const {
    return static_cast<int64_t>(kHeaderSize) + int64_t{number} * static_cast<int64_t>(kRecordSize);
}

int32_t RecordStore::recordTotal() const {
    int64_t total = (data_->size() - static_cast<int64_t>(kHeaderSize)) / static_cast<int64_t>(kRecordSize);
    return static_cast<int32_t>(std::clamp<int64_t>(total, 0, std::numeric_limits<int32_t>::max()));
}

int RecordStore::lookUp(files::KeyIndex::Step step, std::string& key, Record& record) {
    if (!data_) return kFailed;
    int32_t number = -1;
    files::KeyIndex::Found found = index_->find(step, key, number);
    if (found != files::KeyIndex::Found::kYes) return found == files::KeyIndex::Found::kNo ? kNoKey : kFailed;
    const char* bytes = number >= 0 ? data_->view(offsetOf(number), kRecordSize) : nullptr;
    // An index that names another record than it should is of no use until it is made anew.
    if (!bytes || keyIn(bytes) != key) return kFailed;
    std::memcpy(record.data(), bytes, kRecordSize);
    recordNumber_ = number;
    return kDone;
}

int RecordStore::first(std::string& key, Record& record) {
    return lookUp(files::KeyIndex::Step::kFirst, key, record);
}
int RecordStore::last(std::string& key, Record& record) {
    return lookUp(files::KeyIndex::Step::kLast, key, record);
}
int RecordStore::next(std::string& key, Record& record) {
    return lookUp(files::KeyIndex::Step::kNext, key, record);
}
int RecordStore::previous(std::string& key, Record& record) {
    return lookUp(files::KeyIndex::Step::kPrevious, key, record);
}
int RecordStore::read(const std::string& key, Record& record) {
    std::string asked = key;
    return lookUp(files::KeyIndex::Step::kExact, asked, record);
}

int RecordStore::add(const std::string& key, const Record& record) {
    int32_t number = data_ ? recordTotal() : -1;
    if (!isKey(key) || keyIn(record.data()) != key || number == std::numeric_limits<int32_t>::max())
        return kRefusedKey;
    if (number < 0 || !beginChange()) return kFailed;
    files::KeyIndex::Found added = index_->add(key, number);
    if (added != files::KeyIndex::Found::kYes)
        return added == files::KeyIndex::Found::kNo ? kRefusedKey : kFailed;
    return data_->write(offsetOf(number), {record.data(), record.size()}) ? kDone : kFailed;
}

int RecordStore::rewrite(const std::string& key, const Record& record) {
    if (keyIn(record.data()) != key) return kRefusedKey;
    Record old;
    int status = read(key, old);
    if (status != kDone) return status;
    return data_->write(offsetOf(recordNumber_), {record.data(), record.size()}) ? kDone : kFailed;
}

int RecordStore::remove(const std::string& key) {
    Record old;
    int status = read(key, old);
    if (status != kDone) return status;
    if (!beginChange() || !index_->remove(key)) return kFailed;
    return data_->write(offsetOf(recordNumber_), std::string(kRecordSize, '\0')) ? kDone : kFailed;
}

long RecordStore::count() {
    return index_ ? index_->count() : 0;
}

int RecordStore::keyOf(int32_t number, std::string& key) {
    if (!data_ || number < 0 || number >= recordTotal()) return kNoKey;
    const char* bytes = data_->view(offsetOf(number), kRecordSize);
    if (!bytes) return kFailed;
    key = keyIn(bytes);
    return key.empty() ? kNoKey : kDone;
}

}  // namespace norvane
