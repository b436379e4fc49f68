# Prints shapes and attributes of a shape file as pyshp reads them, one line a record.
import datetime
import sys

import shapefile

NO_DATA = -1e38


def numbers(values):
    return " ".join("0" if v is None or v <= NO_DATA else "%.17g" % v for v in values)


def attribute(field, value):
    kind = field[1]
    if value is None:
        return ""
    if kind in "NF" and not isinstance(value, str):
        return "%.15g" % value
    if kind == "L":
        return "T" if value else "F"
    if isinstance(value, datetime.date):
        return value.strftime("%Y%m%d")
    return str(value).strip().replace("\r", " ").replace("\n", " ")


reader = shapefile.Reader(sys.argv[1], encoding="cp1252")
print(reader.shapeType, len(reader))
for number, shape in enumerate(reader.iterShapes()):
    points = getattr(shape, "points", [])
    z = [getattr(shape, "z", [])] if isinstance(getattr(shape, "z", []), float) else getattr(shape, "z", [])
    m = [getattr(shape, "m", [])] if isinstance(getattr(shape, "m", []), float) else getattr(shape, "m", [])
    z, m = list(z) or [0.0] * len(points), list(m) or [0.0] * len(points)
    print(number, list(getattr(shape, "parts", [])), list(getattr(shape, "partTypes", [])), end=" ")
    print(numbers(p[0] for p in points), "|", numbers(p[1] for p in points), "|", numbers(z), "|", numbers(m))
if reader.dbf:
    fields = reader.fields[1:]
    print(fields)
    for record in reader.iterRecords():
        print("|".join(attribute(f, v) for f, v in zip(fields, record)))
