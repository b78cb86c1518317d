#!/usr/bin/env python3
"""Checks that the tutorial shows the program that is built and what it prints, and names calls that there are.

Usage: tutorial.py ROOT
"""
import pathlib
import re
import sys


def blocks(text):
    """The language and the text of each code block."""
    return re.findall(r"^```(\w*)\n(.*?)^```$", text, re.M | re.S)


def declarations(headers, centre):
    """A class's header and those of the classes above it."""
    text = headers[centre]
    base = re.search(rf"\b{centre} : public (\w+)", text)
    return text + (declarations(headers, base.group(1)) if base and base.group(1) in headers else "")


def rows_of_calls(tutorial):
    """The class names and the calls of each row of the table of commands."""
    for row in re.findall(r"^\| [A-Za-z, ]+ \| (`\w+`.*?) \| (.*) \|$", tutorial, re.M):
        yield tuple(re.findall(r"`(\w+)`", cell) for cell in row)


def main(root):
    tutorial = (root / "docs/tutorial-host.md").read_text()
    consumer = root / "examples/consumer"
    programs = "".join((consumer / name).read_text() for name in ("main.cpp", "polyline.cpp"))
    sources = {"cpp": programs, "cmake": (consumer / "CMakeLists.txt").read_text()}
    faults, shown = [], 0
    for language, text in blocks(tutorial):
        if language in sources:
            shown += 1
            if text not in sources[language]:
                faults.append(f"shown, but not in examples/consumer:\n{text}")
    texts = [text for _, text in blocks(tutorial)]
    faults += [f"not shown as it is: {file}" for file in consumer.glob("expected*.txt")
               if file.read_text() not in texts]

    headers = {path.stem: path.read_text() for folder in ("core", "commands", "drag", "evaluation")
               for path in (root / "module" / folder).rglob("*.h")}
    rows = list(rows_of_calls(tutorial))
    for centres, calls in rows:
        for centre in centres:
            known = declarations(headers, centre)
            faults += [f"{centre} has no {call}" for call in calls if f"{call}(" not in known]
    if faults or shown < 5 or len(rows) < 10:
        sys.exit("\n".join(faults) or f"found only {shown} shown pieces and {len(rows)} rows of calls")
    print(f"{shown} pieces and the output are the program's; the calls of {len(rows)} rows are there")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
