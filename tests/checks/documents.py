#!/usr/bin/env python3
"""Checks that the files and folders that the documents name are there.

Usage: documents.py ROOT

Looked at are links to files, and what stands between backticks and begins with one of our folders.
"""
import pathlib
import re
import sys

FOLDERS = ("apps", "benchmarks", "cmake", "docs", "document", "editing", "examples", "formats", "geometry", "host",
           "hosting", "inference", "module", "report", "scripts", "sketch", "solver", "tests")
LINK = re.compile(r"\]\((?!\w+:|#)([^)#\s]+)")
PATH = re.compile(rf"`((?:{'|'.join(FOLDERS)})/[\w./-]*)`")


def named_in(document, root):
    for number, line in enumerate(document.read_text().splitlines(), 1):
        for match in LINK.findall(line):
            yield number, match, document.parent / match
        for match in PATH.findall(line):
            yield number, match, root / match


def main(root):
    documents = [*sorted(root.glob("*.md")), *sorted((root / "docs").rglob("*.md"))]
    problems, count = [], 0
    for document in documents:
        for number, name, path in named_in(document, root):
            count += 1
            if not path.exists():
                problems.append(f"{document.relative_to(root)}:{number}: there is no {name}")
    print("\n".join(problems) if problems else f"{len(documents)} documents name {count} files and folders that exist")
    return 1 if problems or not count else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
