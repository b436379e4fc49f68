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
    std::string output;  // as links name it
    std::string table;   // as it stands in the database
    std::vector<RecordValues> rows;
};

struct EraseReport {
    bool isDone = false;   // false: the person has thought better of it, or nothing could be erased
    size_t records = 0;    // that were erased
    size_t links = 0;      // that were taken off entities
    size_t linksLeft = 0;  // that lead nowhere now
    size_t changed = 0;    // records that stay, since somebody has changed or erased them meanwhile
    std::string message;   // a sentence that tells all of this, for the command line and the panel
};

// Erases rows, after a question that counts them and the entities linked to them: "Yes" takes the links off,
// "No" leaves them, without an answer nothing is erased. A row that was changed since it was read stays. All
// or nothing in a file. Prints nothing. Changes the drawing where links are taken off: the caller makes a
// step of undo of it.
EraseReport EraseRows(CDaoDatabase& database, const RowsToErase& rows);

// The same for the records that the last run has made and undo has left without a link: asked for with their
// number and first keys, by default No. Prints nothing.
EraseReport EraseNewRecords();

// (gis:unlink SET): takes the links off entities, and asks whether the records go too, by default No. A
// record that other entities lead to stays. Prints a line that counts; gives the number of links.
void UnlinkEntities(Call& call);
// (gis:erase-new-records): EraseNewRecords with its line; gives the number of records.
void EraseNewRecordsOfRun(Call& call);

}  // namespace norvane
