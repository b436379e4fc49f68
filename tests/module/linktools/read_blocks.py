#!/usr/bin/env python3
"""Tells of the references to a block in a drawing, by a program that knows nothing of ours: ezdxf.

read_blocks.py DRAWING BLOCK: a line for each reference of the model space, and one for each of its attributes."""
import sys

import ezdxf


def number(value):
    return f"{round(value, 6) + 0:.6f}".rstrip("0").rstrip(".")


def place(point):
    return ",".join(number(value) for value in point)


drawing = ezdxf.readfile(sys.argv[1])
faults = drawing.audit().errors
for entity in drawing.modelspace().query("INSERT"):
    if entity.dxf.name.upper() != sys.argv[2].upper():
        continue
    scale = place((entity.dxf.xscale, entity.dxf.yscale, entity.dxf.zscale))
    print(f"at {place(entity.dxf.insert)} scale {scale} turned {number(entity.dxf.rotation)} layer {entity.dxf.layer}")
    for attribute in entity.attribs:
        line = f"  {attribute.dxf.tag}={attribute.dxf.text} at {place(attribute.dxf.insert)}"
        line += f" height {number(attribute.dxf.height)} turned {number(attribute.dxf.rotation)}"
        if attribute.dxf.halign or attribute.dxf.valign:
            line += f" aligned {attribute.dxf.halign}/{attribute.dxf.valign} {place(attribute.dxf.align_point)}"
        elif attribute.dxf.hasattr("align_point"):
            line += " with an alignment point"
        if number(attribute.dxf.width) != "1":
            line += f" width {number(attribute.dxf.width)}"
        if attribute.dxf.oblique:
            line += f" oblique {number(attribute.dxf.oblique)}"
        if attribute.is_invisible:
            line += " invisible"
        if attribute.dxf.layer != "0":
            line += f" layer {attribute.dxf.layer}"
        if attribute.dxf.style != "Standard":
            line += f" style {attribute.dxf.style}"
        print(line)
print(f"faults {len(faults)}")
