#!/usr/bin/env python3
"""Reads the dimensions that ezdxf writes, edits what they stand on, and has ezdxf judge what comes out.

Usage: dxf_dimensions_test.py PROGRAM
"""
import json
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

import ezdxf

PROGRAM = sys.argv.pop(1)
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.argv[1:] = [PROGRAM, ""]
from dxf_patch_test import difference, groups  # noqa: E402
sys.argv[1:] = []

VERSIONS = ("R12", "R2000", "R2007", "R2010", "R2018")


def made(version):
    """One dimension of every kind that ezdxf has, on lines and circles; with the value that each has."""
    document = ezdxf.new(version, setup=True)
    space = document.modelspace()
    for ends in (((0, 0), (40, 0)), ((0, 0), (30, 40)), ((100, 0), (100, 70))):
        space.add_line(*ends)
    space.add_circle((200, 0), 5)
    space.add_arc((200, 50), 10, 0, 120)
    kinds = [
        ("distance_x", 40, space.add_linear_dim(base=(0, -5), p1=(0, 0), p2=(40, 0))),
        ("distance_y", 70, space.add_linear_dim(base=(110, 0), p1=(100, 70), p2=(100, 0), angle=90)),
        ("distance", 50, space.add_aligned_dim(p1=(0, 0), p2=(30, 40), distance=3)),
        ("distance_x", 200, space.add_aligned_dim(p1=(0, 0), p2=(200, 0), distance=9)),  # written as turned by 0
        ("diameter", 10, space.add_diameter_dim(center=(200, 0), radius=5, angle=30)),
        ("radius", 10, space.add_radius_dim(center=(200, 50), radius=10, angle=60)),
        ("angle", round(math.atan2(4, 3), 6), space.add_angular_dim_2l(
            base=(9, 5), line1=((0, 0), (40, 0)), line2=((0, 0), (30, 40)))),
        ("angle", round(math.atan2(4, 3), 6), space.add_angular_dim_3p(base=(9, 5), center=(0, 0), p1=(40, 0), p2=(30, 40))),
        ("angle", round(math.tau - math.atan2(4, 3), 6),
         space.add_angular_dim_3p(base=(-9, -5), center=(0, 0), p1=(30, 40), p2=(40, 0))),
        ("distance", 40, space.add_aligned_dim(p1=(30, 40), p2=(30, 0), distance=3)),  # to the line below
    ]
    if version != "R12":
        kinds += [("distance_x", 40, space.add_ordinate_x_dim((40, 0), (5, 9))),
                  ("distance", round(10 * math.radians(120), 6), space.add_arc_dim_cra((200, 50), 10, 0, 120, 4)),
                  ("", 0, space.add_ordinate_y_dim((7, 8), (5, 9)))]
    for _, _, dimension in kinds:
        dimension.render()
    return document, [(kind, value) for kind, value, _ in kinds if kind]


class DxfDimensions(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name)
        self.file, self.out = self.path / "a.dxf", self.path / "b.dxf"

    def run_program(self, *arguments):
        result = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result

    def judge(self, file):
        document = ezdxf.readfile(file)
        errors = document.audit().errors
        self.assertFalse(errors, [error.message for error in errors])
        return document

    def test_dimensions_of_every_kind_measure_the_drawing(self):
        for version in VERSIONS:
            with self.subTest(version=version):
                document, expected = made(version)
                document.saveas(self.file)
                told = self.run_program("show", self.file, "--list", "--json")
                found = json.loads(told.stdout)["list"]
                self.assertEqual([(c["type"], round(c["value"], 6)) for c in found["constraints"]], expected)
                self.assertFalse(any(c.get("driving", True) for c in found["constraints"]))
                pictures = [r for r in found["references"] if r["type"] == "dimension"]
                self.assertEqual([r["measured_by"] for r in pictures if "measured_by" in r],
                                 [c["id"] for c in found["constraints"]])
                if version != "R12":
                    self.assertIn("drawn and not measured: ", told.stderr)
                    self.assertIn("DIMENSION of one coordinate between points in which nothing stands", told.stderr)

    def test_binary_files_have_them_as_well(self):
        document, expected = made("R2018")
        document.saveas(self.file, fmt="bin")
        found = json.loads(self.run_program("show", self.file, "--list", "--json").stdout)["list"]
        self.assertEqual([(c["type"], round(c["value"], 6)) for c in found["constraints"]], expected)
        self.run_program("edit", self.file, "set g0 end 60,0", "-o", self.out)
        first = self.judge(self.out).modelspace().query("DIMENSION")[0]
        self.assertEqual({tuple(first.dxf.defpoint2)[:2], tuple(first.dxf.defpoint3)[:2]}, {(0, 0), (60, 0)})

    def test_a_list_and_a_picture_show_them(self):
        made("R2010")[0].saveas(self.file)
        picture = self.path / "a.svg"
        told = self.run_program("show", self.file, "--list", "-o", picture).stdout
        self.assertRegex(told, r"c0 \(distance_x g0.start g0.end, 40\), measured")
        self.assertIn("dimension:0: dimension, measured by c0", told)
        self.assertIn("(40)", picture.read_text())

    def test_what_is_not_edited_stays_to_the_byte(self):
        for version in VERSIONS:
            made(version)[0].saveas(self.file)
            self.run_program("convert", self.file, self.out)
            self.assertEqual(self.file.read_bytes(), self.out.read_bytes())
            self.run_program("edit", self.file, "set c4 driving", "-o", self.out)
            self.assertEqual(self.file.read_bytes(), self.out.read_bytes())

    def test_one_that_is_made_to_drive_leads_the_drawing_and_its_record(self):
        for version in VERSIONS:
            with self.subTest(version=version):
                made(version)[0].saveas(self.file)
                result = self.run_program("edit", self.file, "set c4 driving", "set c4 14", "-o", self.out)
                self.assertIn("dimensions that have changed are as the file has them: dimension:4", result.stderr)
                space = self.judge(self.out).modelspace()
                self.assertAlmostEqual(space.query("CIRCLE")[0].dxf.radius, 7)
                dimension = space.query("DIMENSION")[4]
                across = dimension.dxf.defpoint - dimension.dxf.defpoint4
                self.assertAlmostEqual(across.magnitude, 14)
                self.assertAlmostEqual(math.degrees(math.atan2(across.y, across.x)) % 180, 30)
                if dimension.dxf.hasattr("actual_measurement"):
                    self.assertAlmostEqual(dimension.dxf.actual_measurement, 14)
                went, came = difference(self.file.read_bytes(), self.out.read_bytes())
                self.assertEqual(sorted(groups(r)[0][1] for r in came), [b"CIRCLE", b"DIMENSION"])
                self.assertEqual(len(went), 2)

    def test_one_of_what_is_erased_stays_and_is_told(self):
        made("R2018")[0].saveas(self.file)
        result = self.run_program("edit", self.file, "erase g3", "-o", self.out)
        self.assertIn("dimensions that the drawing has no more stay as the file has them: dimension:3, dimension:4",
                      result.stderr)
        went, came = difference(self.file.read_bytes(), self.out.read_bytes())
        self.assertEqual(([groups(r)[0][1] for r in went], came), ([b"CIRCLE"], []))
        self.judge(self.out)

    def test_other_forms_have_the_value_and_not_the_picture(self):
        made("R2018")[0].saveas(self.file)
        result = self.run_program("convert", self.file, self.path / "a.json")
        self.assertIn("1 dimension and 12 dimension pictures were left out: dimension:0, dimension:1", result.stderr)
        told = json.loads((self.path / "a.json").read_text())["constraints"]
        self.assertEqual(len(told), 12)


if __name__ == "__main__":
    unittest.main()
