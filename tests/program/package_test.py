"""The Debian package of a build: it is unpacked into an empty folder, and does the main job of the samples from there.

usage: package_test.py BUILD_FOLDER

The sources and the build are out of reach of the programs where the machine lets us hide them (a mount of our own
over them); their environment never names them. Ends with 77 where a program that makes packages is missing.
"""

import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

SOURCES = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PROGRAMS = ("hostcad", "hostcad-batch", "jet", "gisfile")


def output_of(command, **options):
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if run.returncode != 0:
        sys.exit(f"{' '.join(command)} ended with {run.returncode}:\n{run.stdout}")
    return run.stdout


def make_package(build, folder):
    os.umask(0o022)
    output_of(["cpack", "--config", f"{build}/CPackConfig.cmake", "-B", folder])
    packages = glob.glob(f"{folder}/*.deb")
    assert len(packages) == 1, packages
    return packages[0]


def hidden_sources():
    """The beginning of a command line that runs the rest of it where the sources are an empty folder."""
    hide = ["unshare", "--map-root-user", "--mount", "sh", "-c",
            'mount -t tmpfs none "$0" && cd / && exec "$@"', SOURCES]
    look = ["test", "!", "-e", f"{SOURCES}/README.md"]
    if shutil.which("unshare") and subprocess.run(hide + look, capture_output=True).returncode == 0:
        return hide
    print("The sources cannot be hidden on this machine; the environment alone does not lead to them.")
    return []


def dependencies(package):
    """The names of the packages that a package depends on, directly and by way of others."""
    fields = output_of(["dpkg-deb", "--field", package, "Depends"])
    needs = {}
    for line in output_of(["dpkg-query", "-W", "-f", "${Package}:${Pre-Depends}, ${Depends}\n"]).splitlines():
        name, _, others = line.partition(":")
        needs[name] = re.findall(r"(?:^|[,|])\s*([a-z0-9.+-]+)", others)
    known, to_see = set(), re.findall(r"(?:^|[,|])\s*([a-z0-9.+-]+)", fields)
    while to_see:
        name = to_see.pop()
        if name in known:
            continue
        known.add(name)
        to_see += needs.get(name, [])
    return known


def owners_of(paths):
    """The package of each file; a library may be recorded below /lib or below /usr/lib, which are the same folder."""
    names = {}
    for path in paths:
        real = os.path.realpath(path)
        for name in (path, real, real.removeprefix("/usr"), "/usr" + real):
            names.setdefault(name, path)
    query = subprocess.run(["dpkg-query", "-S", *names], capture_output=True, text=True)
    owners = {}
    for line in query.stdout.splitlines():
        package, _, name = line.partition(": ")
        owners[names.get(name)] = package.split(":")[0]
    return owners


def check_libraries(home, package, run):
    """Every library that a program or library of ours loads is in the package, or in one that it depends on."""
    depends = dependencies(package)
    assert {"libc6", "libstdc++6"} <= depends, depends
    files = [f"{home}/{name}" for name in os.listdir(home) if os.path.isfile(f"{home}/{name}")]
    assert len(files) >= 6, files
    needed = {}
    for file in files:
        libraries = output_of(run + ["ldd", file])
        assert "not found" not in libraries, f"{file}:\n{libraries}"
        for path in re.findall(r"=> (/\S+)", libraries):
            if os.path.dirname(path) != home:
                needed[path] = file
    owners = owners_of(needed)
    for path, file in needed.items():
        assert owners.get(path) in depends, f"{file} needs {path}, of the package {owners.get(path)}"


def check_contents(root):
    for name in PROGRAMS:
        assert os.access(f"{root}/usr/bin/{name}", os.X_OK), name
        page = output_of(["gzip", "-dc", f"{root}/usr/share/man/man1/{name}.1.gz"])
        assert ".SH SYNOPSIS" in page, name
    assert os.path.exists(f"{root}/usr/lib/norvane-gis/capture.arx")
    desktop = open(f"{root}/usr/share/applications/org.norvane.gis.desktop").read()
    icon = re.search(r"^Icon=(.+)$", desktop, re.M).group(1)
    assert os.path.exists(f"{root}/usr/share/icons/hicolor/scalable/apps/{icon}.svg")
    program = re.search(r"^Exec=(\S+)", desktop, re.M).group(1)
    assert program in PROGRAMS
    for name in ("copyright", "changelog.gz", "changelog.Debian.gz", "README.md", "docs/window.md"):
        assert os.path.getsize(f"{root}/usr/share/doc/norvane-gis/{name}") > 0, name


def check_main_job(root, job, run):
    """What a user does first: the demonstration on the sample drawing, and a look at what has come of it."""
    samples = f"{root}/usr/share/doc/norvane-gis/samples"
    os.mkdir(job)
    said = output_of(run + [f"{root}/usr/bin/hostcad-batch", "--drawing", f"{samples}/survey.dxf", "--save",
                            f"{job}/survey.dxf", f"{samples}/demo.lsp"])
    for line in ("point 3: saved", "lot 5: saved", "point A101: not saved"):
        assert line in said, said
    said = output_of(run + [f"{root}/usr/bin/hostcad-batch", "--drawing", f"{job}/survey.dxf", f"{samples}/show.lsp"])
    assert "1001 ZGEO_GIS_2000" in said, said
    said = output_of(run + [f"{root}/usr/bin/jet", "sql", f"{job}/output.mdb", "SELECT PT_ID, SPECIES FROM TREE"])
    assert "3|RED OAK" in said, said
    assert "Usage" in output_of(run + [f"{root}/usr/bin/gisfile", "--help"])
    # The commands are those of the package.
    with open(f"{job}/look.lsp", "w") as file:
        file.write('(princ (findfile "gis.lsp")) (princ (if c:gis-prompt " has commands"))')
    said = output_of(run + [f"{root}/usr/bin/hostcad-batch", f"{job}/look.lsp"])
    assert f"{root}/usr/lib/norvane-gis/support/gis.lsp has commands" in said, said


def check_window(root, run):
    """The window starts, without a screen, and loads the module of the package and nothing of the build."""
    window = subprocess.Popen(run + [f"{root}/usr/bin/hostcad"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    loaded, until = "", time.monotonic() + 60
    while f"{root}/usr/lib/norvane-gis/norvane_gis.arx" not in loaded:
        assert window.poll() is None, f"hostcad has ended with {window.returncode}"
        assert time.monotonic() < until, f"hostcad has not loaded the module:\n{loaded}"
        time.sleep(0.1)
        with open(f"/proc/{window.pid}/maps") as maps:
            loaded = maps.read()
    window.kill()
    window.wait()
    assert SOURCES + "/" not in loaded, loaded


def main():
    build = os.path.abspath(sys.argv[1])
    missing = [name for name in ("cpack", "dpkg-deb", "dpkg-shlibdeps", "file") if not shutil.which(name)]
    if missing:
        print(f"Skipped: {', '.join(missing)} is missing.")
        sys.exit(77)
    with tempfile.TemporaryDirectory(prefix="norvane-package-") as folder:
        package = make_package(build, folder)
        if shutil.which("lintian"):
            output_of(["lintian", "--fail-on", "error", "--allow-root", package])
        root, job = f"{folder}/root", f"{folder}/job"
        output_of(["dpkg-deb", "--extract", package, root])
        check_contents(root)
        environment = ["env", "-i", "PATH=/usr/bin:/bin", f"HOME={folder}/home", f"NORVANE_USER_DIR={folder}/user",
                       f"NORVANE_DEMO={job}/", "LC_ALL=C.UTF-8", "QT_QPA_PLATFORM=offscreen"]
        run = hidden_sources() + environment
        os.mkdir(f"{folder}/user")
        check_libraries(f"{root}/usr/lib/norvane-gis", package, run)
        check_main_job(root, job, run)
        check_window(root, run)
    print("The package does the main job from an empty folder.")


if __name__ == "__main__":
    main()
