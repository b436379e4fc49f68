// Records that an import brings into a table of the output: found by PT_ID and GIS_KEY, or added.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "module/transfer/import_journal.h"
#include "platform/dao/dao.h"

namespace norvane {

// What a column holds, by the type that it has, or is to have where it is new.
enum class ColumnClass {
    kYesNo,    // 0
    kInteger,  // 1: 16 bits
    kLong,     // 2
    kSingle,   // 3
    kDouble,   // 4
    kDate,     // 5
    kText,     // 6
    kOther,    // is not written
};
ColumnClass ClassOfType(int fieldType);

struct ImportColumn {
    std::string name;
    ColumnClass type = ColumnClass::kText;  // of a column that the table lacks: kLong, kDouble, or text
    bool isEmpty = false;                   // no record has a value
};

struct ImportRecord {
    std::string id;
    std::vector<std::pair<size_t, std::string>> values;  // by column; an empty one is not written
};

// A table and what is to be in it. PT_ID and GIS_KEY are no columns here: every record has them.
struct TableImport {
    std::string table;
    std::vector<ImportColumn> columns;
    std::vector<ImportRecord> records;
};

// What became of it.
struct TableOutcome {
    std::string table;  // as the database spells it
    size_t added = 0, changed = 0;
    std::vector<std::string> emptyColumns;  // made as whole numbers because no record has a value
    std::vector<std::string> unwritten;     // columns of a type that takes no text
    size_t valuesCut = 0;                   // to the size of their column
    size_t valuesZero = 0;                  // stored as 0, being no numbers
    size_t valuesBegun = 0;                 // numbers with more behind them, which was left out
    size_t datesLeftOut = 0;                // texts that are no dates
};

// Before each record, of which so many are left; false ends the work.
using GoOn = std::function<bool(size_t left)>;

// Makes the table and the columns that it lacks, and writes the records: of several of one id a later one
// goes over what the earlier has written. Every row that has the id takes the values. False when it was
// ended; the caller's transaction then undoes it. The journal gets what TakeBack needs. Exceptions pass
// through.
bool WriteImport(CDaoDatabase& database, const TableImport& import, const GoOn& goOn, TableOutcome& outcome,
                 TableJournal& journal);

}  // namespace norvane
