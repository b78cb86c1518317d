#!/usr/bin/env python3
"""Checks that every header compiles by itself.

Usage: headers.py ROOT COMPILER [INCLUDE FOLDER ...]

Further include folders are those that only the build has, such as the names that the solver's headers are installed
under.
"""
import concurrent.futures
import os
import pathlib
import subprocess
import sys

FOLDERS = ("host", "module", "geometry", "solver", "document", "formats", "inference", "hosting", "editing", "report",
           "sketch", "apps")
ROOTS = (".", "module", "host/include")
LIBRARIES = ("/usr/include/eigen3", "/usr/include/opencascade")


def check(root, compiler, folders, header):
    included = [f"-I{root / folder}" for folder in ROOTS] + [f"-I{folder}" for folder in folders]
    included += [f"-isystem{folder}" for folder in LIBRARIES]
    command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", *included, "-include", str(header),
               "-x", "c++", os.devnull]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    return header, result.returncode, result.stderr


def main(root, compiler, *folders):
    headers = [path for folder in FOLDERS for path in sorted((root / folder).rglob("*.h"))]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for header, code, text in pool.map(lambda path: check(root, compiler, folders, path), headers):
            if code or text:
                failed += 1
                print(f"{header.relative_to(root)} does not compile by itself:\n{text}")
    print(f"{len(headers) - failed} of {len(headers)} headers compile by themselves")
    return 1 if failed or not headers else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), *sys.argv[2:]))
