#!/usr/bin/env python3
"""Compares what the built module exports and what it asks of its host with the committed lists.

Usage: symbols.py exports|imports LIBRARY LIST [--update]

A library named *.dll is read with the tools of mingw-w64, from its tables of exported and imported names.
"""
import re
import subprocess
import sys

# Operations only: which type descriptions are asked for is the compiler's choice and differs with the sanitizers.
HOST = re.compile(r"^(?:Yx|yx|LvEva|AssocConstraintHeader|ConstraintDynamicEdit)\S*.*$")
NOISE = re.compile(r"^(?:(?:vtable|typeinfo|typeinfo name) for )?(?:std::|__gnu|__cxx|__asan|__ubsan|__odr|_init|_fini|operator (?:new|delete)|void std::|bool std::|guard variable)")


def output(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def shared_object_symbols(library, kind):
    for line in output("nm", "-DC", f"--{kind}-only", library).splitlines():
        yield line.split(maxsplit=2 if kind == "defined" else 1)[-1]


def dll_symbols(library, kind):
    dump = output("x86_64-w64-mingw32-objdump", "-p", library)
    if kind == "defined":
        table = dump.split("[Ordinal/Name Pointer] Table")[1].split("\n\n")[0]
        # Type descriptions aside: a DLL exports those of the platform's classes that it casts or throws, too.
        names = re.findall(r"^\t\[ *\d+\] (?!_ZT[IS])(\S+)", table, re.M)
    else:
        names = re.findall(r"^\t[0-9a-f]+\t *\d+  (_Z\S+)", dump, re.M)
    return output("c++filt", text="\n".join(names)).splitlines()


def symbols(library, kind):
    found = dll_symbols(library, kind) if library.endswith(".dll") else shared_object_symbols(library, kind)
    for name in found:
        yield re.sub(r"\[abi:\w+\]", "", name).strip()


def exports(library):
    classes = set()
    for name in symbols(library, "defined"):
        if NOISE.match(name) or name.startswith("__"):
            continue
        name = re.sub(r"^(vtable|typeinfo|typeinfo name) for ", "", name)
        name = re.sub(r"^(non-virtual|virtual) thunk to ", "", name)
        head = re.match(r"[\w~]+(?:<.*?>)?", name)
        classes.add(head.group(0) if head and "::" in name or head and "(" not in name else name)
    return sorted(classes)


def imports(library):
    return sorted({HOST.match(name).group(0) for name in symbols(library, "undefined") if HOST.match(name)})


def main(kind, library, list_file, update=False):
    found = exports(library) if kind == "exports" else imports(library)
    if update:
        with open(list_file, "w", encoding="utf-8") as out:
            out.write("\n".join(found) + "\n")
    with open(list_file, encoding="utf-8") as lines:
        listed = [line.rstrip("\n") for line in lines if line.strip() and not line.startswith("#")]
    added, gone = sorted(set(found) - set(listed)), sorted(set(listed) - set(found))
    for name in added:
        print(f"new, not in {list_file}: {name}")
    for name in gone:
        print(f"listed, but no longer there: {name}")
    if not added and not gone:
        print(f"{len(found)} {kind}, as listed")
    return 1 if added or gone or not found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4], update="--update" in sys.argv[4:]))
