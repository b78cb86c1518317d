#!/usr/bin/env python3
"""Runs EXAMPLE.edit; compares what it prints with EXAMPLE.expected and what its report page says with EXAMPLE.report.

Usage: run_example.py PROGRAM EXAMPLE           answers 1 and shows the difference if one is not as expected
       run_example.py PROGRAM EXAMPLE --update  writes both files instead
"""
import difflib
import html.parser
import pathlib
import re
import subprocess
import sys
import tempfile


class PageText(html.parser.HTMLParser):
    """What a reader sees of a page: a line for each block, the cells of a row side by side."""

    CELLS = {"dd", "td", "th"}
    INLINE = CELLS | {"a", "b", "code", "dt", "em", "span", "strong", "svg", "tspan", "use"}

    def __init__(self, page):
        super().__init__()
        self.text, self.hidden = "", 0
        self.feed(page)

    def handle_starttag(self, tag, attrs):
        self.hidden += tag in ("script", "style")
        self.text += " | " if tag in self.CELLS else "" if tag in self.INLINE else "\n"

    def handle_endtag(self, tag):
        self.hidden -= tag in ("script", "style")
        self.text += "" if tag in self.INLINE else "\n"

    def handle_data(self, data):
        if not self.hidden:
            self.text += re.sub(r"\s+", " ", data)

    def lines(self):
        stripped = (line.strip(" |") for line in self.text.splitlines())
        return "".join(f"{line}\n" for line in stripped if line)


def run(program, script):
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder) / "report.html"
        result = subprocess.run([program, "run", str(script), "--report", str(page)], capture_output=True, text=True,
                                check=False)
        if result.returncode:
            sys.exit(f"{script} was refused with exit code {result.returncode}: {result.stderr}")
        return {".expected": result.stdout, ".report": PageText(page.read_text()).lines()}


def main():
    script, update = pathlib.Path(f"{sys.argv[2]}.edit"), "--update" in sys.argv[3:]
    differs = False
    for suffix, text in run(sys.argv[1], script).items():
        file = script.with_suffix(suffix)
        if update:
            file.write_text(text)
        elif text != (expected := file.read_text()):
            differs = True
            sys.stdout.writelines(difflib.unified_diff(expected.splitlines(True), text.splitlines(True), file.name,
                                                       "what it gives"))
    return int(differs)


if __name__ == "__main__":
    sys.exit(main())
