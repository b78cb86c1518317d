#!/usr/bin/env python3
"""Checks that every KEEP comment names a test that exists: // KEEP: effect (Suite.Test).

Usage: keeps.py ROOT
"""
import pathlib
import re
import sys

FOLDERS = ("host", "module", "geometry", "solver", "document", "formats", "inference", "hosting", "editing", "report",
           "apps")


def tests_in(root):
    """Names of all tests: Suite.Name."""
    tests = set()
    for path in (root / "tests").rglob("*.cpp"):
        text = path.read_text()
        for suite, name in re.findall(r"\b(?:TEST|TEST_F|TEST_P|RC_GTEST_PROP|RC_GTEST_FIXTURE_PROP)\(\s*(\w+),\s*(\w+)", text):
            tests.add(f"{suite}.{name}")
    return tests


def main(root):
    tests = tests_in(root)
    problems, count = [], 0
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            text = path.read_text()
            for match in re.finditer(r"KEEP:((?:[^\n]*\n\s*//)*[^\n]*)", text):
                count += 1
                comment = re.sub(r"\n\s*//+", " ", match.group(1))
                names = re.findall(r"\b([A-Z]\w+\.[A-Z]\w+)\b", comment)
                line = text.count("\n", 0, match.start()) + 1
                if not names:
                    problems.append(f"{path.relative_to(root)}:{line}: KEEP names no test")
                problems += [f"{path.relative_to(root)}:{line}: no test {name}" for name in names if name not in tests]
    print("\n".join(problems) if problems else f"{count} KEEP comments, each pinned by a test that exists")
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
