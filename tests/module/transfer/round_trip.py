#!/usr/bin/env python3
"""Compares a set of shape files with the one that went out again after it had come in, by pyshp.

round_trip.py SET SET-AGAIN: each part of a record is a record of its own then. Prints what differs, how much was
compared, and, where there are any, how many records got another id."""
import collections
import sys

import shapefile


def parts_of(path):
    reader = shapefile.Reader(path, encoding="cp1252", encodingErrors="replace")
    for entry in reader.iterShapeRecords():
        shape = entry.shape
        values = {name.upper()[:10]: value for name, value in entry.record.as_dict().items()}
        starts = list(getattr(shape, "parts", [])) or [0]
        for start, end in zip(starts, starts[1:] + [len(shape.points)]):
            heights = list(shape.z[start:end]) if hasattr(shape, "z") else [0.0] * (end - start)
            yield [p[:2] + (z,) for p, z in zip(map(tuple, shape.points[start:end]), heights)], values


def same(before, after):
    if before is None or before == "":
        return after in (None, "")
    if isinstance(before, bool):
        return after in (("T", "Y") if before else ("F", "N"))
    if isinstance(before, (int, float)):
        return after is not None and abs(float(after) - before) <= 5e-5
    if hasattr(before, "year"):
        return after in (before.strftime("%Y/%m/%d"), before.strftime("%m/%d/%Y"))
    if isinstance(after, (int, float)):
        return float(before) == float(after)
    if after is not None and after.count("/") == 2:
        return after.replace("/", "") == before
    return str(before).strip() == after


again = collections.defaultdict(list)
for vertices, values in parts_of(sys.argv[2]):
    again[tuple(sorted(vertices))].append((vertices, values))
straight = turned = compared = renamed = 0
for vertices, values in parts_of(sys.argv[1]):
    found = again[tuple(sorted(vertices))]
    if not found:
        print("lost", vertices[:2], values)
        continue
    other, others = found.pop(0)
    straight += other == vertices
    turned += other != vertices and other == vertices[::-1]
    if other not in (vertices, vertices[::-1]):
        print("other vertices", vertices[:2], other[:2])
    for name, value in values.items():
        # The export measures lengths anew, and only where it is asked to. Empty ids have become numbers.
        if name == "LENGTH_DWG" or (name == "PT_ID" and value == ""):
            continue
        if name == "PT_ID" and value != others[name]:
            renamed += 1
        elif name not in others:
            print("no field", name)
        elif not same(value, others[name]):
            print("value", name, repr(value), repr(others[name]))
        compared += 1
for rest in again.values():
    for vertices, values in rest:
        print("new", vertices[:2], values)
print("as they were %d, turned round %d, values %d" % (straight, turned, compared), end="")
print(", other ids %d" % renamed if renamed else "")
