#!/usr/bin/python3
"""Reads a note file or a delimited text on its own, and compares it with the tables that mdbtools reads.

check_imports.py notes.not|notes.vtt DATABASE
check_imports.py lines.txt DATABASE TABLE [DELIMITER]

Of notes it knows the lines of one comma, and the coordinates of lines "Pt Data,"; of texts all pieces, the first
being the key. It prints a line for each difference.
"""
import json
import subprocess
import sys

KNOWN = ("CEP", "SEP", "HRMS", "VRMS", "Status,", "STATE PLANE", "LAT", "LON", "ROD HT", "DOP", "SAT", "Date,", "Time,",
         "Pt Data,", "PT_DATA,", "Latitude,", "Longitude,")
LETTERS = set("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_#-$ )(:")


def rows_of(database, table):
    out = subprocess.run(["mdb-json", database, table], capture_output=True, check=True).stdout.decode()
    return [json.loads(line) for line in out.splitlines()]


def tables_of(database):
    out = subprocess.run(["mdb-tables", "-1", database], capture_output=True, check=True).stdout.decode()
    return [line for line in out.splitlines() if line]


def blocks_of(path):
    """Feature, id and lines of each block that is imported."""
    block = None
    for line in open(path, encoding="cp1252", newline="\n"):
        line = line.strip("\r\n")
        for piece in [line[i:i + 327] for i in range(0, len(line), 327)]:
            piece = piece.strip()
            if piece.startswith("PT_ID:"):
                if block:
                    yield block
                head, mark, file = piece[6:].partition("GIS_FILE:")
                feature = (file.strip().split(".")[0].strip().upper() or "UNKNOWN") if mark else ""
                block = (feature, head.strip(), [])
            elif piece and block:
                block[2].append(piece)
    if block:
        yield block


def values_of(identifier, lines):
    values = {}
    for line in lines:
        marks = line.count(":") + line.count("/")
        is_point = line.startswith(identifier) and line[len(identifier):len(identifier) + 1] in (" ", "\t", ",")
        if line.startswith(("Pt Data,", "PT_DATA,")):
            rest = line.split(",", 1)[1]
        elif line.startswith(KNOWN) or marks == 4:
            continue
        elif is_point:
            rest = line[len(identifier):].strip()
            rest = rest[1:] if rest.startswith(",") else rest
        else:
            rest = None
        if rest is not None:
            for name, value in zip(("NORTHING", "EASTING", "ELEVATION"), rest.split(",")):
                if value.strip():
                    values[name] = value.strip()
            continue
        if line.count(",") != 1:
            continue
        name, value = (part.strip() for part in line.split(","))
        name = name.upper()
        if 0 < len(name) < 64 and set(name) <= LETTERS and name not in ("PT_ID", "GIS_KEY") and value:
            values[name] = value
    return values


def same(stored, value):
    if stored is None:
        return False
    if isinstance(stored, (int, float)):
        try:
            return abs(float(stored) - float(value)) < 1e-9 * max(1, abs(float(value)))
        except ValueError:
            digits = ""
            for letter in value:
                if not (letter.isdigit() or letter in "+-." and not digits.endswith(".")):
                    break
                digits += letter
            return float(stored) == (float(digits) if digits.strip("+-.") else 0)
    return str(stored).strip() == value[:255].strip()


def check_notes(path, database):
    expected = {}
    for feature, identifier, lines in blocks_of(path):
        if not feature or not identifier:
            continue
        table = expected.setdefault(feature, {})
        table.setdefault(identifier.upper(), {}).update(values_of(identifier, lines))
    tables = tables_of(database)
    if sorted(tables) != sorted(expected):
        print("tables", tables, "in place of", sorted(expected))
    for feature in expected:
        if feature not in tables:
            continue
        rows = rows_of(database, feature)
        ids = [row["PT_ID"].upper() for row in rows]
        if sorted(ids) != sorted(expected[feature]):
            print(feature, "has", len(ids), "rows in place of", len(expected[feature]))
            continue
        for row in rows:
            if row["GIS_KEY"] != feature:
                print(feature, row["PT_ID"], "is of", row["GIS_KEY"])
            for name, value in expected[feature][row["PT_ID"].upper()].items():
                if not same(row.get(name), value):
                    print(feature, row["PT_ID"], name, repr(row.get(name)), "in place of", repr(value))


def check_text(path, database, table, delimiter):
    lines = [line.rstrip("\r\n").strip(" ").split(delimiter) for line in open(path, encoding="cp1252", newline="\n")]
    wanted = len(lines[0])
    expected = {pieces[0].strip(): pieces for pieces in lines if len(pieces) == wanted and pieces[0].strip()}
    rows = {row["PT_ID"]: row for row in rows_of(database, table)}
    for identifier, pieces in expected.items():
        if identifier not in rows:
            print(table, "lacks", identifier)
            continue
        stored = [value for name, value in rows[identifier].items() if name not in ("PT_ID", "GIS_KEY")]
        names = [name for name in rows[identifier] if name not in ("PT_ID", "GIS_KEY")]
        for name, value in zip(names, stored):
            piece = pieces[int(name[5:]) - 1].strip()
            if piece and not same(value, piece):
                print(table, identifier, name, repr(value), "in place of", repr(piece))
    extra = [i for i in rows if i not in expected and not i.startswith("1132000")]
    if extra:
        print(table, "has", extra)


if __name__ == "__main__":
    if len(sys.argv) > 3:
        check_text(sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4].replace("\\t", "\t") if len(sys.argv) > 4 else ",")
    else:
        check_notes(sys.argv[1], sys.argv[2])
