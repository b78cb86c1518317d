#!/usr/bin/env python3
"""Checks that the numbers which the solver's sources chose and those that docs/solver-constants.md explains are the
same, and that what the sources compute with has a name.

Usage: constants.py ROOT

A number is declared as `constexpr double kName = 1e-9;`, in a function as `constexpr double name = 1e-9;`. Marks (-1),
limits of types and parts of pi are no choices.
"""
import pathlib
import re
import sys
from typing import NamedTuple

from keeps import tests_in

PAGE = "docs/solver-constants.md"
FOLDERS = ("solver/src", "solver/include")
SHARED = "geometry/Tolerances.h"
DECLARATION = re.compile(r"^(?P<before>[ \t]*(?:(?:static|inline)\s+)*)constexpr\s+(?P<type>double|int|long|std::size_t)\s+"
                         r"(?P<list>\w+\s*=[^;{]*);", re.M)
NO_CHOICE = re.compile(r"numeric_limits|numbers::|static_cast|=\s*-1$")
LITERAL = re.compile(r"(?<![\w.])(\d+\.\d*(?:e[-+]?\d+)?|\d+e[-+]?\d+)(?![\w.])")
# Halves, doubles and the like, and by file: seconds as milliseconds, a bulge's angle, a text that has no height, and
# kTolerance where users see it.
PLAIN = {"0.0", "0.5", "1.0", "2.0"}
EXPLAINED = {("Reports.cpp", "1e3"), ("Residuals.h", "4.0"), ("SketchData.h", "2.5"), ("Solve.h", "1e-10")}
COLUMNS = ("constant", "file", "value", "unit", "why this value", "half", "twice", "noticed by")


class Constant(NamedTuple):
    name: str
    file: str  # with the folder that it is in
    value: str
    type: str
    path: pathlib.Path
    line: int

    @property
    def key(self):
        return f"{self.file}:{self.name}"


class Row(NamedTuple):
    cells: list
    line: int

    @property
    def key(self):
        return f"{self.cells[1]}:{self.cells[0]}"


def without_comments(text):
    return re.sub(r"//[^\n]*|\"(?:[^\"\\\n]|\\.)*\"", lambda found: " " * len(found.group()), text)


def sources(root):
    found = [path for folder in FOLDERS for path in sorted((root / folder).rglob("*")) if path.suffix in (".h", ".cpp")]
    if any(f'"{SHARED}"' in path.read_text() for path in found):
        found.append(root / SHARED)
    return found


def declared_in(text):
    """Of each declaration: where it is, and its names with their values."""
    for match in DECLARATION.finditer(text):
        parts = [part.strip() for part in re.split(r",(?![^()]*\))", match["list"])]
        yield match, [tuple(piece.strip() for piece in part.split("=", 1)) for part in parts]


def constants_in(root):
    for path in sources(root):
        text = without_comments(path.read_text())
        for match, pairs in declared_in(text):
            line = text.count("\n", 0, match.start("type")) + 1
            for name, value in pairs:
                if not NO_CHOICE.search(f"= {value}"):
                    yield Constant(name, f"{path.parent.name}/{path.name}", value.replace("'", ""), match["type"], path, line)


def unnamed_in(root):
    for path in sources(root):
        text = without_comments(path.read_text())
        text = DECLARATION.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), text)
        for match in LITERAL.finditer(text):
            if match[1] not in PLAIN and (path.name, match[1]) not in EXPLAINED:
                yield path, text.count("\n", 0, match.start()) + 1, match[1]


def rows_in(page):
    for number, line in enumerate(page.read_text().splitlines(), 1):
        cells = [cell.strip().strip("`") for cell in line.strip().strip("|").split("|")]
        if line.startswith("| `") and len(cells) == len(COLUMNS):
            yield Row(cells, number)


def problems_in(root):
    constants, rows = list(constants_in(root)), list(rows_in(root / PAGE))
    explained, tests = {row.key: row for row in rows}, tests_in(root)
    measure = "then `scripts/constants --write {}` measures it"
    for constant in constants:
        where = f"{constant.path.relative_to(root)}:{constant.line}"
        row = explained.get(constant.key)
        if row is None:
            yield (f"{where}: {constant.name} is not explained: give it a row `| `{constant.name}` | "
                   f"{constant.file} | {constant.value} | ...` in {PAGE}; " + measure.format(constant.name))
        elif row.cells[2] != constant.value:
            yield (f"{PAGE}:{row.line}: {constant.name} is {constant.value} in {where}, not {row.cells[2]}: say so, and "
                   "why; " + measure.format(constant.name))
    declared = {constant.key for constant in constants}
    for row in rows:
        if row.key not in declared:
            yield f"{PAGE}:{row.line}: no constant {row.cells[0]} in {row.cells[1]} any more: take the row out"
        for title, cell in zip(COLUMNS, row.cells):
            if not cell:
                yield f"{PAGE}:{row.line}: {row.cells[0]} has nothing under \"{title}\""
        for name in re.findall(r"\b([A-Z]\w+\.[A-Z]\w+)\b", row.cells[-1]):
            if name not in tests:
                yield f"{PAGE}:{row.line}: no test {name}; " + measure.format(row.cells[0])
    for path, line, literal in unnamed_in(root):
        yield (f"{path.relative_to(root)}:{line}: {literal} has no name: declare it as constexpr, with its unit and "
               f"reason, and explain it in {PAGE}")
    if not constants:
        yield "no constants found"


def main(root):
    problems = list(problems_in(root))
    print("\n".join(problems) if problems else f"{len(list(constants_in(root)))} constants of the solver are explained")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
