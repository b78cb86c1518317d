#!/usr/bin/env python3
"""Checks that every header compiles by itself.

Usage: headers.py ROOT [COMPILER]
"""
import concurrent.futures
import os
import pathlib
import subprocess
import sys

FOLDERS = ("host", "module", "geometry", "solver", "document", "formats", "inference", "hosting", "editing", "report",
           "apps")
ROOTS = (".", "module", "host/include", "solver/include")
LIBRARIES = ("/usr/include/eigen3", "/usr/include/opencascade")


def check(root, compiler, header):
    command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", *(f"-I{root / folder}" for folder in ROOTS),
               *(f"-isystem{folder}" for folder in LIBRARIES), "-include", str(header), "-x", "c++", os.devnull]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    return header, result.returncode, result.stderr


def main(root, compiler="g++"):
    headers = [path for folder in FOLDERS for path in sorted((root / folder).rglob("*.h"))]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for header, code, text in pool.map(lambda path: check(root, compiler, path), headers):
            if code or text:
                failed += 1
                print(f"{header.relative_to(root)} does not compile by itself:\n{text}")
    print(f"{len(headers) - failed} of {len(headers)} headers compile by themselves")
    return 1 if failed or not headers else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), *sys.argv[2:3]))
