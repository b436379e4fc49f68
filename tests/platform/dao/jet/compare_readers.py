"""Compares what `jet` reads from Access databases with what another program reads.

usage: compare_readers.py JET READER[+READER] FILE...        READER: mdbtools or mdb-reader

Prints a line for each difference and, at the end, how many records were compared with each reader. The differences that lie in the
other program itself are passed over. Both tell dates before 1899-12-30 with the time on the wrong side of the day.
mdbtools shows an empty text as it shows Null, a "?" for the five bytes that code page 1252 leaves open, and a GUID
without its last hyphen; mdb-reader shows those five bytes as U+FFFD, and a GUID without braces. A record that has
moved is read in its first place by jet and where it is now by the others. mdbtools cuts memos at 200 000 bytes.
"""
import base64
import json
import os
import subprocess
import sys
from collections import Counter

DATE = "%Y-%m-%d %H:%M:%S"
OPEN_BYTES = "\x81\x8d\x8f\x90\x9d"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True).stdout.decode("utf-8", "replace")


def records(text):
    return [json.loads(line, strict=False) for line in text.splitlines() if line.strip()]


def unpacked(value):
    """Binary data of mdb-json, as hexadecimal digits or as the text of a GUID."""
    data = base64.b64decode(value["$binary"])
    return data.decode() if data[:1] == b"{" and data[-1:] == b"}" else data.hex().upper()


class Mdbtools:
    open_byte = "?"

    @classmethod
    def read(cls, paths):
        """The tables of each file, with their records."""
        return [dict(cls.tables(path)) for path in paths]

    @staticmethod
    def tables(path):
        for table in output("mdb-tables", "-1", path).splitlines():
            rows = records(output("mdb-json", "-D", DATE, "-T", DATE, path, table))
            yield table, [{name: unpacked(v) if isinstance(v, dict) else v for name, v in row.items()} for row in rows]

    @staticmethod
    def same_text(ours, theirs):
        return ours.replace("-", "") == theirs.replace("-", "")

    same_nothing = staticmethod(lambda ours, theirs: ours in (None, "") and theirs in (None, ""))


class MdbReader:
    open_byte = "\ufffd"

    @staticmethod
    def read(paths):
        script = os.path.join(os.path.dirname(__file__), "dump_records.js")
        return records(output("node", script, *paths))

    @staticmethod
    def same_text(ours, theirs):
        return ours.strip("{}").upper() == theirs.strip("{}").upper()

    same_nothing = staticmethod(lambda ours, theirs: False)


def same(ours, theirs, reader):
    if ours == theirs or reader.same_nothing(ours, theirs):
        return True
    if ours is None or theirs is None:
        return False
    if isinstance(ours, bool):
        return ours == bool(theirs)
    if isinstance(ours, str) and isinstance(theirs, (int, float)):
        ours = float(ours)  # a decimal number
    if isinstance(ours, (int, float)):
        try:
            return abs(ours - float(theirs)) <= 1e-6 * abs(ours)
        except (TypeError, ValueError):
            return False
    if not isinstance(ours, str) or not isinstance(theirs, str):
        return False
    if reader.same_text(ours, theirs):
        return True
    if len(ours) >= 10 and ours[4:5] == "-" and ours[:4] < "1900":
        return True  # a date before the first day
    if ours[:10] == theirs[:10] and theirs[10:] == " 00:00:00":
        return True  # a time of midnight is not told
    return len(ours) == len(theirs) and all(
        a == b or (b == reader.open_byte and a in OPEN_BYTES) for a, b in zip(ours, theirs))


def same_record(ours, theirs, reader):
    return all(same(ours.get(name), theirs.get(name), reader) for name in {*ours, *theirs})


def nearest(record, theirs, reader):
    """What tells a record from the one of theirs that is most like it."""
    def different(other):
        names = [n for n in {*record, *other} if not same(record.get(n), other.get(n), reader)]
        return {n: (str(record.get(n))[:80], str(other.get(n))[:80]) for n in names}
    return min(map(different, theirs), key=len, default=record)


def compare_table(ours, theirs, reader):
    """A line for the first record that the other program does not read so; None when all are the same."""
    if len(ours) != len(theirs):
        return f"{len(ours)} and {len(theirs)} records"
    # Records are looked for among those that share the columns of which both have exactly the same values.
    names = {name for record in ours for name in record}
    shared = sorted(n for n in names if Counter(r.get(n) for r in ours) == Counter(r.get(n) for r in theirs))
    alike = {}
    for record in theirs:
        alike.setdefault(tuple(record.get(name) for name in shared), []).append(record)
    for record in ours:
        candidates = alike.get(tuple(record.get(name) for name in shared), [])
        match = next((i for i, other in enumerate(candidates) if same_record(record, other, reader)), None)
        if match is None:
            return f"{nearest(record, candidates or theirs, reader)}"
        del candidates[match]
    return None


def read_ours(jet, path):
    return {table: records(output(jet, "dump", "--json", path, table))
            for table in output(jet, "tables", path).splitlines()}


def compare(path, ours, theirs, reader):
    """A line for each difference."""
    if sorted(theirs) != sorted(ours):
        return [f"{path}: tables {sorted(ours)} and {sorted(theirs)}"]
    differences = {table: compare_table(ours[table], theirs[table], reader) for table in ours}
    return [f"{path} {table}: {difference}" for table, difference in differences.items() if difference]


def main(jet, names, *paths):
    ours = [read_ours(jet, path) for path in paths]
    count = sum(len(rows) for tables in ours for rows in tables.values())
    for name in names.split("+"):
        reader = {"mdbtools": Mdbtools, "mdb-reader": MdbReader}[name]
        for path, mine, theirs in zip(paths, ours, reader.read(paths), strict=True):
            for difference in compare(path, mine, theirs, reader):
                print(f"{name}: {difference}")
    print(f"{count} records compared")


main(*sys.argv[1:])
