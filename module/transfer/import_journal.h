// What an import has changed in a table, so that it can be taken back.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

struct TableJournal {
    using Values = std::vector<dao::Variant>;
    struct Row {
        std::string key;               // id and feature as one text, upper case
        std::optional<Values> before;  // nothing for a row that the import has made
        Values after;                  // as it was written
    };

    std::string table;
    bool madeTable = false;
    std::vector<std::string> madeColumns;  // of a table that was there
    std::vector<std::string> fields;       // whose values the rows have
    std::vector<bool> hasDefault;          // of each field: a new row has a value there that nobody has set
    std::vector<Row> rows;
};

// Keeps rows as they were and as they are written, from within the writing.
class JournalWriter {
  public:
    explicit JournalWriter(TableJournal& journal) : journal_(journal) {}
    // Before the first field of a row is set, and behind the last.
    void begin(const CDaoRecordset& row, const std::string& key, bool isNew);
    void end(const CDaoRecordset& row);

  private:
    TableJournal& journal_;
};

// What became of the rows, columns and tables of an import that was taken back.
struct TakenBack {
    size_t restored = 0, deleted = 0;
    size_t changedSince = 0;        // rows that somebody has changed or deleted since: they stay as they are
    std::vector<std::string> kept;  // columns and tables that hold other values by now
    std::vector<std::string> gone;  // tables that are no longer there
};
// Takes an import into a table back. Exceptions pass through.
void TakeBack(CDaoDatabase& database, const TableJournal& journal, TakenBack& result);

}  // namespace norvane
