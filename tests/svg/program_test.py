#!/usr/bin/env python3
"""Runs the program on SVG pictures as a user does.

Usage: program_test.py PROGRAM FOLDER_OF_EXAMPLES
"""
import json
import math
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from refused_cheaply import refused_cheaply  # noqa: E402

PROGRAM, EXAMPLES = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
DRAWINGS = EXAMPLES / "drawings"
DONE, REFUSED = 0, 2
COVER = EXAMPLES / "pictures" / "sensor-cover.svg"
SQUARE = '<svg xmlns="http://www.w3.org/2000/svg" width="20mm" height="20mm" viewBox="0 0 20 20">{}</svg>'


class Program(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_it(self, *arguments, stdin="", expected=DONE):
        done = subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, text=True,
                              cwd=self.folder, check=False)
        self.assertEqual(done.returncode, expected, done.stderr)
        return done

    def shapes(self, drawing):
        return json.loads(self.run_it("convert", drawing, "-", "--to", "json").stdout)["entities"]

    def test_show_tells_what_is_in_a_picture_and_what_was_left_out(self):
        done = self.run_it("show", COVER)
        self.assertIn("entities: 28\n  arc: 8\n  circle: 5\n  ellipse: 1\n  line: 12\n  spline: 2", done.stdout)
        self.assertEqual(done.stderr, f"holdfast: {COVER}: not understood and left out: text, g \"Notes\" with display:none\n"
                                      f"holdfast: {COVER}: dropped: stroke-width (2 times)\n")

    def test_a_picture_without_a_unit_is_taken_as_pixels_told(self):
        (self.folder / "plain.svg").write_text('<svg width="96" height="96"><path d="M0 0h96"/></svg>')
        self.assertIn("plain.svg: says no unit of length, and is taken as pixels, 96 an inch",
                      self.run_it("show", "plain.svg").stderr)
        self.assertEqual(self.shapes("plain.svg")[0]["end"][0], 25.4)

    def test_a_picture_comes_from_standard_input(self):
        picture = SQUARE.format('<circle r="3"/>')
        self.assertIn("circle: 1", self.run_it("show", "-", stdin=picture).stdout)
        self.assertIn("circle: 1", self.run_it("show", "-", "--from", "svg", stdin=picture).stdout)
        (self.folder / "picture.xml").write_text(picture)
        self.assertIn("circle: 1", self.run_it("show", "picture.xml", "--from", "svg").stdout)
        self.assertIn(".json, .dxf, .svg or .slvs", self.run_it("show", "picture.xml", expected=REFUSED).stderr)

    def test_a_part_is_inferred_and_edited(self):
        self.run_it("infer", COVER, "-o", "cover.json")
        inferred = json.loads((self.folder / "cover.json").read_text())
        self.assertIn("tangent", {constraint["type"] for constraint in inferred["constraints"]})
        layers = {entity.get("layer") for entity in inferred["entities"]}
        self.assertEqual(layers, {"Cut", "Engraving"})
        self.run_it("edit", "cover.json", "set g8 radius 2", "-o", "edited.json")
        before, after = inferred["entities"], json.loads((self.folder / "edited.json").read_text())["entities"]
        # The screws are equal, so that all four grow; their places stay.
        self.assertEqual([entity["radius"] for entity in after[8:12]], [2.0] * 4)
        self.assertEqual([entity["centre"] for entity in after[8:12]], [entity["centre"] for entity in before[8:12]])

    def test_an_edit_of_a_picture_goes_out_as_another_one(self):
        self.run_it("edit", COVER, "erase g12", "-o", "cover.svg")
        self.assertEqual(len(self.shapes("cover.svg")), len(self.shapes(COVER)) - 1)
        self.run_it("edit", COVER, "erase g12", "-o", "cover.dxf")
        self.assertEqual(self.shapes("cover.dxf")[0]["layer"], "Cut")
        self.run_it("solve", COVER)
        script = self.folder / "cover.edit"
        script.write_text(f"open {COVER}\nfillet g21 g22 radius 1\nsave cover2.json\n")
        self.run_it("run", script)

    def same_numbers(self, one, other, shift, tolerance):
        """Of two entities as JSON, the second one shifted; arcs may begin a turn later, and axes look the other way."""
        for key in ("start", "end", "centre"):
            for a, b, by in zip(one.get(key, []), other.get(key, []), shift):
                self.assertAlmostEqual(a + by, b, delta=tolerance, msg=(one, other))
        for key in ("radius", "ratio"):
            self.assertAlmostEqual(one.get(key, 0.0), other.get(key, 0.0), delta=tolerance, msg=(one, other))
        for key in ("start_angle", "end_angle"):
            apart = math.remainder(one.get(key, 0.0) - other.get(key, 0.0), 2.0 * math.pi)
            self.assertAlmostEqual(apart * one.get("radius", 0.0), 0.0, delta=10.0 * tolerance, msg=(one, other))
        if "major_axis" in one:
            a, b = one["major_axis"], other["major_axis"]
            if one["ratio"] < 0.999:
                self.assertAlmostEqual(abs(a[0] * b[1] - a[1] * b[0]), 0.0, delta=tolerance * 10.0 * math.hypot(*a))
            self.assertAlmostEqual(math.hypot(*a), math.hypot(*b), delta=tolerance)

    def test_our_own_pictures_come_back_as_the_drawing_that_they_show(self):
        for name in ("mounting-bracket.json", "battery-clip.json", "spectacles-case.json", "alarm-clock-marks.json"):
            self.run_it("convert", DRAWINGS / name, "out.svg")
            there = re.findall(r'<path id="([^"]*)"', (self.folder / "out.svg").read_text())
            drawing = [entity for entity in json.loads((DRAWINGS / name).read_text())["entities"]
                       if entity["id"] in there and entity["type"] != "point"]
            self.assertGreater(len(drawing), 5)
            shown = [entity for entity in self.shapes("out.svg") if entity["type"] != "point"]
            # A line without end is shown as far as the picture goes.
            drawing = [{"type": "line"} if entity["type"] == "xline" else entity for entity in drawing]
            self.assertEqual([entity["type"] for entity in drawing], [entity["type"] for entity in shown], name)
            first = next(i for i, entity in enumerate(drawing) if entity["type"] == "line")
            shift = [b - a for a, b in zip(drawing[first]["start"], shown[first]["start"])]
            size = max(abs(number) for entity in shown if entity["type"] == "line" for number in entity["end"])
            for one, other in zip(drawing, shown):
                self.same_numbers(one, other, shift, 3e-6 * size)

    def test_what_a_picture_does_not_hold_is_told_where_it_stands_for_the_drawing(self):
        drawing = {"name": "", "license": "", "units": {"length": "mm", "angle": "rad"},
                   "layers": [{"name": "Cut", "colour": 1}], "parameters": [{"name": "w", "formula": "3", "value": 3}],
                   "entities": [
                       {"id": "g0", "type": "line", "start": [0, 0], "end": [9, 0], "construction": True, "layer": "Cut"},
                       {"id": "r", "type": "ray", "point": [0, 0], "direction": [1, 1]},
                       {"id": "t", "type": "text", "position": [1, 2], "rotation": 0, "height": 2, "text": "one"}],
                   "constraints": [{"id": "c", "type": "horizontal", "refs": [{"entity": "g0", "point": "whole"}]}]}
        (self.folder / "a.json").write_text(json.dumps(drawing))
        common = ("1 constraint was left out", "1 parameter was left out",
                  "left out, since the form does not have it: construction, layers",
                  "lines without end stop where the drawing does: r")
        text = "texts are there to be looked at, and are not read back: t"
        for form, words in (("svg", (*common, text)), ("pdf", common)):
            for command in (("convert", "a.json"), ("edit", "a.json", "move r by 1,0", "-o")):
                said = self.run_it(*command, f"b.{form}").stderr.splitlines()
                self.assertEqual(sorted(said), sorted(f"holdfast: b.{form}: {each}" for each in words))
        self.assertEqual(self.run_it("show", "a.json", "-o", "b.svg").stderr, "", "a picture is none")
        self.assertEqual(self.run_it("convert", COVER, "b.json").stderr.count("left out, since"), 0)

    def test_names_of_colours_mean_what_they_mean_to_others(self):
        try:
            from PIL import ImageColor
        except ImportError:
            self.skipTest("needs PIL, which knows the colours, too")
        names = sorted(set(ImageColor.colormap) - {"rebeccapurple", "black"})
        self.assertEqual(len(names), 146)
        (self.folder / "all.svg").write_text(SQUARE.format("".join(
            f'<path d="M0 0h9" stroke="{name}"/>' for name in names)))
        found = [entity["colour"] for entity in self.shapes("all.svg")]
        self.assertEqual(found, [ImageColor.colormap[name].lower() for name in names])

    def test_circles_of_cubic_pieces_are_circles_told(self):
        quarters = "M9 5C9 7.209 7.209 9 5 9S1 7.209 1 5 2.791 1 5 1 9 2.791 9 5z"
        (self.folder / "round.svg").write_text(SQUARE.format(f'<path d="{quarters}"/>'))
        said = self.run_it("show", "round.svg")
        self.assertIn("circle: 1", said.stdout)
        self.assertEqual(said.stderr, "holdfast: round.svg: read as the arcs that they stand for: 4 cubic pieces\n")

    def pixels(self, picture):
        """Dark or light, of 1000 x 1000."""
        image = subprocess.run(["rsvg-convert", "-w", "1000", "-h", "1000", "-b", "white", picture], check=True,
                               capture_output=True).stdout
        from PIL import Image
        import io
        return Image.open(io.BytesIO(image)).convert("L")

    @unittest.skipUnless(shutil.which("rsvg-convert"), "needs rsvg-convert, which draws pictures on its own")
    def test_another_program_draws_what_was_read_as_it_draws_the_picture(self):
        try:
            from PIL import ImageChops, ImageFilter
        except ImportError:
            self.skipTest("needs PIL, which compares images")
        head = ('<svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm" viewBox="0 0 50 50" fill="none" '
                'stroke="#000000" stroke-width="0.4" stroke-linecap="round" stroke-linejoin="round"><path d="M0 0H50V50H0z"/>')
        for what in (
                '<path d="M5 5a10 6 30 1 1 12 9A4 9-20 0 0 30 30l5-5q5 0 5 5t-8 9c-5 3 1 8-9 6S12 40 8 44z"/>',
                '<g transform="translate(25 20) rotate(25) skewX(30)"><circle r="9"/><rect x="-5" y="-9" width="12" '
                'height="14" rx="3" ry="5"/><path d="M0 0A8 5 20 0 1 9 9"/></g>',
                '<symbol id="s" viewBox="0 0 10 20"><path d="M0 0A10 20 0 0 1 10 20z"/><ellipse cx="5" cy="5" rx="4" '
                'ry="1"/></symbol><use href="#s" x="5" y="5" width="20" height="20"/><use href="#s" '
                'transform="matrix(.5 .2 -.3 .6 30 20)" width="30" height="30"/>',
                '<svg x="10" y="5" width="30" height="20" viewBox="-5 -5 10 10" preserveAspectRatio="xMaxYMid">'
                '<circle r="4" stroke-width=".15"/></svg><g transform="scale(-1 1) translate(-50 30)">'
                '<path d="M10 15A9 9 0 0 0 20 5M25 5a4 8 0 1 0 9 9"/></g>'):
            (self.folder / "in.svg").write_text(head + what + "</svg>")
            self.run_it("convert", "in.svg", "out.svg")
            text = (self.folder / "out.svg").read_text()
            self.assertEqual(text.count("fill=\"none\""), 1)
            # The frame begins in the corner of the page.
            corner = re.search(r'id="g0" d="M([0-9.]+ [0-9.]+)L', text).group(1)
            text = re.sub(r'viewBox="[^"]*"', f'viewBox="{corner} 100 100" stroke-linecap="round"', text, count=1)
            text = re.sub(r'(width|height)="[0-9.]+mm"', r'\1="100mm"', text)
            text = re.sub(r'stroke-width="[^"]*"', 'stroke-width="0.8"', text)
            (self.folder / "out.svg").write_text(text)
            one, other = self.pixels(self.folder / "in.svg"), self.pixels(self.folder / "out.svg")
            # Lines a pixel thinner than those of the other picture lie within them.
            for a, b in ((one, other), (other, one)):
                outside = ImageChops.subtract(b.filter(ImageFilter.MinFilter(5)), a).point(lambda v: 255 * (v > 100))
                self.assertEqual(outside.getbbox(), None, what)

    def test_bombs_are_refused_before_they_go_off(self):
        bomb = self.folder / "bomb.svg"
        bomb.write_text('<!DOCTYPE svg [<!ENTITY b "bbbb">' + "".join(
            f'<!ENTITY b{i} "&b{i - 1};&b{i - 1};">' for i in range(1, 60)) + "]>\n<svg>&b59;</svg>")
        refused_cheaply(self, PROGRAM, bomb, "a document type with definitions of its own")
        bomb.write_text("<svg>" + "<g>" * 1000000 + "</g>" * 1000000 + "</svg>")
        refused_cheaply(self, PROGRAM, bomb, "nested more than 256 deep")
        uses = "".join(f'<g id="u{i}"><use href="#u{i - 1}"/><use href="#u{i - 1}"/></g>' for i in range(1, 60))
        bomb.write_text(f'<svg><defs><circle id="u0" r="1"/>{uses}</defs><use href="#u59"/></svg>')
        refused_cheaply(self, PROGRAM, bomb, "parts in what is used again")
        bomb.write_text("<svg>" + "<g/>" * 3000000 + "</svg>")
        refused_cheaply(self, PROGRAM, bomb, "more than a million elements")
        bomb.write_text('<svg>\n<path d="M0 0L1e999 1"/></svg>')
        refused_cheaply(self, PROGRAM, bomb, 'bomb.svg:2: found the number "1e999" in <path>')


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
