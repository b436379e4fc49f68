#!/usr/bin/env python3
"""Tells of the texts and solids on a layer of a drawing, by a program that knows nothing of ours: ezdxf.

read_texts.py DRAWING LAYER: a line for each, with the entity that the mark of a text names."""
import sys

import ezdxf


def number(value):
    return f"{round(value, 6) + 0:.6f}".rstrip("0").rstrip(".")


def place(point):
    return ",".join(number(value) for value in (point[0], point[1]))


drawing = ezdxf.readfile(sys.argv[1])
faults = drawing.audit().errors
for entity in drawing.modelspace():
    if entity.dxf.layer.upper() != sys.argv[2].upper():
        continue
    if entity.dxftype() == "SOLID":
        corners = " ".join(place(entity.dxf.get(name)) for name in ("vtx0", "vtx1", "vtx2", "vtx3"))
        print(f"SOLID {corners} #{entity.dxf.true_color:06X} {entity.dxf.color}")
        continue
    text = entity.dxf
    isAligned = text.halign or text.valign
    line = f"{text.text} at {place(text.align_point if isAligned else text.insert)} height {number(text.height)}"
    line += f" turned {number(round(text.rotation, 4))}"
    if isAligned:
        line += f" aligned {text.halign}/{text.valign}"
    if entity.has_xdata("NORVANE_LABEL"):
        mark = {code: value for code, value in entity.get_xdata("NORVANE_LABEL")}
        labelled = drawing.entitydb[mark[1005]]
        line += f" mark {mark[1000]} {mark[1070]} of {labelled.dxftype()}"
        if labelled.dxftype() == "POINT":
            line += f" {place(labelled.dxf.location)}"
    print(line)
print("faults", len(faults))
