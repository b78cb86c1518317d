#!/usr/bin/env python3
"""Holds the page of errors against the table of codes in the program, and runs its examples.

Usage: errors_test.py PROGRAM ROOT [--update]

With --update what the examples tell is written into the page.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

PROGRAM, ROOT = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
PAGE = ROOT / "docs" / "errors.md"
EXITS = {"kExitDone": 0, "kExitFaults": 1, "kExitBadInput": 2, "kExitRefused": 3}
TABLE = re.compile(r'ErrorRow\{ErrorCode::\w+, "(\w+)", (\w+)\}')
SECTION = re.compile(r"^## `(\w+)`\n(.*?)(?=^## |\Z)", re.M | re.S)
COMMAND = re.compile(r"^```sh\n(.*?)^```", re.M | re.S)
ANSWER = re.compile(r"^```json\n(.*?)^```", re.M | re.S)
NEEDS_ITS_MEMORY = b"__asan_init"  # a program under this sanitizer does not begin in so little memory


def codes():
    rows = TABLE.findall((ROOT / "apps" / "cli" / "telling" / "ErrorCodes.cpp").read_text())
    return {name: EXITS[exit] for name, exit in rows}


def exits_of_page(text):
    rows = re.findall(r"^\| (\d) \|[^|]*\|([^|]*)\|$", text, re.M)
    return {code: int(exit) for exit, listed in rows for code in re.findall(r"`(\w+)`", listed)}


def answer(command, folder):
    with tempfile.TemporaryDirectory() as bin_folder:
        (pathlib.Path(bin_folder) / "holdfast").symlink_to(PROGRAM)
        return subprocess.run(["sh", "-c", f'PATH="{bin_folder}:$PATH"\n{command}'], cwd=folder, capture_output=True,
                              text=True, check=False, timeout=120)


def main(update):
    text, table = PAGE.read_text(), codes()
    problems = []
    sections = SECTION.findall(text)
    if [name for name, _ in sections] != list(table):
        problems.append(f"the page has sections for {[name for name, _ in sections]}, the program knows {list(table)}")
    if exits_of_page(text) != table:
        problems.append(f"the page's exit codes are {exits_of_page(text)}, the program's {table}")
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "examples").symlink_to(ROOT / "examples")
        for name, section in sections:
            told = ANSWER.search(section)[1]
            command = COMMAND.search(section)
            if command is None:
                if name != "failed" or json.loads(told)["error"]["code"] != name:
                    problems.append(f"{name}: there is no example")
                continue
            if name == "out_of_memory" and NEEDS_ITS_MEMORY in PROGRAM.read_bytes():
                continue
            result = answer(command[1], folder)
            if update:
                text = text.replace(section, section.replace(f"```json\n{told}```", f"```json\n{result.stdout}```"))
            elif result.stdout != told or not result.stderr:
                problems.append(f"{name}: the example tells\n{result.stdout}\nand not\n{told}\n{result.stderr}")
            if result.returncode != table[name] or json.loads(result.stdout)["error"]["code"] != name:
                problems.append(f"{name}: the example ends with {result.returncode}: {result.stdout}{result.stderr}")
    if update:
        PAGE.write_text(text)
    print("\n".join(problems) if problems else f"{len(table)} codes, each with an example")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main("--update" in sys.argv[3:]))
