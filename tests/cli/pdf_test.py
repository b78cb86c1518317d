#!/usr/bin/env python3
"""Pages of PDF as other programs see them: one page of the right size, drawn as the picture is, no image in it.

Usage: pdf_test.py PROGRAM FOLDER_OF_DRAWINGS
Needs poppler's programs, qpdf and rsvg-convert, which are told and left out (exit code 77) where they are missing.
"""
import io
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

from PIL import Image, ImageChops, ImageFilter

sys.dont_write_bytecode = True
from corner import InAFolder, constraint, drawing, line  # noqa: E402

PROGRAM, DRAWINGS = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
BRACKET = DRAWINGS / "mounting-bracket.json"
JUDGES = ("pdfinfo", "pdftotext", "pdffonts", "pdfimages", "pdftoppm", "qpdf", "rsvg-convert")
DONE, NOT_WRITTEN, SKIPPED = 0, 2, 77
POINTS = 0.75  # of a page in a pixel of a picture


def told(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True).stdout


class Pages(InAFolder):
    def run_it(self, *arguments, expected=DONE, environment=None, text=True):
        done = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=text, cwd=self.path, check=False,
                              env={**os.environ, **(environment or {})})
        self.assertEqual(done.returncode, expected, done.stderr)
        return done

    def sizes(self, page):
        """In points; the page is the only one."""
        said = told("pdfinfo", page).decode()
        self.assertRegex(said, r"Pages: +1\n")
        return tuple(map(float, re.search(r"Page size: +([0-9.]+) x ([0-9.]+) pts", said).groups()))

    def is_a_drawn_page(self, page):
        """Sound, of lines and letters, and with nothing of when and where it was made."""
        told("qpdf", "--check", page)
        self.assertEqual(len(told("pdfimages", "-list", page).splitlines()), 2, "no image, only the table's head")
        plain = told("qpdf", "--qdf", "--object-streams=disable", page, "-")
        for trace in (b"/CreationDate", b"/ModDate", b"/Author", os.fsencode(self.path), os.uname().nodename.encode()):
            self.assertNotIn(trace, plain)
        for font in told("pdffonts", page).decode().splitlines()[2:]:
            self.assertRegex(font, r" yes +yes +yes +\d+ +\d+$", "part of the type comes along, and its letters are known")

    def looks_like(self, page, picture):
        """Ink of one within a pixel of ink of the other, both ways."""
        size = [round(length / POINTS * 2) for length in self.sizes(page)]
        one = told("pdftoppm", "-singlefile", "-scale-to-x", size[0], "-scale-to-y", size[1], page)
        other = told("rsvg-convert", "-w", size[0], "-h", size[1], "-b", "white", picture)
        one, other = (Image.open(io.BytesIO(image)).convert("L") for image in (one, other))
        self.assertEqual(one.size, other.size)
        for a, b in ((one, other), (other, one)):
            missing = ImageChops.subtract(a.filter(ImageFilter.MinFilter(3)), b).point(lambda v: 255 * (v > 100))
            self.assertEqual(missing.getbbox(), None, f"{page} and {picture}")
        self.assertGreater(sum(one.histogram()[:128]), 1000, "there is ink")

    def test_a_picture_is_a_page_that_looks_the_same(self):
        for name in ("mounting-bracket.json", "battery-clip.json", "acrylic-case-top.dxf", "keyboard-rim.json"):
            self.run_it("show", DRAWINGS / name, "-o", "page.pdf", "--ids")
            self.run_it("show", DRAWINGS / name, "-o", "picture.svg", "--ids")
            picture = (self.path / "picture.svg").read_text()
            width, height = map(float, re.search(r'width="([0-9.]+)" height="([0-9.]+)"', picture).groups())
            for found, drawn in zip(self.sizes(self.path / "page.pdf"), (width, height)):
                self.assertAlmostEqual(found, drawn * POINTS, delta=0.01)
            self.is_a_drawn_page(self.path / "page.pdf")
            self.looks_like(self.path / "page.pdf", self.path / "picture.svg")

    def test_texts_and_values_can_be_searched(self):
        text = {"id": "t", "type": "text", "position": [1, 3], "height": 1, "rotation": 0, "text": "Ölwanne <6>"}
        plate = drawing([line("a", (0, 0), (10.125, 0)), text], [constraint("c", "distance", ("a", "whole"), value=10.125)])
        self.file("plate.json", {**plate, "name": "Ölwanne & Deckel"})
        self.run_it("show", "plate.json", "-o", "page.pdf", "--ids")
        words = told("pdftotext", self.path / "page.pdf", "-").decode()
        for word in ("Ölwanne <6>", "10.125", "a"):
            self.assertIn(word, words)
        self.assertRegex(told("pdfinfo", self.path / "page.pdf").decode(), r"Title: +Ölwanne & Deckel\n")

    def test_before_and_after_are_one_page(self):
        self.run_it("edit", BRACKET, "lengthen base end by 12", "--picture", "page.pdf")
        self.run_it("edit", BRACKET, "lengthen base end by 12", "--picture", "picture.svg")
        self.is_a_drawn_page(self.path / "page.pdf")
        self.looks_like(self.path / "page.pdf", self.path / "picture.svg")
        self.assertIn("Before", told("pdftotext", self.path / "page.pdf", "-").decode())

    def test_a_drawing_goes_out_in_true_size(self):
        self.file("plate.json", drawing([line("a", (0, 0), (180, 0)), line("b", (180, 0), (180, 90))], []))
        self.run_it("convert", "plate.json", "plate.pdf")
        margin = 2 * (180 ** 2 + 90 ** 2) ** 0.5 / 450
        for found, length in zip(self.sizes(self.path / "plate.pdf"), (180, 90)):
            self.assertAlmostEqual(found, (length + margin) * 72 / 25.4, delta=0.01)
        self.is_a_drawn_page(self.path / "plate.pdf")
        commands = told("qpdf", "--qdf", self.path / "plate.pdf", "-").decode(errors="replace")
        starts = re.findall(r"([0-9.]+) ([0-9.]+) m\s+([0-9.]+) ([0-9.]+) l", commands)
        self.assertEqual(len(starts), 2, "each line is a line")
        scale = [float(number) for number in re.search(r"^([0-9.]+) 0 0 -?([0-9.]+) ", commands, re.M).groups()]
        length = abs(float(starts[0][2]) - float(starts[0][0])) * scale[0]
        self.assertAlmostEqual(length * 25.4 / 72, 180, delta=0.002, msg="of its length")
        self.assertEqual(self.run_it("convert", "plate.json", "-", "--to", "pdf", text=False).stdout,
                         (self.path / "plate.pdf").read_bytes())

    def test_the_same_drawing_gives_the_same_page(self):
        self.run_it("show", BRACKET, "-o", "one.pdf")
        self.run_it("show", BRACKET, "-o", "two.pdf", environment={"TZ": "Asia/Tokyo", "SOURCE_DATE_EPOCH": "1000000000"})
        self.assertEqual((self.path / "one.pdf").read_bytes(), (self.path / "two.pdf").read_bytes())

    def test_what_is_no_page_is_refused(self):
        wide = drawing([line("a", (0, 0), (8, 1))], [])
        self.file("wide.json", {**wide, "units": {"length": "m", "angle": "rad"}})
        refused = self.run_it("convert", "wide.json", "wide.pdf", "--json", expected=NOT_WRITTEN)
        self.assertEqual(json.loads(refused.stdout)["error"]["code"], "not_written")
        self.assertIn("5.08 m at most", refused.stderr)
        self.assertFalse((self.path / "wide.pdf").exists())
        self.run_it("show", "wide.json", "-o", "wide.pdf")
        self.assertEqual(max(self.sizes(self.path / "wide.pdf")), 720)
        read = self.run_it("show", "wide.pdf", expected=NOT_WRITTEN)
        self.assertIn("a drawing whose name ends in .json, .dxf, .svg or .slvs", read.stderr)

    def test_without_the_library_it_is_told_what_is_missing(self):
        (self.path / "hidden").mkdir()
        (self.path / "hidden" / "librsvg-2.so.2").write_text("no library")
        refused = self.run_it("show", BRACKET, "-o", "page.pdf", expected=NOT_WRITTEN,
                              environment={"LD_LIBRARY_PATH": str(self.path / "hidden")})
        self.assertIn("librsvg", refused.stderr)
        self.assertFalse((self.path / "page.pdf").exists())
        self.run_it("show", BRACKET, "-o", "page.svg", environment={"LD_LIBRARY_PATH": str(self.path / "hidden")})


if __name__ == "__main__":
    missing = [judge for judge in JUDGES if not shutil.which(judge)]
    if missing:
        print(f"skipped: there is no {', '.join(missing)}; install poppler-utils, qpdf and librsvg2-bin", file=sys.stderr)
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])
