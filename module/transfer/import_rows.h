// The rows of an imported set in a table of the output database.
#pragma once

#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/transfer/import_progress.h"
#include "module/transfer/import_report.h"
#include "platform/dao/dao.h"

namespace norvane {

// How many records of a table have one of the ids as their PT_ID. Exceptions pass through.
size_t CountRecordsOf(CDaoDatabase& database, const std::string& table, const std::vector<std::string>& ids);

// Makes sure of the table and writes a record for each id: the first with the values of the first row, and so
// on. A record of the id that is there takes them. False when the user has stopped it. Exceptions pass
// through.
bool WriteRows(CDaoDatabase& database, const ImportShpSettings& settings, DbfHandle& table,
               const std::vector<std::string>& ids, ImportProgress& progress, ImportReport& report);

}  // namespace norvane
