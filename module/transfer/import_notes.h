// The import of records into the output, a table after the other.
#pragma once

#include <string>
#include <vector>

#include "module/transfer/note_records.h"
#include "module/transfer/record_import.h"

namespace norvane {

// What a run has done. Each table is whole or as it was.
struct ImportRun {
    enum class End {
        kDone,
        kStopped,  // by the person
        kFailed,   // the engine's words have been shown
    };
    End end = End::kDone;
    std::string unfinished;  // the table at which it ended before its time
    std::vector<TableOutcome> tables;
    std::vector<TableJournal> journal;  // one for each of them
};

// Imports tables into a database, a file or a connect string. Tables before one that fails, or at which the
// person stops, stay.
ImportRun ImportTables(const std::string& database, const std::vector<TableImport>& tables,
                       const std::string& title);
// Features of a note file, each into the table of its name.
ImportRun ImportFeatures(const std::string& database, const std::vector<NoteFeature>& features,
                         const std::string& title);

}  // namespace norvane
