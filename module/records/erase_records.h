// Records erased after a question, with the links that lead to them or without.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"
#include "module/store/named_records.h"
#include "module/store/stored_record.h"

namespace norvane {

// Rows of one table, as they were read.
struct RowsToErase {
    std::string output;              // as links name it
    std::string table;               // as it stands in the database
    std::string keyField = "PT_ID";  // by which links find the records
    std::vector<RecordValues> rows;
};

struct EraseReport {
    size_t records = 0;    // that were erased
    size_t links = 0;      // that were taken off entities
    size_t linksLeft = 0;  // to erased records: they lead nowhere now
    size_t kept = 0;       // records that stay, since somebody has changed or erased them meanwhile
    std::string message;   // a sentence that tells all of this; "" where the person has thought better of it
};

// Erases rows, after a question that counts them and the entities linked to them. "Yes" takes the links off,
// "No" leaves them, where there are any; without an answer nothing is erased. A row that has been changed
// since it was read stays. Either all that can be is erased, or nothing. Prints nothing. The drawing changes
// where links are taken off: the caller makes a step of undo of it.
EraseReport EraseRows(CDaoDatabase& database, const RowsToErase& rows);

// Erases records by their names, with a progress that can be stopped.
ErasedRecords EraseRecordsWatched(const std::vector<RecordName>& records);

// Erases the records that were made new and that undo has left without a link (UnlinkedNewRecords), after a
// question, by default No. Without any, the message says so.
EraseReport EraseNewRecords();

// (gis:erase-new-records): EraseNewRecords with its line. Gives the number of records.
void EraseNewRecordsOfRun(Call& call);

}  // namespace norvane
