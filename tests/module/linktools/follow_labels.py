#!/usr/bin/env python3
"""Follows the links of areas to their records, by programs that know nothing of ours: ezdxf, mdbtools.

follow_labels.py DRAWING LAYER: prints for how many linked polylines the NUM of the record is the text of the
labels on the layer that stand in the polyline, or the polyline's own handle, for how many it is something
else, and the layers that they are on."""
import json
import subprocess
import sys

import ezdxf
from ezdxf.path import make_path

tables = {}


def record_of(link):
    """The record of the five strings of a link; None for none."""
    key = (link[1], link[2])
    if key not in tables:
        rows = subprocess.run(["mdb-json", *key], capture_output=True, text=True).stdout
        tables[key] = [json.loads(row) for row in rows.splitlines()]
    return next((row for row in tables[key] if str(row.get(link[3])) == link[4]), None)


def is_inside(x, y, outline):
    inside = False
    for a, b in zip(outline, outline[1:] + outline[:1]):
        if (a.y > y) != (b.y > y) and x < a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y):
            inside = not inside
    return inside


space = ezdxf.readfile(sys.argv[1]).modelspace()
labels = [text for text in space.query("TEXT") if text.dxf.layer == sys.argv[2]]
labelled = handled = wrong = 0
layers = set()
for area in space.query("LWPOLYLINE"):
    if not area.has_xdata("ZGEO_GIS_2000"):
        continue
    layers.add(area.dxf.layer)
    link = [tag.value for tag in area.get_xdata("ZGEO_GIS_2000") if tag.code == 1000]
    record = record_of(link)
    value = record and record["NUM"].upper()
    outline = list(make_path(area).flattening(0.001))
    inside = {t.dxf.text.upper() for t in labels if is_inside(t.dxf.insert.x, t.dxf.insert.y, outline)}
    if record and record["GIS_KEY"] == link[2] and inside == {value}:
        labelled += 1
    elif record and value == area.dxf.handle:
        handled += 1
    else:
        wrong += 1
print(f"by label {labelled}, by handle {handled}, wrong {wrong}, on {' '.join(sorted(layers))}")
