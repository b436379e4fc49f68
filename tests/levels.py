#!/usr/bin/env python3
"""Reads the tables of docs/levels.md and every #include, and tells each that points up, with file and line.

levels.py ROOT: checks a tree.
levels.py --self-test: checks that faults of every kind are seen, on trees that it makes."""
import os
import re
import sys
import tempfile
from fnmatch import fnmatch


def rows(text, heading):
    """The rows of the table whose first heading is given, as lists of cells."""
    found = []
    for table in re.findall(r"^\| " + heading + r" \|.*\n\|[- |]+\n((?:\|.*\n)*)", text, re.M):
        for line in table.splitlines():
            found.append([cell.strip() for cell in line.strip().strip("|").split("|")])
    return found


class Levels:
    def __init__(self, text):
        self.level = {}  # of a folder
        for level, folders, *_ in rows(text, "Level"):
            for folder in folders.split():
                self.level[folder] = int(level)
        self.uses = {library: set(used.split()) for library, used, *_ in rows(text, "Library")}
        self.outside = []  # patterns of headers, and the folders that may include them
        for patterns, folders in rows(text, "Headers"):
            self.outside.append((re.findall(r"`([^`]+)`", patterns), folders.split()))

    def fault(self, folder, header):
        """Why a file of a folder may not include a header; None when it may."""
        target = os.path.dirname(header)
        library, target_library = folder.split("/")[0], target.split("/")[0]
        if target_library not in self.uses:
            for patterns, folders in self.outside:
                if any(fnmatch(header, pattern) for pattern in patterns) and folder not in folders:
                    return "is for " + ", ".join(folders) + " only"
            return None
        if folder == target:
            return None
        if library != target_library:
            return None if target_library in self.uses[library] else f"{library} does not use {target_library}"
        if target not in self.level:
            return f"{target} has no level"
        if self.level[target] > self.level[folder]:
            return None
        return f"{folder} stands on level {self.level[folder]}, {target} on {self.level[target]}"


def faults(root):
    with open(os.path.join(root, "docs/levels.md"), encoding="utf-8") as text:
        levels = Levels(text.read())
    found, files = [], 0
    for library in levels.uses:
        for folder, _, names in sorted(os.walk(os.path.join(root, library))):
            for name in sorted(names):
                if not name.endswith((".h", ".cpp")):
                    continue
                files += 1
                path = os.path.relpath(os.path.join(folder, name), root)
                if "/" in os.path.dirname(path) and os.path.dirname(path) not in levels.level:
                    found.append(f"{path}:1: {os.path.dirname(path)} has no level")
                    continue
                with open(os.path.join(root, path), encoding="utf-8") as source:
                    for number, line in enumerate(source, 1):
                        include = re.match(r'\s*#\s*include\s*[<"]([^>"]+)[>"]', line)
                        why = include and levels.fault(os.path.dirname(path), include.group(1))
                        if why:
                            found.append(f"{path}:{number}: {include.group(1)}: {why}")
    return found, files


def self_test():
    tables = ("| Library | Uses |\n| --- | --- |\n| a | b |\n| b | |\n\n"
              "| Headers | Folders |\n| --- | --- |\n| `Q*` | b/low |\n\n"
              "| Level | Folders |\n| --- | --- |\n| 1 | a/top b/top |\n| 2 | a/low a/beside b/low |\n")
    cases = [("a/top", '"a/low/x.h"', False), ("a/low", '"a/top/x.h"', True), ("a/low", '"a/beside/x.h"', True),
             ("a/low", '"a/low/x.h"', False), ("a/low", '"b/top/x.h"', False), ("b/low", '"a/low/x.h"', True),
             ("a/low", "<QWidget>", True), ("b/low", "<QWidget>", False), ("a/low", "<vector>", False),
             ("a/nowhere", '"a/low/x.h"', True), ("a/top", '"a/nowhere/x.h"', True)]
    for folder, header, wrong in cases:
        with tempfile.TemporaryDirectory() as root:
            os.makedirs(os.path.join(root, "docs"))
            os.makedirs(os.path.join(root, folder))
            with open(os.path.join(root, "docs/levels.md"), "w", encoding="utf-8") as out:
                out.write(tables)
            with open(os.path.join(root, folder, "f.cpp"), "w", encoding="utf-8") as out:
                out.write(f"// one\n  #  include {header}\n")
            found, files = faults(root)
            assert files == 1, files
            assert bool(found) == wrong, (folder, header, found)
            assert not found or re.match(rf"{folder}/f\.cpp:[12]: ", found[0]), found


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    found, files = faults(sys.argv[1])
    print("\n".join(found))
    print(f"{files} files, {len(found)} faults")
    sys.exit(1 if found or files == 0 else 0)


if __name__ == "__main__":
    main()
