// Tables and records as text.
#pragma once

#include <iosfwd>

#include "platform/dao/dao.h"
#include "platform/dao/jet/database.h"

namespace jet {

void printTables(Database& database, std::ostream& out);
// One table, or all that are not the system's when table is "".
void printSchema(Database& database, const std::string& table, std::ostream& out);
// Comma-separated values with a line of names; text in double quotes, Null as nothing, binary data in hex.
void printText(Database& database, const std::string& table, std::ostream& out);
// One object a line; Null values are left out.
void printJson(Database& database, const std::string& table, std::ostream& out);

// The records of a SELECT, with | between the values.
void printRecords(CDaoDatabase& database, const std::string& sql, std::ostream& out);

const char* typeName(Type type);

}  // namespace jet
