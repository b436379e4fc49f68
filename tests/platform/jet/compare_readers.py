"""Compares what `jet` reads from Access databases with what mdbtools reads.

usage: compare_readers.py JET FILE...

Prints a line for each difference and, at the end, how many records were compared. The differences that lie in
mdbtools itself are passed over: it shows an empty text as it shows Null, dates before 1899-12-30 on the wrong
side of the day, a "?" for the five bytes that code page 1252 leaves open, and a GUID without its last hyphen.
"""
import base64
import json
import subprocess
import sys

DATE = "%Y-%m-%d %H:%M:%S"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True).stdout.decode("utf-8", "replace")


def records(text):
    return [json.loads(line, strict=False) for line in text.splitlines() if line.strip()]


def unpacked(value):
    """Binary data of mdb-json, as hexadecimal digits or as the text of a GUID."""
    if not isinstance(value, dict):
        return value
    data = base64.b64decode(value["$binary"])
    return data.decode() if data[:1] == b"{" and data[-1:] == b"}" else data.hex().upper()


def same(ours, theirs):
    theirs = unpacked(theirs)
    if ours in (None, "") and theirs in (None, ""):
        return True
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
    if ours == theirs or ours.replace("-", "") == theirs.replace("-", ""):
        return True
    if len(ours) >= 10 and ours[4:5] == "-" and ours[:4] < "1900":
        return True  # a date before the first day
    if ours[:10] == theirs[:10] and theirs[10:] == " 00:00:00":
        return True  # a time of midnight is not told
    return len(ours) == len(theirs) and all(
        a == b or (b == "?" and a in "\x81\x8d\x8f\x90\x9d") for a, b in zip(ours, theirs))


def same_record(ours, theirs):
    return all(same(ours.get(name), theirs.get(name)) for name in {*ours, *theirs})


def nearest(record, theirs):
    """What tells a record from the one of theirs that is most like it."""
    def different(other):
        names = [n for n in {*record, *other} if not same(record.get(n), other.get(n))]
        return {n: (str(record.get(n))[:80], str(unpacked(other.get(n)))[:80]) for n in names}
    return min(map(different, theirs), key=len, default=record)


def compare(jet, path):
    differences, count = [], 0
    tables = output("mdb-tables", "-1", path).splitlines()
    mine = output(jet, "tables", path).splitlines()
    if sorted(tables) != sorted(mine):
        differences.append(f"{path}: tables {mine} and {tables}")
    for table in tables:
        ours = records(output(jet, "dump", "--json", path, table))
        theirs = records(output("mdb-json", "-D", DATE, "-T", DATE, path, table))
        count += len(ours)
        if len(ours) != len(theirs):
            differences.append(f"{path} {table}: {len(ours)} and {len(theirs)} records")
            continue
        # A record that has moved is read in its first place by us and where it is now by mdbtools.
        for record in ours:
            match = next((t for t in theirs if same_record(record, t)), None)
            if match is None:
                differences.append(f"{path} {table}: {nearest(record, theirs)}")
                break
            theirs.remove(match)
    return differences, count


def main(jet, *paths):
    total = 0
    for path in paths:
        differences, count = compare(jet, path)
        total += count
        print("".join(line + "\n" for line in differences), end="")
    print(f"{total} records compared")


main(*sys.argv[1:])
