#!/usr/bin/env python3
"""Reads the tables of docs/kept.md and tells each row whose file, name or test case is not there.

kept.py ROOT: checks a tree.
kept.py --self-test: checks that faults of every kind are seen."""
import os
import re
import sys

CASE = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.M)
CODE = re.compile(r"`([^`]+)`")


def rows(text):
    """Line number, place and test of each row."""
    for number, line in enumerate(text.splitlines(), 1):
        cells = re.split(r" \| ", line.strip("| "))
        if line.startswith("| ") and len(cells) == 3 and cells[0] not in ("What", "---"):
            yield number, CODE.findall(cells[1]), CODE.findall(cells[2])


def faults(text, source, cases):
    """What is wrong with the rows. source: the content of a file, or None; cases: all "Suite.Case" there are."""
    for number, place, tests in rows(text):
        path, names = (place[0], place[1:]) if place else ("", [])
        content = source(path) if path else None
        if content is None or not names:
            yield f"docs/kept.md:{number}: no such place: {' '.join(place)}"
        for name in names if content is not None else []:
            if not re.search(rf"\b{re.escape(name)}\b", content):
                yield f"docs/kept.md:{number}: {path} has no {name}"
        for test in tests or ["(none)"]:
            if test not in cases:
                yield f"docs/kept.md:{number}: no such test: {test}"


def cases_below(folder):
    found = set()
    for place, _, names in os.walk(folder):
        for name in names:
            if name.endswith(".cpp"):
                with open(os.path.join(place, name), encoding="utf-8") as source:
                    found.update(".".join(case) for case in CASE.findall(source.read()))
    return found


def check(root):
    def source(path):
        full = os.path.join(root, path)
        if not os.path.isfile(full):
            return None
        with open(full, encoding="utf-8") as content:
            return content.read()

    text = source("docs/kept.md") or ""
    found = list(faults(text, source, cases_below(os.path.join(root, "tests"))))
    count = len(list(rows(text)))
    print("\n".join(found))
    print(f"{count} rows, {len(found)} faults")
    sys.exit(1 if found or count == 0 else 0)


def self_test():
    files = {"a.cpp": "void work() {}"}
    cases = set(".".join(case) for case in CASE.findall("TEST_F(Suite, Case) {\n// TEST(Old, Case)\n"))
    for place, test, wrong in [("`a.cpp` `work`", "`Suite.Case`", 0), ("`b.cpp` `work`", "`Suite.Case`", 1),
                               ("`a.cpp` `wor`", "`Suite.Case`", 1), ("`a.cpp`", "`Suite.Case`", 1),
                               ("", "`Suite.Case`", 1), ("`a.cpp` `work`", "`Suite.Other`", 1),
                               ("`a.cpp` `work`", "`Suite.Case` `Old.Case`", 1), ("`a.cpp` `work`", "none", 1)]:
        text = f"| What | Where | Test |\n| --- | --- | --- |\n| odd | {place} | {test} |\n"
        found = list(faults(text, files.get, cases))
        assert len(found) == wrong, (place, test, found)
        assert not found or found[0].startswith("docs/kept.md:3: "), found


if __name__ == "__main__":
    self_test() if sys.argv[1:] == ["--self-test"] else check(sys.argv[1])
