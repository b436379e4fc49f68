#!/usr/bin/env python3
"""Compares an imported set of shape files with where it went, by programs that know nothing of ours.

compare_import.py SET DRAWING OUTPUT TABLE: lines and areas in a drawing (pyshp, ezdxf), rows in a database that
SQLite reads. Prints what differs, then how much was compared."""
import sqlite3
import sys

import ezdxf
import shapefile

path, drawing_path, output, table = sys.argv[1:]
shapes = shapefile.Reader(path, encoding="cp1252", encodingErrors="replace")
drawing = ezdxf.readfile(drawing_path)
fields = [field[0] for field in shapes.fields[1:]]
is_area = "POLYGON" in shapes.shapeTypeName
has_z = shapes.shapeTypeName.endswith("Z")
found = []
for polyline in drawing.modelspace().query("POLYLINE"):
    link = [tag.value for tag in polyline.get_xdata("ZGEO_GIS_2000") if tag.code == 1000]
    found.append((link, polyline.is_closed, [tuple(v.dxf.location) for v in polyline.vertices]))
rows = sqlite3.connect(output).execute(f'select * from "{table}"')
columns = [column[0] for column in rows.description]
records = {row[columns.index("PT_ID")]: dict(zip(columns, row)) for row in rows}
compared, at, counter = [0, 0, 0], 0, 0
for number, record in enumerate(shapes.iterShapeRecords()):
    shape = record.shape
    key = record.record["PT_ID"].strip() if "PT_ID" in fields else ""
    if not key:
        counter += 1
        key = str(counter)
    ends = list(shape.parts[1:]) + [len(shape.points)]
    for start, end in zip(shape.parts, ends):
        heights = shape.z[start:end] if has_z else [0.0] * (end - start)
        wanted = [(x, y, z) for (x, y), z in zip([p[:2] for p in shape.points[start:end]], heights)]
        link, closed, vertices = found[at]
        at += 1
        if vertices != wanted:
            print("vertices of record", number, vertices[:2], wanted[:2])
        if closed != is_area or link[2:] != [table, "PT_ID", key]:
            print("polyline of record", number, closed, link)
        compared[0] += 1
        compared[1] += len(wanted)
    row = records[key]
    for name, value in zip(fields, record.record):
        if name == "PT_ID":
            continue
        stored = row[name]
        if value is None or value == "":
            same = stored is None
        elif isinstance(value, bool):
            same = stored in ("T", "Y", "t", "y") if value else stored in ("F", "N", "f", "n")
        elif isinstance(value, (int, float)):
            same = stored is not None and float(stored) == float(value)
        elif hasattr(value, "year"):
            same = stored in (value.strftime("%Y/%m/%d"), value.strftime("%m/%d/%Y"))
        else:
            same = stored == str(value).strip() or (str(value).strip("0") == "" and stored is None)
        if not same:
            print("row", key, name, repr(value), repr(stored))
        compared[2] += 1
if at != len(found) or len(records) != len(shapes):
    print("counts", at, len(found), len(records), len(shapes))
print("polylines %d, vertices %d, values %d" % tuple(compared))
