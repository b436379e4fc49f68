// The output database as the utilities see it: made, its tables listed, renamed and deleted.
#pragma once

#include <string>
#include <vector>

#include "module/store/new_database.h"
#include "platform/dao/dao.h"

namespace norvane {

// The tables of a database as a person sees them: on a server without their owner. None when it cannot be
// opened, which has been told.
std::vector<std::string> TablesOf(const std::string& database);

// The fields of a table; none without the table.
std::vector<CDaoFieldInfo> FieldsOf(const std::string& database, const std::string& table);

// Makes a database at exactly this path; a file that is there goes. False when that failed, which has been
// told.
bool MakeUtilityDatabase(const std::string& path, DatabaseVersion version);

// False when the engine refused, which has been told.
bool DeleteTable(const std::string& database, const std::string& table);

// Gives a table another name, and its records the GIS_KEY of that name: the column is made anew as text. All
// of it, or nothing: false, which has been told.
bool RenameTable(const std::string& database, const std::string& table, const std::string& name);

}  // namespace norvane
