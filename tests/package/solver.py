#!/usr/bin/env python3
"""Installs the solver alone, moves it elsewhere, and builds the examples with nothing but what was installed.

Usage: solver.py ROOT BUILD WORK COMPILER [FLAG ...]
Each example prints what its first comment says, built by CMake and by pkg-config. The library asks for nothing but the
standard library and exports nothing but its face.
"""
import os
import pathlib
import re
import shutil
import sys

import installed

EXAMPLES = ("rectangle", "four_bar", "contradiction", "own_residual")
NEEDED = re.compile(r"lib(stdc\+\+|m|gcc_s|c|asan|ubsan|tsan|gcov)\.so|ld-linux")
FACE = re.compile(r"^(?:(?:vtable|typeinfo|typeinfo name|guard variable|non-virtual thunk) (?:for|to) )?(holdfast::solver::(?!detail)|std::|__gnu|void std::|bool std::|.*\bstd::)")


def install(build, work):
    moved, first = work / "solver-prefix", work / "solver-first-prefix"
    for folder in (moved, first):
        shutil.rmtree(folder, ignore_errors=True)
    for component in ("solver", "solver_development"):
        installed.run("cmake", "--install", build, "--prefix", first, "--component", component)
    first.rename(moved)
    return moved


def look_at_library(library):
    needed = re.findall(r"NEEDED.*\[(.*)\]", installed.run("readelf", "-d", library))
    strangers = [name for name in needed if not NEEDED.match(name)]
    if strangers:
        sys.exit(f"{library.name} asks for {', '.join(strangers)}")
    names = [line.split(maxsplit=2)[2] for line in installed.run("nm", "-DC", "--defined-only", library).splitlines()]
    inner = [name for name in names if not FACE.match(name)]
    if inner:
        sys.exit("exported besides the face:\n" + "\n".join(inner[:20]))
    if not any(name.startswith("holdfast::solver::solve(") for name in names):
        sys.exit("the face is not exported")


def headers_compile_alone(prefix, compiler, flags):
    headers = sorted((prefix / "include").rglob("*.h"))
    for header in headers:
        installed.run(compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", *flags,
                      f"-I{prefix / 'include'}", "-include", header, "-x", "c++", os.devnull)
    return len(headers)


def first_comment(source):
    lines = []
    for line in source.read_text().splitlines():
        if not line.startswith("//"):
            break
        if line.startswith("//     "):
            lines.append(line[7:])
    return "\n".join(lines) + "\n"


def compare(root, example, printed):
    said = first_comment(root / f"examples/solver/{example}.cpp")
    if printed != said:
        sys.exit(f"{example} prints:\n{printed}and its first comment says:\n{said}")


def by_cmake(root, prefix, work, compiler, flags):
    build = work / "solver-examples"
    shutil.rmtree(build, ignore_errors=True)
    installed.run("cmake", "-G", "Ninja", "-S", prefix / "share/doc/holdfast-solver/examples", "-B", build,
                  f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_CXX_COMPILER={compiler}",
                  f"-DCMAKE_CXX_FLAGS={' '.join(flags)}")
    installed.run("cmake", "--build", build)
    for example in EXAMPLES:
        compare(root, example, installed.run(build / example))


def by_pkgconfig(root, prefix, work, compiler, flags):
    if not shutil.which("pkg-config"):
        print("pkg-config is missing: not tried")
        return
    libraries = next(prefix.rglob("libholdfast_solver.so")).parent
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries / "pkgconfig"), "LD_LIBRARY_PATH": str(libraries)}
    environment.pop("PKG_CONFIG_LIBDIR", None)
    found = installed.run("pkg-config", "--cflags", "--libs", "holdfast-solver", env=environment).split()
    program = work / "solver-rectangle"
    installed.run(compiler, "-std=c++20", *flags, root / "examples/solver/rectangle.cpp", *found, "-o", program)
    compare(root, "rectangle", installed.run(program, env=environment))


def main(root, build, work, compiler, *flags):
    prefix = install(build, work)
    look_at_library(next(prefix.rglob("libholdfast_solver.so")).resolve(strict=True))
    count = headers_compile_alone(prefix, compiler, flags)
    by_cmake(root, prefix, work, compiler, flags)
    by_pkgconfig(root, prefix, work, compiler, flags)
    print(f"{count} headers and {len(EXAMPLES)} examples need what was installed and nothing else")


if __name__ == "__main__":
    main(*(pathlib.Path(path).resolve() for path in sys.argv[1:4]), *sys.argv[4:])
