#!/usr/bin/env python3
"""Checks that every C++ source is written as clang-format 14 writes it with the project's .clang-format.

Usage: format.py ROOT [--fix] [FILE ...]     without files: all of them
"""
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys

FOLDERS = ("host", "module", "geometry", "solver", "document", "formats", "inference", "hosting", "editing", "report",
           "apps", "tests", "benchmarks", "examples")
VERSION = 14  # others lay a few lines out in another way
SKIPPED = 77  # what CMakeLists.txt tells ctest
AT_ONCE = 20  # files for one process: starting it costs as much as a file does


def formatter():
    for name in (f"clang-format-{VERSION}", "clang-format"):
        if program := shutil.which(name):
            said = subprocess.run([program, "--version"], capture_output=True, text=True, check=True).stdout
            if re.search(rf"version {VERSION}\.", said):
                return program
    return None


def main(root, *words):
    program = formatter()
    if not program:
        print(f"skipped: clang-format {VERSION} is missing")
        return SKIPPED
    named = [pathlib.Path(word) for word in words if not word.startswith("--")]
    files = named or [path for folder in FOLDERS for path in sorted((root / folder).rglob("*"))]
    files = [path for path in files if path.suffix in (".h", ".cpp")]
    how = ["-i"] if "--fix" in words else ["--dry-run", "-Werror"]

    def run(group):
        return subprocess.run([program, "--style=file", *how, *group], capture_output=True, text=True, check=False)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(run, (files[at:at + AT_ONCE] for at in range(0, len(files), AT_ONCE))))
    text = "".join(result.stderr for result in results)
    at_fault = sorted(set(re.findall(r"^(\S+?):\d+:\d+: error: code should be clang-formatted", text, re.M)))
    if any(result.returncode for result in results):
        print("\n".join(f"{path} is not as clang-format writes it" for path in at_fault) or text)
        print("tests/checks/format.py . --fix mends that")
        return 1
    print(f"{len(files)} sources as clang-format writes them")
    return 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), *sys.argv[2:]))
