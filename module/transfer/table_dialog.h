// The table dialog: the records of an output table, or those that are about to come in from a note file, as a
// spreadsheet in which values are looked at and put right.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

// One value of a note: the field, its kind ("0" yes or no, "1" and "2" whole numbers, "3" and "4" numbers,
// "5" date, "6" text) and the text.
struct NoteValue {
    std::string name;
    std::string kind;
    std::string value;
};
using NoteRecord = std::vector<NoteValue>;

// Each shows the dialog until the person leaves it, and gives how many records have been written. output: the
// path of the database, or a connect string. Errors are shown.
size_t EditTable(const std::string& output, const std::string& table);
// Each record above what the table of the feature's name already holds under its PT_ID.
size_t PreviewRecords(const std::string& output, const std::string& feature,
                      std::span<const NoteRecord> records);

// (gis:edit-table [database [table]]) asks for what it is not told. The number of records that were written,
// or nil when no table was chosen.
void EditChosenTable(Call& call);

}  // namespace norvane
