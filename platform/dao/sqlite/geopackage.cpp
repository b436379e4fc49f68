#include "platform/dao/sqlite/geopackage.h"

#include <algorithm>

#include "platform/dao/dao.h"
#include "platform/dao/sqlite/statement.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

constexpr int64_t kApplicationId = 0x47504B47;  // "GPKG"
constexpr int64_t kOlderIds[] = {0x47503130, 0x47503131};
constexpr int kVersion = 10300;

constexpr const char* kMakeRegister = R"(
CREATE TABLE gpkg_spatial_ref_sys (
  srs_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL PRIMARY KEY,
  organization TEXT NOT NULL,
  organization_coordsys_id INTEGER NOT NULL,
  definition TEXT NOT NULL,
  description TEXT
);
CREATE TABLE gpkg_contents (
  table_name TEXT NOT NULL PRIMARY KEY,
  data_type TEXT NOT NULL,
  identifier TEXT UNIQUE,
  description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE,
  min_y DOUBLE,
  max_x DOUBLE,
  max_y DOUBLE,
  srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id)
);
INSERT INTO gpkg_spatial_ref_sys VALUES
  ('Undefined cartesian coordinates', -1, 'NONE', -1, 'undefined', NULL),
  ('Undefined geographic coordinates', 0, 'NONE', 0, 'undefined', NULL),
  ('WGS 84', 4326, 'EPSG', 4326,
   'GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]]',
   'longitude and latitude in degrees');
)";

void run(sqlite3* db, const std::string& sql) {
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail(db, sql);
}

// Runs a statement with names as its parameters.
void runWith(sqlite3* db, const std::string& sql, const std::string& first, const std::string& second = "") {
    Statement statement(db, sql);
    Variant one(first), two(second);
    statement.bind(1, one);
    if (sqlite3_bind_parameter_count(statement.handle()) > 1) statement.bind(2, two);
    statement.run();
}

int64_t number(sqlite3* db, const std::string& sql) {
    Statement statement(db, sql);
    return statement.step() ? statement.integer(0) : 0;
}

}  // namespace

void makeGeoPackage(sqlite3* db) {
    run(db, "PRAGMA application_id = " + std::to_string(kApplicationId));
    run(db, "PRAGMA user_version = " + std::to_string(kVersion));
    run(db, std::string("BEGIN;") + kMakeRegister + "COMMIT");
}

bool isGeoPackage(sqlite3* db) {
    int64_t id = number(db, "PRAGMA application_id");
    bool marked = id == kApplicationId || std::count(std::begin(kOlderIds), std::end(kOlderIds), id) > 0;
    return marked && number(db, "SELECT count(*) FROM sqlite_master WHERE name = 'gpkg_contents'") > 0;
}

bool isGeoPackageTable(const std::string& name) {
    std::string lower = text::lower(name);
    return text::startsWith(lower, "gpkg_") || text::startsWith(lower, "rtree_");
}

void registerTable(sqlite3* db, const std::string& table) {
    // The identifier is a title for people, which another table may have taken.
    runWith(db,
            "INSERT INTO gpkg_contents (table_name, data_type, identifier) SELECT ?1, 'attributes', "
            "CASE WHEN EXISTS (SELECT 1 FROM gpkg_contents WHERE identifier = ?1) THEN NULL ELSE ?1 END",
            table);
}

void renameRegistered(sqlite3* db, const std::string& table, const std::string& newName) {
    runWith(db,
            "UPDATE gpkg_contents SET table_name = ?2, "
            "identifier = CASE WHEN identifier = table_name THEN ?2 ELSE identifier END, "
            "last_change = strftime('%Y-%m-%dT%H:%M:%fZ','now') WHERE table_name = ?1 COLLATE NOCASE",
            table, newName);
}

void unregisterTable(sqlite3* db, const std::string& table) {
    runWith(db, "DELETE FROM gpkg_contents WHERE table_name = ?1 COLLATE NOCASE", table);
}

void requireNoGeometry(sqlite3* db, const std::string& table) {
    Statement statement(db, "SELECT data_type FROM gpkg_contents WHERE table_name = ?1 COLLATE NOCASE");
    Variant name(table);
    statement.bind(1, name);
    if (statement.step() && statement.text(0) != "attributes")
        throw CDaoException("The table " + table +
                            " has geometry; only a GIS program can rename or delete it.");
}

void noteChange(sqlite3* db, const std::set<std::string>& tables) {
    for (const std::string& table : tables)
        runWith(db,
                "UPDATE gpkg_contents SET last_change = strftime('%Y-%m-%dT%H:%M:%fZ','now') "
                "WHERE table_name = ?1 COLLATE NOCASE",
                table);
}

}  // namespace dao::sqlite
