// Statements as a person types them.
#pragma once

#include <iosfwd>
#include <string>

#include "platform/dao/dao.h"

namespace jet {

// Runs statements that stand one behind the other with ; between them: SELECT, whose records are printed with
// | between the values, INSERT, UPDATE, DELETE, CREATE TABLE, DROP TABLE, ALTER TABLE ... ADD COLUMN and DROP
// COLUMN. Types of columns are those of SQL: TEXT(30), INTEGER, DOUBLE, DATETIME, BOOLEAN, ...
void runStatements(CDaoDatabase& database, const std::string& sql, std::ostream& out);

}  // namespace jet
