#!/usr/bin/env python3
"""Makes the Debian packages, looks at their files, unpacks them, and uses what was unpacked.

Usage: debian.py ROOT BUILD WORK PROGRAM COMPILER [FLAG ...]
PROGRAM is the program holdfast; where it was not built, its package is left out.
"""
import pathlib
import re
import shutil
import sys

import installed

LIBRARY = r"usr/lib/(?:[\w-]+/)?"
# One row for each component: its package, the files that must be there, and whether there may be others.
PACKAGES = {
    "model": ("libholdfast-host-model0", (LIBRARY + r"libholdfast_host_model\.so\.0",
                                          LIBRARY + r"libholdfast_host_model\.so\.[\d.]+"), False),
    "model_development": ("libholdfast-host-model-dev",
                          (LIBRARY + r"libholdfast_host_model\.so", LIBRARY + r"pkgconfig/holdfast-host-model\.pc",
                           LIBRARY + r"cmake/Holdfast/HoldfastModelTargets\.cmake",
                           r"usr/include/holdfast/host/yxdb/YxDbLine\.h",
                           r"usr/include/holdfast/host/model/Scene\.h"), True),
    "module": ("libholdfast0", (LIBRARY + r"libholdfast\.so\.0", LIBRARY + r"libholdfast\.so\.[\d.]+"), False),
    "development": ("libholdfast-dev",
                    (LIBRARY + r"libholdfast\.so", LIBRARY + r"pkgconfig/holdfast\.pc",
                     LIBRARY + r"cmake/Holdfast/HoldfastConfig\.cmake",
                     LIBRARY + r"cmake/Holdfast/HoldfastConfigVersion\.cmake",
                     r"usr/share/doc/holdfast/tutorial-host\.md",
                     r"usr/share/doc/holdfast/examples/consumer/main\.cpp"), True),
    "solver": ("libholdfast-solver0.2", (LIBRARY + r"libholdfast_solver\.so\.0\.2",
                                       LIBRARY + r"libholdfast_solver\.so\.[\d.]+"), False),
    "solver_development": ("libholdfast-solver-dev",
                           (LIBRARY + r"libholdfast_solver\.so", LIBRARY + r"pkgconfig/holdfast-solver\.pc",
                            LIBRARY + r"cmake/HoldfastSolver/HoldfastSolverConfig\.cmake",
                            LIBRARY + r"cmake/HoldfastSolver/HoldfastSolverTargets\.cmake",
                            r"usr/include/holdfast/solver/Sketch\.h", r"usr/include/holdfast/geometry/Vec2\.h",
                            r"usr/share/doc/holdfast-solver/solver\.md",
                            r"usr/share/doc/holdfast-solver/examples/rectangle\.cpp"), True),
    "sketch": ("libholdfast-sketch0.2", (LIBRARY + r"libholdfast_sketch\.so\.0\.2",
                                       LIBRARY + r"libholdfast_sketch\.so\.[\d.]+"), False),
    "sketch_development": ("libholdfast-sketch-dev",
                           (LIBRARY + r"libholdfast_sketch\.so", LIBRARY + r"pkgconfig/holdfast-sketch\.pc",
                            LIBRARY + r"cmake/HoldfastSketch/HoldfastSketchConfig\.cmake",
                            LIBRARY + r"cmake/HoldfastSketch/HoldfastSketchTargets\.cmake",
                            r"usr/include/holdfast/sketch/Session\.h", r"usr/include/holdfast/editing/Edit\.h",
                            r"usr/share/doc/holdfast-sketch/sketch\.md",
                            r"usr/share/doc/holdfast-sketch/examples/first_edit\.cpp"), True),
    "program": ("holdfast", (r"usr/bin/holdfast", r"usr/share/bash-completion/completions/holdfast"), False),
}


def make(build, debs, components):
    shutil.rmtree(debs, ignore_errors=True)
    installed.run("cpack", "-G", "DEB", "--config", build / "CPackConfig.cmake", "-B", debs, "-D",
                  "CPACK_COMPONENTS_ALL=" + ";".join(components))
    return {path.name.split("_")[0]: path for path in debs.glob("*.deb")}


def files_of(deb):
    listing = installed.run("dpkg-deb", "--contents", deb).splitlines()
    return {line.split()[5].removeprefix("./") for line in listing if not line.startswith("d")}


def faults_of(package, files, patterns, may_hold_others):
    for pattern in patterns:
        if not any(re.fullmatch(pattern, file) for file in files):
            yield f"{package} lacks {pattern}"
    for file in sorted(files):
        if not may_hold_others and not any(re.fullmatch(pattern, file) for pattern in patterns):
            yield f"{package} holds {file}, which is not expected there"


def look_at(debs, components, root):
    faults, everything = [], []
    for component in components:
        package, patterns, may_hold_others = PACKAGES[component]
        if package not in debs:
            faults.append(f"{package} was not made; there are: {', '.join(sorted(debs))}")
            continue
        files = files_of(debs[package])
        if component == "development":
            patterns += tuple(rf"usr/include/holdfast/(?:\w+/)+{name}\.h"
                              for name in (root / "docs/exported-classes.txt").read_text().split())
        faults += faults_of(package, files, patterns, may_hold_others)
        everything += files
    faults += [f"in two packages: {file}" for file in sorted(set(everything)) if everything.count(file) > 1]
    return faults


def main(root, build, work, program, compiler, *flags):
    installed.need("dpkg-deb", "file", "pkg-config")
    built = {name: (build / f"lib/libholdfast_{name}.so").exists() for name in ("solver", "sketch")}
    built["program"] = program.exists()
    components = [name for name in PACKAGES if built.get(name.removesuffix("_development"), True)]
    debs = make(build, work / "debs", components)
    if faults := look_at(debs, components, root):
        sys.exit("\n".join(faults))
    unpacked = work / "unpacked"
    shutil.rmtree(unpacked, ignore_errors=True)
    for deb in debs.values():
        installed.run("dpkg-deb", "--extract", deb, unpacked)
    installed.pkgconfig(root, build, work, compiler, *flags, prefix="unpacked/usr")
    if program.exists():
        installed.run(unpacked / "usr/bin/holdfast", "--help")
    print(f"{len(debs)} packages hold what they should")


if __name__ == "__main__":
    main(*(pathlib.Path(path).resolve() for path in sys.argv[1:5]), *sys.argv[5:])
