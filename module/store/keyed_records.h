// Many records that are to be in a table, each found by its key or added. The table is read once.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

class KeyedRecords {
  public:
    // Which of several records of one key are changed: the first in the order of the table, or each.
    enum class Change { kFirst, kAll };

    // Reads the keys of all records that a statement finds. Each entry of what is to be written has one key;
    // of several key fields the values stand one behind the other in it, as KeyOf gives it. Entries of one
    // key are one record, which takes their values in their order.
    KeyedRecords(CDaoDatabase& database, const std::string& statement, std::span<const char* const> keyFields,
                 std::span<const std::string> keys, Change change = Change::kFirst);

    static std::string KeyOf(std::span<const std::string> values);

    // How many records there are already that write() will change.
    size_t found() const { return changed_.size(); }
    size_t added() const { return added_.size(); }

    // Sets the fields of a record to the values of an entry.
    using Write = std::function<void(CDaoRecordset&, size_t entry)>;
    // Asked before each record, of which so many entries are left; false ends the work.
    using GoOn = std::function<bool(size_t left)>;

    // Sets the fields of a record, which is a new one or one that there is, to the values of its entries.
    using WriteRecord = std::function<void(CDaoRecordset&, const std::vector<size_t>& entries, bool isNew)>;

    // Changes the records that there are, in the order of the table, and adds the others in the order of
    // their entries. False when it was ended before.
    bool write(const Write& write, const GoOn& goOn);
    bool writeRecords(const WriteRecord& write, const GoOn& goOn);

  private:
    using Entries = std::vector<size_t>;
    struct Found {
        long position;
        const Entries* entries;
    };

    void sortByKey(std::span<const std::string> keys);
    void readKeys(std::span<const char* const> keyFields, Change change);

    CDaoRecordset records_;
    std::unordered_map<std::string, Entries> byKey_;
    std::vector<Found> changed_;
    std::vector<const Entries*> added_;
    size_t count_ = 0;  // of entries
};

}  // namespace norvane
