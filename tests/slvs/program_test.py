#!/usr/bin/env python3
"""Runs the program on SolveSpace files as a user does.

Usage: program_test.py PROGRAM EXAMPLE.slvs
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from refused_cheaply import is_sanitized, refused_cheaply  # noqa: E402

PROGRAM, EXAMPLE = sys.argv[1], pathlib.Path(sys.argv[2]).read_bytes()
DONE, REFUSED = 0, 2

SECOND = b"""Group.h.v=00000003
Group.type=5001
Group.name=lid
Group.activeWorkplane.v=80030000
AddGroup

Entity.h.v=80030000
Entity.type=10000
Entity.point[0].v=80030002
Entity.normal.v=80030001
AddEntity

Entity.h.v=80030001
Entity.type=3010
Entity.actNormal.w=1
AddEntity

Entity.h.v=80030002
Entity.type=2012
AddEntity

"""


class Program(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "hinge.slvs").write_bytes(EXAMPLE)
        (self.folder / "two.slvs").write_bytes(EXAMPLE + SECOND)

    def run_it(self, *arguments, expected=DONE, given=None, timeout=None):
        done = subprocess.run([PROGRAM, *map(str, arguments)], input=given, capture_output=True, cwd=self.folder,
                              check=False, timeout=timeout)
        done.stdout, done.stderr = done.stdout.decode("latin-1"), done.stderr.decode("utf-8")
        self.assertEqual(done.returncode, expected, done.stderr)
        return done

    def drawing(self, file):
        return json.loads((self.folder / file).read_text("utf-8"))

    def test_the_example_is_shown_and_all_of_it_holds(self):
        told = json.loads(self.run_it("show", "hinge.slvs", "--json").stdout)
        self.assertEqual(told["entities"], {"arc": 2, "circle": 1, "line": 3, "point": 2, "spline": 1})
        self.assertEqual(told["broken"], [])
        self.assertEqual(told["degrees_of_freedom"], 12)
        self.assertEqual(self.run_it("show", "hinge.slvs").stderr, "")

    def test_a_sketch_is_converted_and_comes_back_the_same(self):
        self.run_it("convert", "hinge.slvs", "one.json")
        self.run_it("convert", "one.json", "again.slvs")
        self.run_it("convert", "again.slvs", "two.json")
        one, two = self.drawing("one.json"), self.drawing("two.json")
        self.assertEqual(one["constraints"], two["constraints"])
        self.assertEqual([e["id"] for e in one["entities"]], [e["id"] for e in two["entities"]])
        self.assertEqual((self.folder / "again.slvs").read_bytes(), EXAMPLE)

    def test_an_edit_is_written_as_a_new_file_and_that_is_told(self):
        done = self.run_it("edit", "hinge.slvs", "set c00d 9", "-o", "b.slvs")
        self.assertIn("b.slvs: a new file with this sketch alone", done.stderr)
        self.run_it("convert", "b.slvs", "b.json")
        self.assertIn(9, [c.get("value") for c in self.drawing("b.json")["constraints"]])

    def test_every_command_takes_the_form(self):
        self.run_it("solve", "hinge.slvs", "-o", "solved.slvs")
        self.run_it("infer", "hinge.slvs", "-o", "inferred.slvs")
        (self.folder / "script.edit").write_text("open hinge.slvs\nset c00d 9\nsave saved.slvs\n")
        self.run_it("run", "script.edit")
        self.assertTrue((self.folder / "saved.slvs").read_bytes().startswith(b"\xb1\xb2\xb3SolveSpaceREVa\n"))
        done = self.run_it("convert", "-", "-", "--to", "json", given=EXAMPLE)
        self.assertEqual(len(json.loads(done.stdout)["entities"]), 9)
        (self.folder / "nameless").write_bytes(EXAMPLE)
        self.run_it("convert", "nameless", "out.slvs", "--from", "slvs")
        self.assertEqual((self.folder / "out.slvs").read_bytes(), EXAMPLE)

    def test_of_several_sketches_one_is_named(self):
        self.assertEqual(self.run_it("show", "two.slvs").stdout,
                         'two.slvs: 2 sketches\n  g002 "sketch-in-plane": 8 entities, 14 constraints, '
                         'degrees of freedom: 12\n  g003 "lid": 0 entities, 0 constraints, degrees of freedom: 0\n')
        self.run_it("show", "two.slvs#g002", "--list")
        self.run_it("show", "two.slvs#lid")
        self.assertIn("one of them: two.slvs#g002 or two.slvs#g003",
                      self.run_it("edit", "two.slvs", "erase r004", "-o", "b.json", expected=REFUSED).stderr)
        self.assertIn("g002 or g003", self.run_it("show", "two.slvs#g004", expected=REFUSED).stderr)

    def test_what_is_left_out_is_told_by_name(self):
        comment = b"Constraint.h.v=00000030\nConstraint.type=1000\nConstraint.group.v=00000002\nAddConstraint\n"
        (self.folder / "comment.slvs").write_bytes(EXAMPLE + comment)
        self.assertIn("not understood and left out: c030 (comment)",
                      self.run_it("convert", "comment.slvs", "a.json").stderr)
        (self.folder / "text.json").write_text(
            '{"units": {"length": "mm", "angle": "rad"}, "entities": [{"id": "t", "type": "text", "position": [0, 0], '
            '"text": "a", "height": 3, "rotation": 0}], "constraints": []}')
        self.assertIn("a.slvs: left out, since the form does not have them: t (text)",
                      self.run_it("convert", "text.json", "a.slvs").stderr)

    def test_a_polyline_goes_out_as_lines_and_arcs(self):
        (self.folder / "rim.json").write_text(
            '{"units": {"length": "mm", "angle": "rad"}, "entities": [{"id": "p", "type": "polyline", "closed": false, '
            '"vertices": [[0, 0], [9, 0], [9, 4]], "bulges": [0, 1, 0]}], "constraints": []}')
        self.assertIn("p, a polyline, went out as lines and arcs", self.run_it("convert", "rim.json", "a.slvs").stderr)
        self.run_it("convert", "a.slvs", "back.json")
        self.assertEqual([e["type"] for e in self.drawing("back.json")["entities"]], ["line", "arc"])

    def test_a_document_of_another_program_is_not_made_of_it(self):
        self.assertIn("ends in .json or .dxf", self.run_it("convert", "hinge.slvs", "a.FCStd", expected=REFUSED).stderr)

    def test_a_fault_is_told_with_its_line(self):
        (self.folder / "bad.slvs").write_bytes(EXAMPLE.replace(b"Param.val=", b"Param.val=x", 1))
        line = EXAMPLE[:EXAMPLE.index(b"Param.val=")].count(b"\n") + 1
        self.assertIn(f"bad.slvs:{line}: found ", self.run_it("show", "bad.slvs", expected=REFUSED).stderr)

    def test_hostile_files_are_refused_within_a_second_and_200_megabytes(self):
        for name, text in {"long.slvs": b"Param.val=" + b"1" * 70_000_000,
                           "records.slvs": b"".join(b"Param.h.v.=%08x\nAddParam\n" % i for i in range(1, 2_000_000)),
                           "entities.slvs": b"".join(b"Entity.h.v=%08x\nAddEntity\n" % i for i in range(1, 700_000)),
                           "list.slvs": b"Group.remap={\n" + b"1\n" * 30_000_000}.items():
            (self.folder / name).write_bytes(b"\xb1\xb2\xb3SolveSpaceREVa\n" + text)
            refused_cheaply(self, PROGRAM, self.folder / name, seconds=6 if is_sanitized(PROGRAM) else 1)

    def test_a_file_is_read_once(self):
        os.mkfifo(self.folder / "pipe.slvs")
        threading.Thread(target=(self.folder / "pipe.slvs").write_bytes, args=(EXAMPLE,), daemon=True).start()
        self.assertIn("entities", self.run_it("show", "pipe.slvs", timeout=60).stdout)


if __name__ == "__main__":
    os.environ.pop("COLUMNS", None)
    unittest.main(argv=[sys.argv[0]])
