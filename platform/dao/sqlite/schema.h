// Tables as SQLite holds them, readable by any of its tools.
//
//   "GIS_NAME" TEXT(255) COLLATE NOCASE CHECK(length("GIS_NAME") BETWEEN 1 AND 255)
//   "IS_CURRENT" TEXT(255) COLLATE NOCASE DEFAULT 'NO' CHECK(length("IS_CURRENT") <= 255)
//       CONSTRAINT "rule ""YES"" Or ""NO""" CHECK("IS_CURRENT" = 'YES' OR "IS_CURRENT" = 'NO')
//   "NO_GIS" INTEGER PRIMARY KEY AUTOINCREMENT
//
// The declared type, the CHECK on the length and the name of the rule's constraint are all that is needed to
// read a field's properties back. Tables made by other programs are read as far as these go.
//
// A GeoPackage allows fewer types, and wants a whole-number key in each table. A type that it lacks is
// declared as the nearest one that it has, and named by a constraint; a key that is no field has a name of
// its own:
//
//   "fid" INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL
//   "PRICE" DOUBLE CONSTRAINT "type CURRENCY" CHECK(1)
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace dao::sqlite {

enum class FileKind { kPlain, kGeoPackage };

// One column of CREATE TABLE or ALTER TABLE ADD COLUMN.
std::string columnDefinition(const CDaoFieldInfo& field, FileKind kind);
std::string createTableStatement(const std::string& table, const std::vector<CDaoFieldInfo>& fields,
                                 FileKind kind);

// The fields as columns of a statement: "PT_ID", "GIS_KEY".
std::string columnList(const std::vector<CDaoFieldInfo>& fields);

// The fields of a table or view. Throws when there is none of that name.
std::vector<CDaoFieldInfo> describeTable(sqlite3* db, const std::string& table);
// Whether a table is exactly what createTableStatement makes of its fields, so that it can be built anew
// without losing anything.
bool isOwnTable(sqlite3* db, const std::string& table, FileKind kind);

// The type of a column as its field wants it: TEXT(255).
std::string declaredType(const CDaoFieldInfo& field);
// The type of a field by the declared type of a column, and the size of text and binary ones.
void typeOfColumn(std::string_view declared, CDaoFieldInfo& field);
// The rule behind the name of its constraint; "" for other constraints.
std::string ruleOfConstraint(std::string_view constraint);

}  // namespace dao::sqlite
