#!/usr/bin/env python3
"""Checks that every floor includes only what stands below it.

Usage: includes.py ROOT
"""
import pathlib
import re
import sys

STANDARD = None  # any name without a folder
MODULE = ("core", "evaluation", "commands", "drag")
HOST_API = ("yxbase", "yxdb", "YxDbConstraints", "yxcore", "BondKit")
WORKBENCH = ("geometry", "drawing", "evaluator", "editing", "report", "cli")

# floor: what its files may include besides the standard library
ALLOWED = {
    "host/include": HOST_API,
    "host/src": HOST_API + ("host/src",),
    "host/model": HOST_API + ("host/src", "host/model"),
    "core": HOST_API + ("core",),
    "evaluation": HOST_API + ("core", "evaluation"),
    "commands": HOST_API + ("core", "evaluation", "commands"),
    "drag": HOST_API + ("core", "evaluation", "drag"),
    "workbench/geometry": ("workbench/geometry", "workbench/drawing/Document.h", "workbench/drawing/Segments.h"),
    "workbench/drawing": HOST_API + ("host", "workbench/geometry", "workbench/drawing"),
    "workbench/evaluator": HOST_API + ("host", "evaluation", "workbench/drawing", "workbench/evaluator"),
    "workbench/report": ("workbench/geometry", "workbench/drawing", "workbench/report"),
    "workbench/editing": HOST_API + ("host",) + MODULE + ("workbench/geometry", "workbench/drawing",
                                                          "workbench/evaluator", "workbench/editing",
                                                          "workbench/report/FateReport.h"),
    "workbench/cli": None,
}
# Libraries beyond the standard one, by the only folder that may use them.
LIBRARIES = {
    "workbench/geometry": re.compile(r"^(Geom|GCPnts|gp_|Standard|TCol|BSpl|Precision|Law|Poly|Adaptor|Extrema|Int|Convert|Elc|ELC|GC|Gcc|NCollection|TopoDS|BRep)"),
    "workbench/drawing": re.compile(r"^nlohmann/"),
    "workbench/report": re.compile(r"^nlohmann/"),
    "workbench/cli": re.compile(r"^(CLI/|nlohmann/)"),
    "workbench/evaluator": re.compile(r"^Eigen/"),
}
# What belongs to the operating systems, used where files and terminals are touched.
SYSTEM = re.compile(r"^(unistd|fcntl|windows|io|sys/\w+)\.h$")


def main(root):
    problems = []
    for floor, allowed in ALLOWED.items():
        if allowed is None:
            continue
        for path in sorted((root / floor).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = re.match(r'\s*#\s*include\s*[<"]([^>"]+)[>"]', line)
                if match and not may_include(floor, allowed, match.group(1), path.suffix):
                    problems.append(f"{path.relative_to(root)}:{number}: {floor} may not include {match.group(1)}")
    print("\n".join(problems) if problems else "every floor includes only what stands below it")
    return 1 if problems else 0


def may_include(floor, allowed, name, suffix):
    if "/" not in name and not name.endswith((".h", ".hxx")):
        return True
    if SYSTEM.match(name):
        return floor.startswith("workbench") or floor == "core"
    library = LIBRARIES.get(floor)
    if library and library.match(name):
        return suffix == ".cpp" or floor == "workbench/evaluator" or name == "nlohmann/json_fwd.hpp"
    return any(name == entry or name.startswith(entry + "/") for entry in allowed)


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
