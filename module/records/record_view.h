// The records of a table as rows 0 to shown() - 1, in an order and through a filter, read when they are
// looked at: a table of a million records costs eight bytes for each and what a page of it does.
//
// What takes long goes on in slices (work), so that a window stays alive and the next filter takes the place
// of one that is still at work. Until an order is ready rows come in the one before.
//
// It knows no window, no drawing and no link: keys come from the caller. A key is a value of the key field as
// text, in capitals and trimmed, as the index of links has it.
#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "module/store/stored_record.h"
#include "platform/dao/dao.h"
#include "platform/dao/table_rows.h"

namespace norvane {

class Condition;
class KeyFinder;
class RowSearch;

// Which record it is, whatever row it stands in.
using RecordId = dao::RowNumber;

using RecordKeys = std::unordered_set<std::string>;

struct RecordOrder {
    int field = -1;  // its place among fields(); -1: the order of the table
    bool descending = false;
    bool operator==(const RecordOrder&) const = default;
};

// All parts have to let a record through; an empty one lets all through.
struct RecordFilter {
    std::string words;                           // each occurs in a shown text, in any case of letters
    std::shared_ptr<const Condition> condition;  // checked against fields()
    std::shared_ptr<const RecordKeys> keys;      // the record's key is one of them or,
    bool withoutKeys = false;                    // when this is set, none of them
};

class RecordView {
  public:
    // The database stays the caller's, and open. A key field that the table does not have leaves all keys
    // empty. Throws what the engine says where the table cannot be opened.
    RecordView(CDaoDatabase& database, const std::string& table, const std::string& keyField);
    ~RecordView();

    CDaoDatabase& database() const { return database_; }
    const std::string& table() const { return table_; }
    const std::vector<CDaoFieldInfo>& fields() const;
    int keyField() const { return keyField_; }  // its place among fields(); -1: none

    // --- What is shown
    // ---------------------------------------------------------------------------------------

    void sortBy(const RecordOrder& order);
    void setFilter(const RecordFilter& filter);
    const RecordOrder& order() const { return order_; }
    const RecordFilter& filter() const { return filter_; }
    // Reads the table anew, since others have added or deleted records. What is shown stays until then.
    void refresh();

    // Goes on for about so long. True: something is left to do.
    bool work(std::chrono::milliseconds most);
    bool isWorking() const;
    // Leaves it at what has been found until now.
    void stop();
    // How many records the work that is under way has looked at.
    long lookedAt() const;
    // Why the work has ended before its end, in the engine's words; "" where it has not.
    const std::string& fault() const { return fault_; }

    long shown() const;
    // Of the whole table, as far as they have been counted: all, unless isWorking().
    long total() const;

    // --- Rows
    // ------------------------------------------------------------------------------------------------

    // A value as a cell shows it, its beginning where it is long; "" for binary data. Of a record that has
    // been deleted, or cannot be read, a note that begins with "#".
    std::string text(long row, int field) const;
    std::string key(long row) const;
    // Whether a record is there and has been read.
    bool isThere(long row) const;
    RecordId id(long row) const;
    // The row of a record; nothing where it is not shown.
    std::optional<long> rowOf(RecordId id) const;
    // The first row of a key. Without an index the table is passed through once. These throw what the engine
    // says.
    std::optional<long> rowOf(const std::string& key) const;
    bool hasKeyIndex() const;

    // All values of some records, read now; none of one that is gone. Throws what the engine says.
    std::vector<RecordValues> values(long first, long count) const;
    RecordValues values(long row) const { return values(row, 1).front(); }
    // What is shown of a record is read anew: the caller has changed or deleted it. Where it cannot be found
    // again, the whole table is, see work().
    void noteChanged(RecordId id);
    void noteAllChanged();
    // Whether records that were found are gone, so that refresh() would show others.
    bool isOutdated() const { return isOutdated_; }

    // Visits the keys of all records that are shown, in their order, until visit gives false. Call it when
    // the work is done.
    void forEachKey(const std::function<bool(const std::string& key)>& visit) const;

  private:
    struct Page;
    struct ReadRecord;

    std::unique_ptr<RowSearch> newSearch();
    void look(bool showsAtOnce);
    RowSearch* underWay() const;
    void takeEnded();
    const std::vector<dao::RowNumber>& rows() const;

    const ReadRecord& record(long row) const;
    Page readPage(long first) const;
    void readInto(Page& page, std::span<const dao::RowNumber> wanted) const;
    void followMoved(Page& page, std::span<const dao::RowNumber> wanted) const;

    CDaoDatabase& database_;
    std::string table_, keyName_;
    std::shared_ptr<dao::TableRows> source_, newSource_;
    int keyField_ = -1;
    RecordOrder order_;
    RecordFilter filter_;
    std::unique_ptr<RowSearch> all_;            // all records
    std::unique_ptr<RowSearch> shown_;          // those that are shown; null for all
    std::unique_ptr<RowSearch> next_, allNew_;  // what will take their places
    std::string fault_;
    mutable std::list<Page> pages_;  // the last that was looked at comes first
    mutable bool isOutdated_ = false;
    mutable std::unique_ptr<KeyFinder> finder_;  // made when it is first needed
};

}  // namespace norvane
