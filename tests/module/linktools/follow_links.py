#!/usr/bin/env python3
"""Follows each link of a drawing to its record, by programs that know nothing of ours: ezdxf, mdbtools.

follow_links.py DRAWING: prints how many links lead to a record of their key, and how many do not."""
import json
import subprocess
import sys

import ezdxf

tables = {}


def keys_of(output, table, field):
    """The values of a field in a table; none where there is no such table."""
    if (output, table) not in tables:
        rows = subprocess.run(["mdb-json", output, table], capture_output=True, text=True).stdout
        tables[output, table] = [json.loads(row) for row in rows.splitlines()]
    return {str(row.get(field)) for row in tables[output, table]}


followed = missing = 0
for entity in ezdxf.readfile(sys.argv[1]).modelspace():
    if not entity.has_xdata("ZGEO_GIS_2000"):
        continue
    link = [tag.value for tag in entity.get_xdata("ZGEO_GIS_2000") if tag.code == 1000]
    if len(link) == 5 and link[4] in keys_of(link[1], link[2], link[3]):
        followed += 1
    else:
        missing += 1
print(f"followed {followed}, without a record {missing}")
