#include "module/records/record_view.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

#include "module/records/key_finder.h"
#include "module/records/row_search.h"
#include "module/store/cell_values.h"
#include "module/store/matching_records.h"
#include "platform/dao/names.h"

namespace norvane {

namespace {

constexpr long kPageRecords = 64;
constexpr size_t kMostPages = 16;
// Bytes of a text that a page keeps.
constexpr size_t kMostShown = 1000;
constexpr size_t kKeysAtOnce = 512;
// Where a file is locked, each try to read takes seconds.
constexpr std::chrono::seconds kPause{5};
constexpr const char* kDeleted = "#Deleted";

bool isShown(const CDaoFieldInfo& field) {
    return field.type != dbBinary && field.type != dbLongBinary;
}

// The beginning of a text, in whole characters.
std::string beginningOf(std::string text) {
    size_t end = std::min(text.size(), kMostShown);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
    return text;
}

bool isEmpty(const RecordFilter& filter) {
    return filter.words.find_first_not_of(' ') == std::string::npos && !filter.condition && !filter.keys;
}

bool sameFields(const std::vector<CDaoFieldInfo>& a, const std::vector<CDaoFieldInfo>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const CDaoFieldInfo& x, const CDaoFieldInfo& y) { return x.name == y.name && x.type == y.type; });
}

}  // namespace

struct RecordView::ReadRecord {
    std::vector<std::string> texts;  // by field
    std::string key;
    std::string note;  // why there are none
};

struct RecordView::Page {
    long first;
    std::vector<ReadRecord> records;
    bool isStale = false;  // to be read anew
    // Of one that could not be read: when it is tried again.
    std::optional<std::chrono::steady_clock::time_point> triedAgain;

    bool isGood() const {
        return !isStale && !(triedAgain && *triedAgain <= std::chrono::steady_clock::now());
    }
};

RecordView::RecordView(CDaoDatabase& database, const std::string& table, const std::string& keyField)
    : database_(database), table_(table), keyName_(keyField), source_(dao::openTableRows(database, table)) {
    keyField_ = dao::findField(fields(), keyName_);
    all_ = SearchAll(*source_);
    all_->step();
}

RecordView::~RecordView() = default;

const std::vector<CDaoFieldInfo>& RecordView::fields() const {
    return source_->fields();
}

// --- What is shown
// -------------------------------------------------------------------------------------------

void RecordView::sortBy(const RecordOrder& order) {
    if (order == order_) return;
    order_ = order;
    look(false);
}

void RecordView::setFilter(const RecordFilter& filter) {
    filter_ = filter;
    look(true);
}

// What finds the rows of the present filter and order; null where all records in their own order are shown.
std::unique_ptr<RowSearch> RecordView::newSearch() {
    if (isEmpty(filter_)) {
        if (order_.field < 0) return nullptr;
        if (std::unique_ptr<RowSearch> search = SearchAlongIndex(*source_, order_)) return search;
    }
    return SearchMatching(database_, table_, keyField_, filter_, order_);
}

// Begins to look for what is to be shown. showsAtOnce: as it is found, in any order, in place of what was
// shown.
void RecordView::look(bool showsAtOnce) {
    next_.reset();
    fault_.clear();
    try {
        std::unique_ptr<RowSearch> found = newSearch();
        if (found) found->step();
        if (showsAtOnce || !found || found->isInOrder()) {
            shown_ = std::move(found);
            pages_.clear();
        } else {
            next_ = std::move(found);
        }
    } catch (const CDaoException& error) {
        fault_ = error.description();
    }
}

void RecordView::refresh() {
    fault_.clear();
    isOutdated_ = false;
    noteAllChanged();
    try {
        newSource_ = dao::openTableRows(database_, table_);
        allNew_ = SearchAll(*newSource_);
        if (sameFields(newSource_->fields(), fields())) return;
        // The fields are others: what was found by the old ones makes no sense any more.
        order_ = {};
        filter_ = {};
        shown_.reset();
        next_.reset();
        all_ = std::move(allNew_);
        source_ = std::move(newSource_);
        keyField_ = dao::findField(fields(), keyName_);
        all_->step();
    } catch (const CDaoException& error) {
        fault_ = error.description();
    }
}

// The search that goes on; null when there is nothing to do.
RowSearch* RecordView::underWay() const {
    for (const std::unique_ptr<RowSearch>* search : {&next_, &shown_, &allNew_, &all_})
        if (*search && !(*search)->isDone()) return search->get();
    return nullptr;
}

// Puts searches that have ended into the places of those before them.
void RecordView::takeEnded() {
    if (next_ && next_->isDone()) {
        shown_ = std::move(next_);
        pages_.clear();
    }
    if (!allNew_ || !allNew_->isDone()) return;
    all_ = std::move(allNew_);
    source_ = std::move(newSource_);
    pages_.clear();
    next_ = newSearch();
}

bool RecordView::work(std::chrono::milliseconds most) {
    const auto end = std::chrono::steady_clock::now() + most;
    try {
        do {
            RowSearch* search = underWay();
            if (!search) return false;
            search->step();
            // Rows that were shown while they were found may have come into another order.
            if (search == shown_.get() && search->isDone()) pages_.clear();
            takeEnded();
        } while (std::chrono::steady_clock::now() < end);
    } catch (const CDaoException& error) {
        stop();
        fault_ = error.description();
    }
    return isWorking();
}

bool RecordView::isWorking() const {
    return underWay() != nullptr;
}

void RecordView::stop() {
    next_.reset();
    allNew_.reset();
    if (shown_) shown_->stop();
    all_->stop();
}

long RecordView::lookedAt() const {
    const RowSearch* search = underWay();
    return search ? search->lookedAt() : total();
}

const std::vector<dao::RowNumber>& RecordView::rows() const {
    return shown_ ? shown_->rows() : all_->rows();
}

long RecordView::shown() const {
    return static_cast<long>(rows().size());
}

long RecordView::total() const {
    return static_cast<long>(all_->rows().size());
}

// --- Rows
// ----------------------------------------------------------------------------------------------------

// Reads those of some records that are there.
void RecordView::readInto(Page& page, std::span<const dao::RowNumber> wanted) const {
    std::vector<size_t> read;
    for (size_t i = 0; i < fields().size(); ++i)
        if (isShown(fields()[i])) read.push_back(i);
    source_->read(wanted, read, [&](dao::RowNumber row, std::span<const dao::Variant> values) {
        const auto at = std::find(wanted.begin(), wanted.end(), row) - wanted.begin();
        ReadRecord& record = page.records[static_cast<size_t>(at)];
        record.note.clear();
        record.texts.resize(fields().size());
        for (size_t i = 0; i < read.size(); ++i) {
            record.texts[read[i]] = beginningOf(ShownText(values[i], CellValueOf(fields()[read[i]])));
            if (static_cast<int>(read[i]) == keyField_) record.key = RecordKeyOf(values[i]);
        }
    });
}

// Records that were read before and have got another number since are found again by their keys.
void RecordView::followMoved(Page& page, std::span<const dao::RowNumber> wanted) const {
    bool anyMoved = false;
    for (size_t i = 0; i < wanted.size(); ++i) {
        const ReadRecord& record = page.records[i];
        if (record.note.empty() || record.key.empty()) continue;
        const auto found = source_->find(static_cast<size_t>(keyField_), record.key);
        if (!found) return;
        // Another record of the same key has a row of its own.
        for (dao::RowNumber now : *found) {
            if (std::find(all_->rows().begin(), all_->rows().end(), now) != all_->rows().end()) continue;
            source_->noteMoved(wanted[i], now);
            anyMoved = true;
        }
    }
    if (anyMoved) readInto(page, wanted);
}

RecordView::Page RecordView::readPage(long first) const {
    const auto count = static_cast<size_t>(std::min(kPageRecords, shown() - first));
    const std::span<const dao::RowNumber> wanted(rows().data() + first, count);
    Page page{first, std::vector<ReadRecord>(count), false, {}};
    const auto before =
        std::find_if(pages_.begin(), pages_.end(), [&](const Page& known) { return known.first == first; });
    for (size_t i = 0; i < count; ++i) {
        page.records[i].note = kDeleted;
        if (before != pages_.end() && i < before->records.size())
            page.records[i].key = before->records[i].key;
    }
    if (before != pages_.end()) pages_.erase(before);
    try {
        readInto(page, wanted);
        if (source_->changesNumbers()) followMoved(page, wanted);
        for (const ReadRecord& record : page.records) isOutdated_ = isOutdated_ || !record.note.empty();
    } catch (const CDaoException& error) {
        for (ReadRecord& record : page.records) record = {{}, "", "#Error: " + error.description()};
        page.triedAgain = std::chrono::steady_clock::now() + kPause;
    }
    return page;
}

const RecordView::ReadRecord& RecordView::record(long row) const {
    const long first = row / kPageRecords * kPageRecords;
    const auto found = std::find_if(pages_.begin(), pages_.end(), [&](const Page& page) {
        // The last page of a search that goes on gets longer.
        return page.first == first && row < first + static_cast<long>(page.records.size()) && page.isGood();
    });
    if (found != pages_.end()) {
        pages_.splice(pages_.begin(), pages_, found);
    } else {
        Page page = readPage(first);
        if (pages_.size() == kMostPages) pages_.pop_back();
        pages_.push_front(std::move(page));
    }
    return pages_.front().records[static_cast<size_t>(row - first)];
}

std::string RecordView::text(long row, int field) const {
    const ReadRecord& read = record(row);
    return read.note.empty() ? read.texts[static_cast<size_t>(field)] : read.note;
}

std::string RecordView::key(long row) const {
    const ReadRecord& read = record(row);
    return read.note.empty() ? read.key : "";
}

bool RecordView::isThere(long row) const {
    return record(row).note.empty();
}

RecordId RecordView::id(long row) const {
    return rows()[static_cast<size_t>(row)];
}

std::optional<long> RecordView::rowOf(RecordId id) const {
    const auto found = std::find(rows().begin(), rows().end(), id);
    if (found == rows().end()) return std::nullopt;
    return found - rows().begin();
}

std::optional<long> RecordView::rowOf(const std::string& key) const {
    if (keyField_ < 0) return std::nullopt;
    const auto field = static_cast<size_t>(keyField_);
    std::optional<std::vector<dao::RowNumber>> found = source_->find(field, key);
    if (!found) {
        if (!finder_) finder_ = std::make_unique<KeyFinder>(*source_, field);
        found = finder_->find(key);
    }
    std::optional<long> first;
    source_->read(*found, {&field, 1}, [&](dao::RowNumber id, std::span<const dao::Variant> values) {
        if (RecordKeyOf(values[0]) != key) return;
        const std::optional<long> row = rowOf(id);
        if (row && (!first || *row < *first)) first = row;
    });
    return first;
}

bool RecordView::hasKeyIndex() const {
    return keyField_ >= 0 && source_->hasIndex(static_cast<size_t>(keyField_));
}

std::vector<RecordValues> RecordView::values(long first, long count) const {
    std::vector<size_t> all(fields().size());
    std::iota(all.begin(), all.end(), size_t{0});
    const std::span<const dao::RowNumber> wanted(rows().data() + first, static_cast<size_t>(count));
    std::vector<RecordValues> records(wanted.size());
    for (size_t begin = 0; begin < wanted.size(); begin += kPageRecords) {
        const auto some = wanted.subspan(begin, std::min<size_t>(kPageRecords, wanted.size() - begin));
        source_->read(some, all, [&](dao::RowNumber row, std::span<const dao::Variant> values) {
            const auto at = std::find(some.begin(), some.end(), row) - some.begin();
            records[begin + static_cast<size_t>(at)].assign(values.begin(), values.end());
        });
    }
    return records;
}

void RecordView::noteChanged(RecordId id) {
    // Nobody knows where a record without a key is now.
    if (keyField_ < 0 && source_->changesNumbers()) return refresh();
    finder_.reset();
    for (Page& page : pages_) {
        const auto begin = rows().begin() + page.first;
        const auto end = begin + static_cast<long>(page.records.size());
        page.isStale = page.isStale || std::find(begin, end, id) != end;
    }
}

void RecordView::noteAllChanged() {
    finder_.reset();
    for (Page& page : pages_) page.isStale = true;
}

void RecordView::forEachKey(const std::function<bool(const std::string& key)>& visit) const {
    if (keyField_ < 0) return;
    const auto field = static_cast<size_t>(keyField_);
    std::vector<std::string> keys;
    for (size_t begin = 0; begin < rows().size(); begin += kKeysAtOnce) {
        const std::span<const dao::RowNumber> some(rows().data() + begin,
                                                   std::min(kKeysAtOnce, rows().size() - begin));
        keys.assign(some.size(), "");
        source_->read(some, {&field, 1}, [&](dao::RowNumber row, std::span<const dao::Variant> values) {
            const auto at = std::find(some.begin(), some.end(), row) - some.begin();
            keys[static_cast<size_t>(at)] = RecordKeyOf(values[0]);
        });
        for (const std::string& key : keys)
            if (!key.empty() && !visit(key)) return;
    }
}

}  // namespace norvane
