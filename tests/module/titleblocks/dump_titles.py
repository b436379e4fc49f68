#!/usr/bin/env python3
"""Prints the attributes of all inserts of a drawing: handle and tag, a tab, the text with its line ends as \\r and \\n."""
import sys

import ezdxf

drawing = ezdxf.readfile(sys.argv[1])
for layout in drawing.layouts:
    for insert in layout.query("INSERT"):
        for attribute in insert.attribs:
            text = attribute.dxf.text.replace("^M", "\\r").replace("^J", "\\n")
            print(f"{insert.dxf.handle} {attribute.dxf.tag}\t{text}")
