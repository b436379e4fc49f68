#include "module/transfer/table_sheet_records.h"

#include <algorithm>

#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"

namespace norvane {

namespace {

constexpr long kPageRecords = 64;
constexpr size_t kMostPages = 16;

// A server counts by itself; to walk through all records would bring them here.
long countOnServer(CDaoDatabase& database, const std::string& table) {
    CDaoRecordset count(&database);
    count.Open(dbOpenSnapshot, "SELECT COUNT(*) FROM " + QualifiedTable(database, table));
    double number = 0;
    dao::numberOf(count.GetFieldValue(0), number);
    return static_cast<long>(number);
}

}  // namespace

std::string SelectWholeTable(const CDaoDatabase& database, const std::string& table) {
    if (database.GetConnect().onServer()) return "SELECT * FROM " + QualifiedTable(database, table);
    return SelectTable(table);
}

StoredRecords::StoredRecords(CDaoDatabase& database, const std::string& table) : records_(&database) {
    records_.Open(dbOpenDynaset, SelectWholeTable(database, table));
    for (int i = 0; i < records_.GetFieldCount(); ++i) {
        records_.GetFieldInfo(i, fields_.emplace_back());
        kinds_.push_back(CellValueOf(fields_.back()));
    }
    if (database.GetConnect().onServer()) {
        count_ = countOnServer(database, table);
    } else if (!records_.IsEOF()) {
        records_.MoveLast();
        count_ = records_.GetRecordCount();
    }
}

StoredRecords::Record StoredRecords::readRecord(long record, bool& goesOn) const {
    Record read;
    try {
        records_.SetAbsolutePosition(record);
        if (records_.IsEOF()) {
            read.note = "#Deleted";
            return read;
        }
        for (size_t i = 0; i < fields_.size(); ++i)
            read.texts.push_back(ShownText(records_.GetFieldValue(static_cast<int>(i)), kinds_[i]));
    } catch (const CDaoRecordDeleted&) {
        read.note = "#Deleted";
    } catch (const CDaoException& error) {
        // Where one cannot be read, the next ones would each take as long to fail.
        goesOn = false;
        read.note = "#Error: " + error.description();
    }
    return read;
}

std::unique_ptr<StoredRecords::Page> StoredRecords::readPage(long first) const {
    auto page = std::make_unique<Page>();
    page->first = first;
    bool goesOn = true;
    for (long i = first; i < std::min(first + kPageRecords, count_); ++i)
        page->records.push_back(goesOn ? readRecord(i, goesOn) : page->records.back());
    return page;
}

const StoredRecords::Record& StoredRecords::record(long record) const {
    const long first = record / kPageRecords * kPageRecords;
    auto found = std::find_if(pages_.begin(), pages_.end(),
                              [&](const std::unique_ptr<Page>& page) { return page->first == first; });
    if (found == pages_.end()) {
        if (pages_.size() == kMostPages) pages_.pop_back();
        pages_.insert(pages_.begin(), readPage(first));
    } else {
        std::rotate(pages_.begin(), found, found + 1);
    }
    return pages_.front()->records[static_cast<size_t>(record - first)];
}

std::string StoredRecords::text(long number, int field) const {
    const Record& read = record(number);
    if (read.note.empty()) return read.texts[static_cast<size_t>(field)];
    return read.note;
}

bool StoredRecords::isThere(long number) const {
    return record(number).note.empty();
}

std::vector<dao::Variant> StoredRecords::values(long record) const {
    records_.SetAbsolutePosition(record);
    std::vector<dao::Variant> values;
    for (size_t i = 0; i < fields_.size(); ++i) values.push_back(records_.GetFieldValue(static_cast<int>(i)));
    return values;
}

dao::Variant StoredRecords::value(long record, int field) const {
    records_.SetAbsolutePosition(record);
    return records_.GetFieldValue(field);
}

CDaoRecordset& StoredRecords::at(long record) {
    records_.SetAbsolutePosition(record);
    return records_;
}

}  // namespace norvane
