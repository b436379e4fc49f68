"""Checks a file by the rules of the OGC GeoPackage standard, with nothing but the sqlite3 module of Python.

usage: check_geopackage.py FILE

Prints a line for each broken rule, and then the registered tables with the number of their rows.
"""
import re
import sqlite3
import sys

TYPES = (r"BOOLEAN|TINYINT|SMALLINT|MEDIUMINT|INT|INTEGER|FLOAT|DOUBLE|REAL|TEXT(\(\d+\))?|BLOB(\(\d+\))?|DATE|DATETIME")
REFERENCE_SYSTEMS = {("NONE", -1, -1), ("NONE", 0, 0), ("EPSG", 4326, 4326)}
SRS_COLUMNS = [("srs_name", "TEXT", 1, 0), ("srs_id", "INTEGER", 1, 1), ("organization", "TEXT", 1, 0),
               ("organization_coordsys_id", "INTEGER", 1, 0), ("definition", "TEXT", 1, 0), ("description", "TEXT", 0, 0)]
CONTENTS_COLUMNS = [("table_name", "TEXT", 1, 1), ("data_type", "TEXT", 1, 0), ("identifier", "TEXT", 0, 0),
                    ("description", "TEXT", 0, 0), ("last_change", "DATETIME", 1, 0), ("min_x", "DOUBLE", 0, 0),
                    ("min_y", "DOUBLE", 0, 0), ("max_x", "DOUBLE", 0, 0), ("max_y", "DOUBLE", 0, 0),
                    ("srs_id", "INTEGER", 0, 0)]


def broken_rules(db, path):
    def rows(sql, *values):
        return db.execute(sql, values).fetchall()

    def columns(table):
        return [(name, kind.upper(), required, key) for _, name, kind, required, _, key
                in rows(f'PRAGMA table_info("{table}")')]

    if not path.lower().endswith(".gpkg"):
        yield "3: the name does not end in .gpkg"
    if rows("PRAGMA application_id") != [(0x47504B47,)]:
        yield "2: the application id is not GPKG"
    if not 10200 <= rows("PRAGMA user_version")[0][0] < 20000:
        yield "2: the user version is none of the standard"
    if rows("PRAGMA integrity_check") != [("ok",)]:
        yield "6: the file is damaged"
    if rows("PRAGMA foreign_key_check"):
        yield "7: a foreign key leads nowhere"
    if columns("gpkg_spatial_ref_sys") != SRS_COLUMNS:
        yield f"10: gpkg_spatial_ref_sys has other columns: {columns('gpkg_spatial_ref_sys')}"
    known = set(rows("SELECT organization, organization_coordsys_id, srs_id FROM gpkg_spatial_ref_sys"))
    if not REFERENCE_SYSTEMS <= known:
        yield f"11: reference systems are missing: {REFERENCE_SYSTEMS - known}"
    if columns("gpkg_contents") != CONTENTS_COLUMNS:
        yield f"13: gpkg_contents has other columns: {columns('gpkg_contents')}"

    tables = {name for name, in rows("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') "
                                     "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND name NOT LIKE 'gpkg\\_%' ESCAPE '\\'")}
    registered = rows("SELECT table_name, data_type, last_change FROM gpkg_contents")
    for table, kind, changed in registered:
        if table not in tables:
            yield f"14: {table} is registered and does not exist"
        if not re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z", changed):
            yield f"15: {table} was changed at {changed}"
        if kind != "attributes":
            yield f"118: {table} is registered as {kind}"
    for table in tables - {row[0] for row in registered}:
        yield f"118: {table} is not registered"
    for table in tables:
        keys = [(name, kind) for name, kind, _, key in columns(table) if key]
        if len(keys) != 1 or keys[0][1] != "INTEGER":
            yield f"119: the key of {table} is {keys}"
        for name, kind, _, _ in columns(table):
            if not re.fullmatch(TYPES, kind):
                yield f"5: {table}.{name} is of the type {kind}"


path = sys.argv[1]
db = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
for rule in broken_rules(db, path):
    print(rule)
for table, in db.execute("SELECT table_name FROM gpkg_contents ORDER BY table_name").fetchall():
    count, = db.execute(f'SELECT count(*) FROM "{table}"').fetchone()
    print(f"{table}: {count}")
