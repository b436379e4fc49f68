// The records of a table in a database as texts, read some at a time when they are looked at, so that a table
// of a million records costs what a page of it does.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module/store/cell_values.h"
#include "platform/dao/dao.h"

namespace norvane {

class StoredRecords {
  public:
    // The database stays the caller's. Throws where the table cannot be opened.
    StoredRecords(CDaoDatabase& database, const std::string& table);

    const std::vector<CDaoFieldInfo>& fields() const { return fields_; }
    long count() const { return count_; }
    // Whether records can be changed, as far as can be told without trying.
    bool isUpdatable() const { return records_.CanUpdate(); }

    // The text of a field as it was read. Of a record that has been deleted, or cannot be read, a note about
    // it that begins with "#".
    std::string text(long record, int field) const;
    // Whether a record is there and has been read.
    bool isThere(long record) const;
    // The values of a record, and one of them, read now. Both throw what the engine says.
    std::vector<dao::Variant> values(long record) const;
    dao::Variant value(long record, int field) const;

    // The record set, standing on a record, to change it or to add one, which comes last.
    CDaoRecordset& at(long record);
    void noteAdded() { ++count_; }
    // Texts are read anew when they are next looked at.
    void forgetTexts() { pages_.clear(); }

  private:
    struct Record {
        std::vector<std::string> texts;
        std::string note;  // why there are none
    };
    struct Page {
        long first;
        std::vector<Record> records;
    };

    const Record& record(long record) const;
    std::unique_ptr<Page> readPage(long first) const;
    Record readRecord(long record, bool& goesOn) const;

    std::vector<CDaoFieldInfo> fields_;
    std::vector<CellValue> kinds_;
    mutable CDaoRecordset records_;
    long count_ = 0;
    mutable std::vector<std::unique_ptr<Page>> pages_;  // the last that was looked at comes first
};

// The statement that gives all records of a table.
std::string SelectWholeTable(const CDaoDatabase& database, const std::string& table);

}  // namespace norvane
