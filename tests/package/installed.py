#!/usr/bin/env python3
"""Installs what was built into a prefix of its own, moves that elsewhere, and uses it from there as others do.

Usage: installed.py STEP ROOT BUILD WORK [COMPILER [FLAG ...]]
Steps: install     the libraries, headers, CMake and pkg-config files, into WORK/prefix
       headers     the installed headers compile with the installed tree alone: ours each by itself, the platform's,
                   which are the very files of host/include, together
       cmake       examples/consumer by find_package
       pkgconfig   examples/consumer by one line for the compiler
The last two compare what the programs print with examples/consumer/expected*.txt.
"""
import concurrent.futures
import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys

COMPONENTS = ("module", "development", "model", "model_development")
SKIPPED = 77  # what CMakeLists.txt tells ctest


def need(*programs):
    """Ends as skipped where a program is missing that not every system has."""
    for program in programs:
        if not shutil.which(program):
            print(f"skipped: {program} is missing")
            sys.exit(SKIPPED)


def run(*command, **options):
    """Runs a command; where it fails, what it said is all that there is to say."""
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if result.returncode:
        line = " ".join(str(word) for word in command)
        sys.exit(f"{line}\n{result.stdout}{result.stderr}exit code {result.returncode}")
    return result.stdout


def libraries_in(prefix):
    return next(prefix.rglob("libholdfast.so")).parent


def install(root, build, work, *_):
    moved, first = work / "prefix", work / "first-prefix"
    for folder in (moved, first):
        shutil.rmtree(folder, ignore_errors=True)
    for component in COMPONENTS:
        run("cmake", "--install", build, "--prefix", first, "--component", component)
    first.rename(moved)
    library = (libraries_in(moved) / "libholdfast.so").resolve(strict=True)
    soname = re.search(r"SONAME.*\[(.*)\]", run("readelf", "-d", library)).group(1)
    if (library.parent / soname).resolve() != library or not re.fullmatch(r"libholdfast\.so\.\d+", soname):
        sys.exit(f"{library.name} calls itself {soname}, and there is no such link beside it")
    headers = {path.stem for path in (moved / "include").rglob("*.h")}
    missing = [name for name in (root / "docs/exported-classes.txt").read_text().split() if name not in headers]
    if missing:
        sys.exit(f"exported classes without an installed header: {', '.join(missing)}; see cmake/install.cmake")
    named = [path for path in moved.rglob("*.cmake") if str(first) in path.read_text() or str(root) in path.read_text()]
    if named:
        sys.exit(f"not relocatable, names a folder of this machine: {', '.join(str(path) for path in named)}")


def headers(_root, _build, work, compiler, *flags):
    include = work / "prefix/include/holdfast"

    def compile_together(group):
        named = [word for header in group for word in ("-include", header)]
        command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", *flags, f"-I{include}",
                   f"-I{include / 'host'}", *named, "-x", "c++", os.devnull]
        return group, subprocess.run(command, capture_output=True, text=True)

    files, failed = sorted(include.rglob("*.h")), 0
    ours = ("core", "evaluation", "commands", "drag", "host/model")
    platform = [path for path in files if not str(path.relative_to(include)).startswith(ours)]
    groups = [[path] for path in files if path not in platform] + [platform]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for group, result in pool.map(compile_together, groups):
            if result.returncode or result.stderr:
                failed += 1
                print(f"{group[0].relative_to(include)} does not compile:\n{result.stderr}")
    print(f"{len(files)} installed headers: {failed} of {len(groups)} compilations failed")
    sys.exit(1 if failed or len(groups) < 2 or not platform else 0)


def compare(root, printed, file="expected.txt"):
    expected = (root / "examples/consumer" / file).read_text()
    if printed != expected:
        sys.exit("\n".join(difflib.unified_diff(expected.splitlines(), printed.splitlines(), file, "printed",
                                                lineterm="")))
    print(f"prints {file}")


def cmake(root, _build, work, compiler, *flags):
    build = work / "consumer-cmake"
    shutil.rmtree(build, ignore_errors=True)
    run("cmake", "-G", "Ninja", "-S", root / "examples/consumer", "-B", build,
        f"-DCMAKE_PREFIX_PATH={work / 'prefix'}", f"-DCMAKE_CXX_COMPILER={compiler}",
        f"-DCMAKE_CXX_FLAGS={' '.join(flags)}")
    run("cmake", "--build", build)
    compare(root, run(build / "host_command"))
    compare(root, run(build / "host_command_polyline"), "expected-polyline.txt")


def pkgconfig(root, _build, work, compiler, *flags, prefix="prefix"):
    need("pkg-config")
    libraries = libraries_in(work / prefix)
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries / "pkgconfig"), "LD_LIBRARY_PATH": str(libraries)}
    environment.pop("PKG_CONFIG_LIBDIR", None)
    found = run("pkg-config", "--cflags", "--libs", "holdfast", "holdfast-host-model", env=environment).split()
    program = work / f"consumer-{prefix.replace('/', '-')}"
    run(compiler, "-std=c++20", *flags, root / "examples/consumer/main.cpp", *found, "-o", program)
    compare(root, run(program, env=environment))


STEPS = {step.__name__: step for step in (install, headers, cmake, pkgconfig)}

if __name__ == "__main__":
    step, *folders = sys.argv[1:5]
    STEPS[step](*(pathlib.Path(folder).resolve() for folder in folders), *sys.argv[5:])
