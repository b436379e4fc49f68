// GeoPackage: an SQLite file with a register of its tables, so that GIS programs find them and know what they
// are.
//
// Tables made here are registered as attributes, that is without geometry. The rules want a whole-number key
// in every such table; where no field counts by itself, the table gets one that the interface does not show.
#pragma once

#include <sqlite3.h>

#include <set>
#include <string>

namespace dao::sqlite {

// Makes an empty database a GeoPackage: its marks, and the register with the reference systems that must be
// in it.
void makeGeoPackage(sqlite3* db);
bool isGeoPackage(sqlite3* db);

// Tables of the format itself, which no user looks at.
bool isGeoPackageTable(const std::string& name);

// Keep the register in step with the tables; to be called in the transaction that changes them.
void registerTable(sqlite3* db, const std::string& table);
void renameRegistered(sqlite3* db, const std::string& table, const std::string& newName);
void unregisterTable(sqlite3* db, const std::string& table);
// Throws for a table with geometry: more than the register must be changed along with it.
void requireNoGeometry(sqlite3* db, const std::string& table);
// Notes that the content of tables has changed now.
void noteChange(sqlite3* db, const std::set<std::string>& tables);

}  // namespace dao::sqlite
