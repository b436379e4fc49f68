#!/usr/bin/env python3
"""Plants faults in the code, one at a time, and tells which of them no test sees.

usage: tools/mutations.py [--list | --check] [--near] [WORD ...]
       tools/mutations.py --self-test

WORD: only the faults whose file or title has one of the words. --list names them, --check looks whether their texts
are found, and neither builds anything.

The faults stand in tools/mutations.txt, each as a title, a file with the test programs that are likely to see it, the
text that is exchanged and what takes its place:

    = a new database takes any ending
    module/store/new_database.cpp store_test module_test:Settings.*
    - return ending.size() == kReplacedEnding ? path.substr(0, dot + 1) + "mdb" : "";
    + return path.substr(0, dot + 1) + "mdb";

The text must stand in the file once. Several lines of - or + belong together; a lone + takes the text out. The
programs that are named run first, as far as a filter of cases says so; a fault that they do not see goes on to every
other program that is built from the file. --near leaves those out.

All happens in a copy of the tree below build/mutations, with a build of its own; the tree itself is only read, and
the next run brings the copy back to it. Ends with 1 when a fault lives, or an entry is wrong: its text is not found,
or does not compile."""
import os
import re
import shutil
import signal
import subprocess
import sys
import time
from dataclasses import dataclass, field

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TABLE = os.path.join(ROOT, "tools", "mutations.txt")
WORK = os.path.join(ROOT, "build", "mutations")
COPY = os.path.join(WORK, "tree")
BUILD = os.path.join(COPY, "build", "dev")
LONGEST_RUN = 300  # seconds for a test program; one that takes longer hangs


class Fault(Exception):
    """An entry or a tree with which nothing can be done."""


@dataclass
class Mutation:
    line: int
    title: str
    path: str = ""
    programs: list = field(default_factory=list)  # NAME or NAME:FILTER
    old: str = ""
    new: str = ""


def read_table(text):
    """The mutations of a table; Fault with the line that is wrong."""
    mutations = []
    state = ""
    for number, line in enumerate(text.splitlines(), 1):
        kind, rest = line[:1], line[2:]
        if kind == "=":
            mutations.append(Mutation(number, rest))
        elif kind in ("", "#"):
            continue
        elif not mutations:
            raise Fault(f"line {number}: a title is missing")
        elif kind in "-+":
            if kind == "-" and state != "-":
                mutations[-1].old = rest
            elif kind == "+" and state != "+":
                mutations[-1].new = rest
            elif kind == "-":
                mutations[-1].old += "\n" + rest
            else:
                mutations[-1].new += "\n" + rest
        else:
            mutations[-1].path, *mutations[-1].programs = line.split()
        state = kind
    for mutation in mutations:
        if not mutation.path or not mutation.old or mutation.old == mutation.new:
            raise Fault(f"line {mutation.line}: a file, a text or a change is missing")
    return mutations


def planted(mutation, content):
    """The content with the fault in it, and the number of its line."""
    count = content.count(mutation.old)
    if count != 1:
        raise Fault(f"the text stands {count} times in {mutation.path}")
    return content.replace(mutation.old, mutation.new), content[:content.index(mutation.old)].count("\n") + 1


def content_of(folder, path):
    with open(os.path.join(folder, path), encoding="utf-8", newline="") as file:
        return file.read()


def check(mutations):
    """The mutations that fit the tree; says what is wrong with the others."""
    good = []
    for mutation in mutations:
        try:
            planted(mutation, content_of(ROOT, mutation.path))
            good.append(mutation)
        except (Fault, OSError) as wrong:
            print(f"{os.path.relpath(TABLE, ROOT)}:{mutation.line}: WRONG: {mutation.title}: {wrong}", flush=True)
    return good


def write_if_changed(path, content):
    if os.path.isfile(path):
        with open(path, "rb") as there:
            if there.read() == content:
                return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def update_copy():
    """Brings the copy to the state of the tree. Files that are alike keep their time, so that they are not built."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout
    files = {name for name in listed.split("\0") if name and os.path.isfile(os.path.join(ROOT, name))}
    for name in files:
        with open(os.path.join(ROOT, name), "rb") as file:
            write_if_changed(os.path.join(COPY, name), file.read())
        shutil.copymode(os.path.join(ROOT, name), os.path.join(COPY, name))
    for folder, folders, names in os.walk(COPY):
        if folder == COPY:
            folders[:] = [name for name in folders if name != "build"]
        for name in names:
            if os.path.relpath(os.path.join(folder, name), COPY) not in files:
                os.remove(os.path.join(folder, name))
    # Input files that are kept beside a checkout.
    beside, link = os.path.join(ROOT, "..", "shared"), os.path.join(WORK, "shared")
    if os.path.isdir(beside) and not os.path.islink(link):
        os.symlink(os.path.realpath(beside), link)


def run(command, **more):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **more)


def configure():
    # A changed library leaves the programs that load it as they are, or each fault would link all tests.
    command = ["cmake", "--preset", "dev", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"]
    if shutil.which("ccache"):
        command.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
    done = run(command, cwd=COPY)
    if done.returncode != 0:
        raise Fault("the copy cannot be configured:\n" + done.stdout)


def build(targets):
    """What is wrong, or nothing."""
    done = run(["cmake", "--build", BUILD, "--target", *targets])
    errors = [line for line in done.stdout.splitlines() if "error" in line.lower()]
    return "" if done.returncode == 0 else (errors or ["the build fails"])[0]


def programs_of_copy():
    """Each test program with the files from which it and what it loads are built."""
    names = [name for name in run(["ninja", "-C", BUILD, "-t", "targets", "all"]).stdout.split()
             if re.fullmatch(r"bin/\w+_test:", name)]
    sources = {}
    for name in names:
        inputs = run(["ninja", "-C", BUILD, "-t", "inputs", name[:-1]]).stdout.split("\n")
        sources[name[4:-1]] = {os.path.relpath(path, COPY) for path in inputs if path.startswith(COPY)}
    return sources


def first_failure(program):
    """Runs NAME or NAME:FILTER; gives the case that fails, or nothing."""
    name, _, cases = program.partition(":")
    environment = dict(os.environ, GTEST_FAIL_FAST="1", QT_QPA_PLATFORM="offscreen",
                       NODE_PATH=os.path.join(ROOT, "build", "node", "node_modules"))
    command = [os.path.join(BUILD, "bin", name), "--gtest_color=no"]
    if cases:
        command.append("--gtest_filter=" + cases)
    try:
        done = run(command, cwd=BUILD, env=environment, timeout=LONGEST_RUN, stdin=subprocess.DEVNULL)
    except subprocess.TimeoutExpired as late:
        said = (late.stdout or b"").decode(errors="replace")
        return (re.findall(r"^\[ RUN      \] (\S+)", said, re.M) or [name])[-1] + " (hangs)"
    ran = re.findall(r"^\[ RUN      \] (\S+)", done.stdout, re.M)
    if done.returncode == 0:
        return "" if ran else f"{program} (has no case)"
    failed = re.findall(r"^\[  FAILED  \] (\S+?),? ", done.stdout, re.M)
    return failed[0] if failed else f"{(ran or [name])[-1]} (ends with {done.returncode})"


class Session:
    """The copy, its programs, and how long each of them runs."""

    def __init__(self, near):
        self.near = near
        update_copy()
        configure()
        self.sources = programs_of_copy()
        self.seconds = {}

    def dependents(self, mutation):
        return [name for name, files in self.sources.items() if mutation.path in files]

    def try_without_fault(self, mutations):
        """Builds and runs what the mutations need. A program that fails as it stands cannot see a fault."""
        wanted = {program.partition(":")[0] for mutation in mutations for program in mutation.programs}
        for unknown in wanted - set(self.sources):
            print(f"there is no test program {unknown}", flush=True)
        wanted &= set(self.sources)
        if not self.near:
            wanted.update(name for mutation in mutations for name in self.dependents(mutation))
        wrong = build(sorted(wanted)) if wanted else ""
        if wrong:
            raise Fault("the tree cannot be built: " + wrong)
        for program in sorted(wanted):
            begin = time.monotonic()
            failure = first_failure(program)
            if failure:
                print(f"{program} fails without a fault and is left out: {failure}", flush=True)
            else:
                self.seconds[program] = time.monotonic() - begin

    def order(self, mutation):
        """The programs to be run: those that are named, then the others, the quick ones first."""
        named = [program for program in mutation.programs if program.partition(":")[0] in self.seconds]
        if self.near:
            return named
        others = [name for name in self.dependents(mutation) if name in self.seconds and name not in named]
        return named + sorted(others, key=self.seconds.get)

    def plant(self, mutation):
        """The line of the fault, and what sees it; nothing when it lives. The copy is as before afterwards."""
        path = os.path.join(COPY, mutation.path)
        content = content_of(COPY, mutation.path)
        changed, line = planted(mutation, content)
        try:
            with open(path, "w", encoding="utf-8", newline="") as file:
                file.write(changed)
            for program in self.order(mutation):
                wrong = build([program.partition(":")[0]])
                if wrong:
                    raise Fault("cannot be built: " + wrong)
                if failure := first_failure(program):
                    return line, failure
            return line, ""
        finally:
            with open(path, "w", encoding="utf-8", newline="") as file:
                file.write(content)


def plant_all(entries, near):
    mutations = check(entries)
    session = Session(near)
    session.try_without_fault(mutations)
    alive, wrong = [], len(entries) - len(mutations)
    for number, mutation in enumerate(mutations, 1):
        begin = time.monotonic()
        try:
            line, seen_by = session.plant(mutation)
            place = f"{mutation.path}:{line}: {mutation.title}"
            verdict = f"seen by {seen_by}" if seen_by else "LIVES"
            if not seen_by:
                alive.append(place)
        except Fault as fault:
            wrong += 1
            place, verdict = f"{mutation.path}: {mutation.title}", f"WRONG: {fault}"
        print(f"{number}/{len(mutations)} {place}: {verdict} ({time.monotonic() - begin:.0f} s)", flush=True)
    seen = len(entries) - len(alive) - wrong
    print(f"{len(entries)} faults: {seen} are seen, {len(alive)} live, {wrong} are wrong entries")
    for place in alive:
        print("lives: " + place)
    return 1 if alive or wrong else 0


def self_test():
    table = "# words\n= a title\na.cpp one_test two_test:Case.*\n- old\n-   text\n+ new\n\n= out\nb.cpp\n- gone\n+\n"
    first, second = read_table(table)
    assert (first.line, first.path, first.programs) == (2, "a.cpp", ["one_test", "two_test:Case.*"])
    assert (first.old, first.new, second.old, second.new) == ("old\n  text", "new", "gone", "")
    assert planted(first, "x\nold\n  text\n") == ("x\nnew\n", 2)
    for content in ("", "old\n  text old\n  text"):
        try:
            planted(first, content)
            raise AssertionError(content)
        except Fault:
            pass
    for text in ("- old\n", "= a\n- old\n+ new\n", "= a\na.cpp\n+ new\n", "= a\na.cpp\n- old\n+ old\n"):
        try:
            read_table(text)
            raise AssertionError(text)
        except Fault as fault:
            assert str(fault).startswith("line 1: "), fault


def main(arguments):
    options = {argument for argument in arguments if argument.startswith("--")}
    words = [argument for argument in arguments if argument not in options]
    if options - {"--list", "--check", "--near", "--self-test"}:
        print(__doc__)
        return 2
    if "--self-test" in options:
        return self_test()
    try:
        with open(TABLE, encoding="utf-8") as table:
            mutations = [mutation for mutation in read_table(table.read())
                         if not words or any(word in f"{mutation.path}: {mutation.title}" for word in words)]
        if "--list" in options:
            print("\n".join(f"{mutation.path}: {mutation.title}" for mutation in mutations))
            return 0
        if "--check" in options:
            return 0 if len(check(mutations)) == len(mutations) else 1
        # A run that is ended from outside leaves the copy as an interrupted one does.
        signal.signal(signal.SIGTERM, signal.default_int_handler)
        return plant_all(mutations, "--near" in options)
    except Fault as fault:
        print(fault, file=sys.stderr)
        return 2
    except KeyboardInterrupt:
        return 130


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
