#!/usr/bin/env python3
"""Checks that no name is defined with two meanings in one program: what several object files define under one name
must be one thing, for the linker takes any of them.

Usage: names.py BUILD [--bodies]

Reads build.ninja for the objects of each program, and those of them that were built. Compares tables of virtual
functions, type descriptions and variables, which the language fixes to the byte; with --bodies also every inline
function and every instance of a template, by which two classes of one name are told apart that have no virtual
functions. That needs objects that were not optimised: an optimiser may compile one function in two ways.
"""
import collections
import pathlib
import re
import subprocess
import sys

from objects import ObjectFile

LINK = re.compile(r"^build ([^:|\n]+?)(?: \|[^:\n]*)?: (CXX_(?:EXECUTABLE|STATIC_LIBRARY|SHARED_LIBRARY)_LINKER|"
                  r"CMAKE_SYMLINK_LIBRARY)\S*"
                  r"((?: [^|\s]+)*)(?: \|(?!\|)((?: [^|\s]+)*))?(?: \|\|((?: [^|\s]+)*))?", re.M)
PROGRAM = "CXX_EXECUTABLE_LINKER"
FLAGS = re.compile(r"^build (\S+\.o): CXX_COMPILER.*\n(?:  .*\n)*?  FLAGS = (.*)\n", re.M)
# Ours, wherever it stands in a mangled name; the standard library and others keep their own names right.
OURS = re.compile(r"8holdfast|\d(?:Yx|Lv|CYx|Constraint|AssocConstraint)")
# The standard library's functions that may be evaluated by the compiler: g++ 12 writes their two branches or only the
# one that is taken, and which of the two differs from file to file.
EITHER_WAY = re.compile(r"^_ZSt(?:10_Construct|12construct_at)I.*_Variadic_union|_M_deallocate_buckets|^_ZNSt10_HashtableI.*EC[12]E")


class Program:
    def __init__(self, name, objects):
        self.name, self.objects = name, objects  # {path: the flags that let one source give two codes}


def programs_of(build):
    ninja = (build / "build.ninja").read_text()
    links = {output: (kind, " ".join(inputs).split())  # shared libraries come last: they ask for no new link
             for outputs, kind, *inputs in LINK.findall(ninja) for output in outputs.split()}
    flags = {name: tuple(word for word in words.split() if word.startswith(("-fPI", "-fpi", "-fvisibility")))
             for name, words in FLAGS.findall(ninja)}

    def objects_of(output, seen):
        for name in links[output][1]:
            if name in flags:
                yield name
            elif name in links and links[name][0] != PROGRAM and name not in seen:
                seen.add(name)
                yield from objects_of(name, seen)

    return [Program(output, {build / name: flags[name] for name in objects_of(output, set())
                             if (build / name).exists()})
            for output, (kind, _) in links.items() if kind == PROGRAM]


def meanings_of(programs, bodies):
    """{(name, flags): {digest: files}} of everything that the programs define; flags matter to functions alone."""
    meanings = collections.defaultdict(lambda: collections.defaultdict(set))
    for path, flags in {item for program in programs for item in program.objects.items()}:
        for name, is_function, digest in ObjectFile(path).definitions(OURS.search):
            if not is_function or bodies and not EITHER_WAY.search(name):
                meanings[name, flags if is_function else ()][digest].add(path)
    return meanings


def problems_of(programs, bodies):
    """One line for each name that has two meanings in a program."""
    disputed = {name: files for (name, _), files in meanings_of(programs, bodies).items() if len(files) > 1}
    for name, files in sorted(disputed.items()):
        for program in programs:
            groups = [sorted(path.name for path in paths if path in program.objects) for paths in files.values()]
            groups = sorted(group for group in groups if group)
            if len(groups) > 1:
                said = " and otherwise in ".join(", ".join(group[:3]) for group in groups)
                yield f"{demangled(name)}: in {program.name}, one thing in {said}"
                break


def demangled(name):
    return subprocess.run(["c++filt", name], capture_output=True, text=True, check=True).stdout.strip()


def main(build, bodies):
    programs = programs_of(build)
    objects = {path for program in programs for path in program.objects}
    problems = list(problems_of(programs, bodies))
    print("\n".join(problems) if problems else
          f"{len(objects)} objects of {len(programs)} programs: every name has one meaning")
    return 1 if problems or not objects else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), "--bodies" in sys.argv[2:]))
