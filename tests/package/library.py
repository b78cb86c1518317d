#!/usr/bin/env python3
"""Installs one of the libraries with what it needs, moves it elsewhere, and builds its examples with nothing but what
was installed.

Usage: library.py NAME ROOT BUILD WORK COMPILER [FLAG ...]
NAME is a row of LIBRARIES. Each example prints what its first comment says, built by CMake and by pkg-config. The
library asks for nothing but what its row names and exports nothing but its face, and its headers include nothing but
one another and the standard library. What its page shows as code stands in the first example.
"""
import os
import pathlib
import re
import shutil
import sys

import installed

SYSTEM = r"lib(stdc\+\+|m|gcc_s|c|asan|ubsan|tsan|gcov)\.so|ld-linux"
OF_A_CLASS = r"^(?:(?:vtable|typeinfo|typeinfo name|guard variable|non-virtual thunk) (?:for|to) )?"
# components to install; libraries that it may ask for; what an exported name may be, and one that must be there;
# its examples, of which the first is the one that pkg-config finds as well.
LIBRARIES = {
    "solver": (("solver", "solver_development"), SYSTEM,
               OF_A_CLASS + r"(holdfast::solver::(?!detail)|std::|__gnu|void std::|bool std::|.*\bstd::)",
               "holdfast::solver::solve(", ("rectangle", "four_bar", "contradiction", "own_residual")),
    "sketch": (("sketch", "sketch_development", "solver_development", "module", "model"),
               SYSTEM + r"|libTK\w+\.so|libholdfast(_host_model)?\.so",
               OF_A_CLASS + r"holdfast::(sketch|geometry|document|editing|formats|report)::",
               "holdfast::sketch::Session::apply(",
               ("first_edit", "edit_file", "infer_plain")),
}


def install(name, components, build, work):
    moved, first = work / f"{name}-prefix", work / f"{name}-first-prefix"
    for folder in (moved, first):
        shutil.rmtree(folder, ignore_errors=True)
    for component in components:
        installed.run("cmake", "--install", build, "--prefix", first, "--component", component)
    first.rename(moved)
    return moved


def look_at_library(library, may_need, face, must_export):
    needed = re.findall(r"NEEDED.*\[(.*)\]", installed.run("readelf", "-d", library))
    strangers = [name for name in needed if not re.match(may_need, name)]
    if strangers:
        sys.exit(f"{library.name} asks for {', '.join(strangers)}")
    names = [line.split(maxsplit=2)[2] for line in installed.run("nm", "-DC", "--defined-only", library).splitlines()]
    inner = [name for name in names if not re.match(face, name)]
    if inner:
        sys.exit("exported besides the face:\n" + "\n".join(inner[:20]))
    if not any(name.startswith(must_export) for name in names):
        sys.exit("the face is not exported")


def headers_stand_alone(prefix, name, compiler, flags):
    others = {"solver", "sketch"} - {name}
    headers = [path for path in sorted((prefix / "include").rglob("*.h")) if path.parent.name not in others]
    for header in headers:
        strangers = re.findall(r'^#include ((?!<\w+>|["<]holdfast/).*)$', header.read_text(), re.M)
        if strangers:
            sys.exit(f"{header} includes {', '.join(strangers)}")
        installed.run(compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", *flags,
                      f"-I{prefix / 'include'}", "-include", header, "-x", "c++", os.devnull)
    return len(headers)


def page_shows_the_example(prefix, name, example):
    """Each piece of C++ that the page shows; it may leave out what stands before and behind."""
    documents = prefix / f"share/doc/holdfast-{name}"
    page, program = (documents / f"{name}.md").read_text(), (documents / f"examples/{example}.cpp").read_text()
    pieces = re.findall(r"^```cpp\n(.*?)^```$", page, re.M | re.S)
    if drifted := [piece for piece in pieces if piece not in program]:
        sys.exit(f"shown in {name}.md, but not in {example}.cpp:\n" + "\n".join(drifted))
    return len(pieces)


def first_comment(source):
    lines = []
    for line in source.read_text().splitlines():
        if not line.startswith("//"):
            break
        if line.startswith("//     "):
            lines.append(line[7:])
    return "\n".join(lines) + "\n"


def compare(root, name, example, printed):
    said = first_comment(root / f"examples/{name}/{example}.cpp")
    if printed != said:
        sys.exit(f"{example} prints:\n{printed}and its first comment says:\n{said}")


def by_cmake(root, name, examples, prefix, work, compiler, flags):
    build = work / f"{name}-examples"
    shutil.rmtree(build, ignore_errors=True)
    installed.run("cmake", "-G", "Ninja", "-S", prefix / f"share/doc/holdfast-{name}/examples", "-B", build,
                  f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_CXX_COMPILER={compiler}",
                  f"-DCMAKE_CXX_FLAGS={' '.join(flags)}")
    installed.run("cmake", "--build", build)
    for example in examples:
        compare(root, name, example, installed.run(build / example))


def by_pkgconfig(root, name, example, prefix, work, compiler, flags):
    if not shutil.which("pkg-config"):
        print("pkg-config is missing: not tried")
        return
    libraries = next(prefix.rglob(f"libholdfast_{name}.so")).parent
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries / "pkgconfig"), "LD_LIBRARY_PATH": str(libraries)}
    environment.pop("PKG_CONFIG_LIBDIR", None)
    found = installed.run("pkg-config", "--cflags", "--libs", f"holdfast-{name}", env=environment).split()
    program = work / f"{name}-{example}"
    installed.run(compiler, "-std=c++20", *flags, root / f"examples/{name}/{example}.cpp", *found, "-o", program)
    compare(root, name, example, installed.run(program, env=environment))


def main(name, root, build, work, compiler, *flags):
    components, may_need, face, must_export, examples = LIBRARIES[name]
    prefix = install(name, components, build, work)
    look_at_library(next(prefix.rglob(f"libholdfast_{name}.so")).resolve(strict=True), may_need, face, must_export)
    count = headers_stand_alone(prefix, name, compiler, flags)
    shown = page_shows_the_example(prefix, name, examples[0])
    by_cmake(root, name, examples, prefix, work, compiler, flags)
    by_pkgconfig(root, name, examples[0], prefix, work, compiler, flags)
    print(f"{count} headers, {len(examples)} examples and {shown} pieces of the page need what was installed and "
          "nothing else")


if __name__ == "__main__":
    main(sys.argv[1], *(pathlib.Path(path).resolve() for path in sys.argv[2:5]), *sys.argv[5:])
