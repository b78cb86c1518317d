#!/usr/bin/env python3
"""Edits block references of DXF files as a whole and has ezdxf judge what comes out.

Usage: dxf_blocks_test.py PROGRAM
What a reference shows is what ezdxf makes of it; of an edited file no record is another but those of the edited
references, and it has no audit error.
"""
import json
import math
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

import ezdxf
from ezdxf.math import Vec3
from ezdxf.path import make_path

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
PROGRAM = sys.argv[1]
sys.argv[1:] = ["", ""]
from dxf_patch_test import difference, handles, SEED, said  # noqa: E402
sys.argv[1:] = []


def made(version, seed):
    """References of all sorts to blocks of all kinds of curves, between some entities."""
    rng = random.Random(seed)
    document = ezdxf.new(version, setup=True)
    document.layers.new("Cut", dxfattribs={"color": 1})
    part = document.blocks.new("Part", base_point=(1, 2))
    part.add_line((0, 0), (6, 1), dxfattribs={"color": 0})
    part.add_circle((2, 2), 1.5, dxfattribs={"layer": "Cut"})
    part.add_arc((3, 3), 2, 20, 200)
    part.add_arc((3, 3), 2.5, 20, 200, dxfattribs={"extrusion": (0, 0, -1)})
    part.add_point((1, 1))
    part.add_polyline2d([(0, 0, .5), (4, 0, 0), (4, 3, -.8)], format="xyb", close=True)
    if version != "R12":
        part.add_lwpolyline([(0, 5, 0), (4, 5, 1.5), (4, 8, 0)], format="xyb")
        part.add_ellipse((5, 5), (3, 1), .4, .5, 4)
        part.add_rational_spline([(0, 0), (2, 4), (5, 1), (7, 3)], [1, 2, 1, .5])
    group = document.blocks.new_anonymous_block()
    for _ in range(2):
        group.add_blockref("Part", (rng.uniform(-9, 9), rng.uniform(-9, 9)), dxfattribs={
            "rotation": rng.uniform(0, 360), "layer": "Cut"})
    group.add_line((0, 0), (3, 3))
    space = document.modelspace()
    space.add_line((0, 0), (10, 0))
    for number in range(REFERENCES):
        scale = rng.uniform(.5, 3)
        # What is slanted in blocks that stand in each other, the judge does not slant.
        name, other = ("Part", rng.uniform(.5, 3)) if number % 2 == 0 else (group.name, scale)
        reference = space.add_blockref(name, (rng.uniform(-50, 50), rng.uniform(-50, 50)), dxfattribs={
            "rotation": rng.uniform(-360, 360), "color": 3, "xscale": scale * rng.choice([1, -1]),
            "yscale": other * rng.choice([1, -1]), "extrusion": rng.choice([(0, 0, 1), (0, 0, -1)])})
        if number == 3:
            reference.dxf.row_count, reference.dxf.column_count = 2, 3
            reference.dxf.row_spacing, reference.dxf.column_spacing = 7, -11
        if number == 4:
            reference.add_attrib("NAME", "a text", (1, 1), dxfattribs={"height": 2, "rotation": 10})
    space.add_point((5, 5))
    return document


REFERENCES = 6


def flattened(entities, found):
    for entity in entities:
        kind = entity.dxftype()
        if kind == "INSERT":
            for one in entity.multi_insert():
                flattened(one.virtual_entities(), found)
        elif kind == "POINT":
            found.append([Vec3(entity.dxf.location)])
        elif kind == "SPLINE":
            found.append([Vec3(point) for point in entity.flattening(0.01, 16)])
        elif kind not in ("TEXT", "ATTRIB", "ATTDEF"):
            found.append(list(make_path(entity).flattening(0.01)))
    return found


def curves_of(document, kinds):
    return flattened([e for e in document.modelspace() if e.dxftype() in kinds], [])


def distance(point, chains):
    best = math.inf
    for chain in chains:
        for a, b in zip(chain, chain[1:] or chain):
            d = b - a
            square = d.x * d.x + d.y * d.y
            t = 0 if square == 0 else min(1, max(0, ((point.x - a.x) * d.x + (point.y - a.y) * d.y) / square))
            best = min(best, math.hypot(point.x - a.x - t * d.x, point.y - a.y - t * d.y))
    return best


def worst(some, others):
    """How far one of some curves is from the others at most, looked at in a few points each."""
    return max((distance(chain[i], others) for chain in some for i in {0, len(chain) // 3, len(chain) - 1}),
               default=0)


def mirrored(point):
    """In the line through (1, 2) and (4, 3)."""
    x, y = point.x - 1, point.y - 2
    return Vec3(1 + .8 * x + .6 * y, 2 + .6 * x - .8 * y)


def turned(point):
    x, y, c, s = point.x - 1, point.y - 2, math.cos(math.radians(40)), math.sin(math.radians(40))
    return Vec3(1 + c * x - s * y, 2 + s * x + c * y)


EDITS = {
    "move {} by 3.5,-2": lambda p: Vec3(p.x + 3.5, p.y - 2),
    "rotate {} about 1,2 by 40": turned,
    "mirror {} about 1,2 4,3": mirrored,
    "copy {} by 9,9": lambda p: Vec3(p.x + 9, p.y + 9),
    "mirror {} about 1,2 4,3 keep": mirrored,
}


class DxfBlocks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name)

    def run_program(self, *arguments):
        result = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result

    def references(self, file):
        told = json.loads(self.run_program("show", file, "--list", "--json").stdout)
        return [reference["id"] for reference in told["list"]["references"]]

    def judge(self, file):
        document = ezdxf.readfile(file)
        errors = document.audit().errors
        self.assertFalse(errors, [error.message for error in errors])
        return document

    def expect_same(self, ours, theirs, what):
        self.assertLess(worst(theirs, ours), 0.03, what)
        self.assertLess(worst(ours, theirs), 0.03, what)

    def test_a_reference_shows_what_its_block_holds(self):
        for version in ("R12", "R2000", "R2018"):
            file, out = self.path / "a.dxf", self.path / "b.dxf"
            made(version, 3).saveas(file)
            names = self.references(file)
            self.assertEqual(names, [f"insert:{i}" for i in range(REFERENCES)])
            self.run_program("edit", file, "explode " + " ".join(names), "-o", out)
            self.run_program("edit", out, "explode " + " ".join(self.references(out)), "-o", out)
            whole = {"INSERT", "LINE", "POINT"}
            everything = {e.dxftype() for e in ezdxf.readfile(out).modelspace()}
            self.assertNotIn("INSERT", everything)
            self.expect_same(curves_of(self.judge(out), everything), curves_of(ezdxf.readfile(file), whole),
                             version)

    def test_an_edit_of_a_reference_changes_its_own_records(self):
        for version in ("R12", "R2018"):
            file, out = self.path / "a.dxf", self.path / "b.dxf"
            made(version, 7).saveas(file)
            for number, name in list(enumerate(self.references(file)))[1:5:1 if version == "R2018" else 3]:
                before = flattened([ezdxf.readfile(file).modelspace().query("INSERT")[number]], [])
                for edit, moved in EDITS.items():
                    with self.subTest(version=version, edit=edit, name=name):
                        self.run_program("edit", file, edit.format(name), "-o", out)
                        makes = edit.startswith("copy") or edit.endswith("keep")
                        self.expect_edited(file, out, 0 if makes else 1, 1)
                        inserts = self.judge(out).modelspace().query("INSERT")
                        after = flattened([inserts[len(inserts) - 1 if makes else number]], [])
                        self.expect_same(after, [[moved(p) for p in chain] for chain in before], edit)
                self.run_program("edit", file, f"erase {name}", "-o", out)
                self.expect_edited(file, out, 1, 0)
                self.judge(out)

    def expect_edited(self, file, out, gone, come):
        went, came = difference(file.read_bytes(), out.read_bytes())
        self.assertEqual((len(went), len(came)), (gone, come))
        own = handles(out.read_bytes())
        self.assertEqual(len(own), len(set(own)), "a handle is there twice")
        for _, seed in SEED.findall(out.read_bytes()):
            self.assertGreater(int(seed, 16), max(own))

    def test_a_reference_of_a_binary_file_is_moved_in_place(self):
        file, out = self.path / "a.dxf", self.path / "b.dxf"
        made("R2018", 1).saveas(file, fmt="bin")
        self.run_program("edit", file, "move insert:4 by 1,2", "-o", out)
        went, came = difference(said(file.read_bytes()), said(out.read_bytes()))
        self.assertEqual((len(went), len(came)), (1, 1))
        self.assertFalse(ezdxf.readfile(out).audit().errors)

    def test_dimensions_and_hatches_are_drawn(self):
        file, out, picture = self.path / "a.dxf", self.path / "b.dxf", self.path / "a.svg"
        document = ezdxf.new("R2010", setup=True)
        space = document.modelspace()
        space.add_line((0, 0), (10, 0))
        space.add_linear_dim(base=(0, -5), p1=(0, 0), p2=(10, 0)).render()
        hatch = space.add_hatch(color=2)
        hatch.paths.add_polyline_path([(20, 0), (30, 0), (30, 8)])
        edges = hatch.paths.add_edge_path()
        edges.add_arc((40, 0), 5, 0, 180, ccw=False)
        edges.add_line((35, 0), (45, 0))
        edges.add_ellipse((60, 0), (5, 1), .4, 10, 200)
        edges.add_spline(control_points=[(0, 0), (1, 2), (3, 2), (4, 0)], knot_values=[0, 0, 0, 0, 1, 1, 1, 1])
        document.saveas(file)
        told = json.loads(self.run_program("show", file, "--list", "--json", "-o", picture).stdout)
        self.assertEqual(told["references"], {"dimension": 1, "hatch": 1})
        self.assertEqual([part["type"] for part in told["list"]["references"][1]["parts"]],
                         ["polyline", "arc", "line", "elliptical_arc", "spline"])
        drawn = picture.read_text()
        parts = [(reference["id"], part) for reference in told["list"]["references"] for part in reference["parts"]]
        self.assertEqual({part["type"] for _, part in parts if part.get("layer") == "Defpoints"}, {"point"})
        for reference, part in parts:  # what a dimension was measured from is never printed
            expected = self.assertNotIn if part.get("layer") == "Defpoints" else self.assertIn
            expected(f"data-e=\"{part['id']} {reference}\"", drawn)
        self.run_program("edit", file, "draw line 0,9 9,9", "-o", out)
        went, came = difference(file.read_bytes(), out.read_bytes())
        self.assertEqual((len(went), len(came)), (0, 1))
        result = self.run_program("convert", file, self.path / "a.json")
        self.assertIn("1 dimension picture and 1 hatched area were left out: dimension:0, hatch:0\n", result.stderr)


if __name__ == "__main__":
    unittest.main()
