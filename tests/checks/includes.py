#!/usr/bin/env python3
"""Checks that every floor includes only what stands below it, and that insides are read by those whose they are.

Usage: includes.py ROOT
"""
import pathlib
import re
import sys

HOST_API = ("yxbase", "yxdb", "YxDbConstraints", "yxcore", "BondKit")
CENTRES = ("core", "evaluation", "commands", "drag")
HOST = HOST_API + ("host/model",)
PLAIN = ("geometry", "document")
HANDED_ON = ("geometry", "document", "editing", "formats", "report")  # by the sketch library to its users
ENGINE = PLAIN + ("inference", "hosting", "editing")

# floor: what its files may include besides the standard library, their own folder included. A name without
# folder and ending is the standard library's.
ALLOWED = {
    "host/include": HOST_API,
    "host/src": HOST + ("host/src",),
    "host/model": HOST,
    "module/core": HOST_API + ("core",),
    "module/evaluation": HOST_API + ("core", "evaluation"),
    "module/commands": HOST_API + ("core", "evaluation", "commands"),
    "module/drag": HOST_API + ("core", "evaluation", "drag"),
    "geometry": ("geometry",),
    "solver": ("geometry", "solver", "holdfast/solver", "holdfast/geometry"),
    "document": PLAIN,
    "formats": PLAIN + ("formats",),
    "inference": PLAIN + ("inference",),
    "hosting": HOST + CENTRES + PLAIN + ("holdfast/solver", "hosting"),
    "editing": HOST + CENTRES + ENGINE + ("holdfast/solver",),
    "report": ENGINE + ("report",),
    "sketch": ENGINE + ("holdfast/sketch", "formats", "report") + tuple(f"holdfast/{floor}" for floor in HANDED_ON),
    "apps": ENGINE + ("formats", "report", "apps"),
}
OPEN_CASCADE = re.compile(r"^\w+\.hxx$")
JSON_BY_NAME = re.compile(r"^nlohmann/json_fwd\.hpp$")
JSON = re.compile(r"^nlohmann/")
# Libraries beyond the standard one and what belongs to operating systems: the only folders that may use them, and in
# which of their files.
LIBRARIES = (
    ("geometry/occ", ".cpp", OPEN_CASCADE),
    ("solver", ".cpp .h", re.compile(r"^Eigen/")),
    ("formats", ".cpp", JSON),
    ("formats", ".h", JSON_BY_NAME),
    ("formats", ".cpp", re.compile(r"^(unistd|fcntl|iconv|io|windows|sys/\w+)\.h$")),
    ("formats/fcstd", ".cpp", re.compile(r"^zip\.h$")),
    ("report", ".cpp", JSON),
    ("report", ".h", JSON_BY_NAME),
    ("apps", ".cpp .h", JSON),
    ("apps", ".cpp .h", re.compile(r"^CLI/")),
    ("apps/window", ".cpp", re.compile(r"^httplib\.h$")),
    ("apps/window", ".cpp", re.compile(r"^zlib\.h$")),
    ("apps/window", ".h", JSON_BY_NAME),
    ("apps/forms", ".cpp", re.compile(r"^(cairo-pdf|dlfcn|librsvg/rsvg)\.h$")),
    ("apps", ".cpp", re.compile(r"^(unistd|fcntl|io|malloc|windows|sys/\w+)\.h$")),
    ("module/core", ".cpp", re.compile(r"^windows\.h$")),
)
# How the in-memory host does it is its own business.
PRIVATE = "host/src"
KNOWS_THE_PRIVATE = re.compile(r"^host/(src/.*|model/.*\.cpp)$")
# How the solver works is its own business, too, with one exception: hosting solves a part of a host's network for every
# edit, in the numbers that the network has, and has single values as targets (radii, angles, bulges); the solver's face
# knows points, and has ids, checks and a copy of its own for each sketch. So that floor may use what is named here.
# Whoever asks something of a plain drawing asks hosting's DocumentSketch.
SOLVER = "solver/src"
SOLVES_IN_PLACE = "hosting"
FOR_SOLVING_IN_PLACE = tuple(f"{SOLVER}/{header}.h" for header in (
    "sketch/SketchData", "sketch/Index", "sketch/Layout", "sketch/Measure", "solving/Solve", "dragging/Drag", "diagnosis/Diagnose",
    "diagnosis/FreeMotions", "diagnosis/Extract", "diagnosis/OwnFreedom", "diagnosis/Ranks", "residuals/EquationSystem"))
# Headers of that floor that show the solver's inside: for its own files.
SHOWS_SOLVER = tuple(f"hosting/evaluator/{header}.h" for header in (
    "EditRequest", "EditRequests", "HostDrag", "HostSketch", "RotationTrial", "SketchFromDocument"))
# The host's own tests look inside it.
INSIDE = ("tests/host",)
BESIDE = ("tests", "benchmarks", "examples")


def sources(folder):
    return (path for path in sorted(folder.rglob("*")) if path.suffix in (".h", ".cpp"))


def included(path):
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if match := re.match(r'\s*#\s*include\s*[<"]([^>"]+)[>"]', line):
            yield number, match.group(1)


def lies_in(name, folders):
    return any(name == folder or name.startswith(folder + "/") for folder in folders)


def may_include(floor, file, name):
    if lies_in(name, (PRIVATE,)):
        return bool(KNOWS_THE_PRIVATE.match(file)) or lies_in(file, INSIDE)
    if lies_in(name, (SOLVER,)) and floor not in BESIDE:
        return floor == "solver" or floor == SOLVES_IN_PLACE and name in FOR_SOLVING_IN_PLACE
    if name in SHOWS_SOLVER and floor not in BESIDE:
        return floor == SOLVES_IN_PLACE
    if floor in BESIDE or "/" not in name and not name.endswith((".h", ".hxx")):
        return True
    if any(lies_in(file, (folder,)) and pathlib.Path(file).suffix in files.split() and library.match(name)
           for folder, files, library in LIBRARIES):
        return True
    return lies_in(name, ALLOWED[floor])


def main(root):
    problems, count = [], 0
    for floor in (*ALLOWED, *BESIDE):
        for path in sources(root / floor):
            file = path.relative_to(root).as_posix()
            count += 1
            problems += [f"{file}:{number}: {floor} may not include {name}"
                         for number, name in included(path) if not may_include(floor, file, name)]
    problems += [f"{floor} is no folder; a floor that moved is checked by its new name"
                 for floor in ALLOWED if not (root / floor).is_dir()]
    print("\n".join(problems) if problems else f"{count} files: every floor includes only what stands below it")
    return 1 if problems or not count else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
