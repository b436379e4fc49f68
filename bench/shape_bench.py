# What pyshp needs for the files of shape_bench: prints seconds of processor time.
# read STEM | write STEM KIND COUNT VERTICES | read-table STEM | write-table STEM COUNT
import sys
import time

import shapefile


def read(stem):
    with shapefile.Reader(shp=open(stem + ".shp", "rb"), shx=open(stem + ".shx", "rb")) as reader:
        for shape in reader.iterShapes():
            pass


def write(stem, kind, count, vertices):
    types = {"points": shapefile.POINT, "lines": shapefile.POLYLINE, "polygons": shapefile.POLYGON}
    writer = shapefile.Writer(shp=stem + ".shp", shx=stem + ".shx", shapeType=types[kind])
    for i in range(count):
        if kind == "points":
            writer.point(i, i * 0.5)
            continue
        part = [(i + v * 0.25, i * 0.5 + v * v * 0.125) for v in range(vertices)]
        writer.line([part]) if kind == "lines" else writer.poly([part])
    writer.close()


def read_table(stem):
    with shapefile.Reader(dbf=open(stem + ".dbf", "rb")) as reader:
        for record in reader.iterRecords():
            pass


def write_table(stem, count):
    writer = shapefile.Writer(dbf=stem + ".dbf")
    for f in range(20):
        if f % 2 == 0:
            writer.field("T%d" % f, "C", 12)
        else:
            writer.field("N%d" % f, "N", 10, 0 if f % 4 == 1 else 3)
    texts = ["value %d" % i for i in range(1000)]
    for i in range(count):
        writer.record(*[texts[i % 1000] if f % 2 == 0 else i % 5000 + (0 if f % 4 == 1 else 0.25)
                        for f in range(20)])
    writer.close()


command, stem, rest = sys.argv[1], sys.argv[2], sys.argv[3:]
start = time.process_time()
if command == "read":
    read(stem)
elif command == "write":
    write(stem, rest[0], int(rest[1]), int(rest[2]))
elif command == "read-table":
    read_table(stem)
else:
    write_table(stem, int(rest[0]))
print(time.process_time() - start)
