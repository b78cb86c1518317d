#!/usr/bin/env python3
"""Runs the program on sketches in FreeCAD documents as a user does.

Usage: program_test.py PROGRAM
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from refused_cheaply import refused_cheaply  # noqa: E402

PROGRAM = sys.argv[1]
DONE, REFUSED = 0, 2

LINE = """<Geometry type="Part::GeomLineSegment"><GeoExtensions count="1"><GeoExtension
 type="Sketcher::SketchGeometryExtension" internalGeometryType="0"
 geometryModeFlags="00000000000000000000000000000000" geometryLayer="0"/></GeoExtensions>
<LineSegment StartX="{}" StartY="{}" StartZ="0" EndX="{}" EndY="{}" EndZ="0"/></Geometry>"""
CONSTRAIN = ('<Constrain Name="{}" Type="{}" Value="{}" First="{}" FirstPos="{}" Second="{}" SecondPos="{}" Third="-2000" '
             'ThirdPos="0" LabelDistance="10" LabelPosition="0" IsDriving="1" IsInVirtualSpace="0" IsActive="1" />')


def sketch(name, label, geometry, constraints):
    def listed(kind, items):
        return f'<{kind} count="{len(items)}">{"".join(items)}</{kind}>'
    return (f'<Object name="{name}"><Properties Count="4">'
            f'<Property name="Constraints" type="Sketcher::PropertyConstraintList">{listed("ConstraintList", constraints)}</Property>'
            f'<Property name="ExpressionEngine" type="App::PropertyExpressionEngine">{listed("ExpressionEngine", [])}</Property>'
            f'<Property name="Geometry" type="Part::PropertyGeometryList">{listed("GeometryList", geometry)}</Property>'
            f'<Property name="Label" type="App::PropertyString"><String value="{label}"/></Property>'
            f'</Properties></Object>\n')


CORNER = ([LINE.format(0, 0, 10, 0), LINE.format(10, 0, 10, 5)],
          [CONSTRAIN.format("", 1, 0, 0, 2, 1, 1), CONSTRAIN.format("", 2, 0, 0, 0, -2000, 0),
           CONSTRAIN.format("height", 6, 5, 1, 0, -2000, 0)])


def text(*sketches):
    names = "".join(f'<Object type="Sketcher::SketchObject" name="{name}" id="1"/>' for name, *_ in sketches)
    return ('<?xml version="1.0" encoding="utf-8"?>\n<Document SchemaVersion="4" ProgramVersion="0.20R" FileVersion="1">\n'
            f'<Objects Count="{len(sketches)}">{names}</Objects>\n<ObjectData Count="{len(sketches)}">\n'
            f'{"".join(sketch(*s) for s in sketches)}</ObjectData>\n</Document>\n')


def write(file, document, packed=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(file, "w", packed) as archive:
        archive.writestr("Document.xml", document)
        archive.writestr("PartShape.brp", "a shape\n" * 1000)
        archive.writestr("thumbnails/Thumbnail.png", bytes(range(256)))


class Program(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.one, self.two = self.folder / "one.FCStd", self.folder / "two.FCStd"
        write(self.one, text(("Sketch", "Corner", *CORNER)))
        write(self.two, text(("Sketch", "Corner", *CORNER), ("Sketch001", "Sketch001", CORNER[0], [])))

    def run_it(self, *arguments, expected=DONE):
        done = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, cwd=self.folder, check=False)
        self.assertEqual(done.returncode, expected, done.stderr)
        return done

    def test_show_lists_the_sketches_of_a_document(self):
        self.assertEqual(self.run_it("show", "two.FCStd").stdout,
                         'two.FCStd: 2 sketches\n'
                         '  Sketch "Corner": 2 entities, 3 constraints, degrees of freedom: 4\n'
                         '  Sketch001: 2 entities, 0 constraints, degrees of freedom: 8\n')
        told = json.loads(self.run_it("show", "two.FCStd", "--json").stdout)
        self.assertEqual(told["sketches"][0], {"name": "Sketch", "label": "Corner", "entities": 2, "constraints": 3,
                                               "degrees_of_freedom": 4})

    def test_a_sketch_is_shown_by_name_or_label(self):
        for name in ("two.FCStd#Sketch", "two.FCStd#Corner", "two.fcstd#Sketch"):
            if not (self.folder / name.split("#")[0]).exists():
                (self.folder / "two.FCStd").rename(self.folder / "two.fcstd")
            self.assertIn("degrees of freedom: 4", self.run_it("show", name).stdout)

    def test_the_only_sketch_of_a_document_needs_no_name(self):
        self.run_it("edit", "one.FCStd", "set height 7", "-o", "out.FCStd")
        fault = self.run_it("edit", "two.FCStd", "set height 7", "-o", "out2.FCStd", expected=REFUSED).stderr
        self.assertIn("one of them: two.FCStd#Sketch or two.FCStd#Sketch001", fault)
        self.assertFalse((self.folder / "out2.FCStd").exists())

    def test_an_edit_writes_a_copy_in_which_the_sketch_alone_is_another(self):
        self.run_it("edit", "two.FCStd#Sketch", "set height 7", "-o", "out.FCStd")
        with zipfile.ZipFile(self.two) as a, zipfile.ZipFile(self.folder / "out.FCStd") as b:
            self.assertEqual(a.namelist(), b.namelist())
            for before, after in zip(a.infolist(), b.infolist()):
                self.assertEqual(before.date_time, after.date_time)
                if before.filename != "Document.xml":
                    self.assertEqual((before.CRC, before.compress_size), (after.CRC, after.compress_size))
            before, after = a.read("Document.xml").decode(), b.read("Document.xml").decode()
        begin, end = '<Object name="Sketch">', '<Object name="Sketch001">'
        self.assertEqual(before.split(begin)[0], after.split(begin)[0])
        self.assertEqual(before.split(end)[1], after.split(end)[1])
        self.assertIn("distance: 1", self.run_it("show", "out.FCStd#Sketch").stdout)
        self.assertIn("degrees of freedom: 8", self.run_it("show", "out.FCStd#Sketch001").stdout)

    def test_nothing_edited_is_a_copy_of_the_file(self):
        self.run_it("convert", "two.FCStd#Sketch", "out.FCStd")
        self.assertEqual(self.two.read_bytes(), (self.folder / "out.FCStd").read_bytes())

    def test_a_document_that_is_not_packed_stays_so(self):
        write(self.one, text(("Sketch", "Corner", *CORNER)), zipfile.ZIP_STORED)
        self.run_it("edit", "one.FCStd", "set height 7", "-o", "one.FCStd")
        with zipfile.ZipFile(self.one) as archive:
            self.assertEqual({info.compress_type for info in archive.infolist()}, {zipfile.ZIP_STORED})

    def test_a_polyline_goes_out_as_lines_told(self):
        told = self.run_it("edit", "one.FCStd", "join g0 g1", "-o", "out.FCStd").stderr
        self.assertIn("g0_2, a polyline, went out as lines and arcs", told)
        self.assertIn("line: 2", self.run_it("show", "out.FCStd#Sketch").stdout)

    def test_a_script_opens_and_saves_sketches(self):
        script = self.folder / "raise.edit"
        script.write_text("open two.FCStd#Sketch\nset height 7\nsave out.FCStd\n")
        self.run_it("run", script)
        self.assertIn("2 sketches", self.run_it("show", "out.FCStd").stdout)

    def test_sketches_become_other_drawings_and_none_of_these_a_document(self):
        self.run_it("convert", "one.FCStd#Sketch", "out.json")
        self.run_it("convert", "one.FCStd#Sketch", "out.dxf")
        fault = self.run_it("convert", "out.json", "new.FCStd", expected=REFUSED).stderr
        self.assertIn("a sketch of a document, of which this becomes a copy", fault)
        self.assertFalse((self.folder / "new.FCStd").exists())

    def test_the_window_writes_no_documents(self):
        self.assertIn("holdfast convert", self.run_it("open", "one.FCStd#Sketch", "--no-browser", expected=REFUSED).stderr)

    def test_bombs_are_refused_before_they_go_off(self):
        bomb = self.folder / "bomb.FCStd"
        # In pieces: what a process begins with is what the one that starts it holds.
        with zipfile.ZipFile(bomb, "w", zipfile.ZIP_DEFLATED) as archive, archive.open("Document.xml", "w") as entry:
            for _ in range(300):
                entry.write(b" " * (1 << 20))
        refused_cheaply(self, PROGRAM, f"{bomb}#Sketch", "says that it is 300 MB long")
        entities = '<!DOCTYPE a [<!ENTITY b "bbbb">' + "".join(
            f'<!ENTITY b{i} "&b{i - 1};&b{i - 1};">' for i in range(1, 60)) + "]>\n<Document>&b59;</Document>"
        write(bomb, entities)
        refused_cheaply(self, PROGRAM, f"{bomb}#Sketch", "a document type")
        write(bomb, "<Document>" + "<a>" * 2000000)
        refused_cheaply(self, PROGRAM, f"{bomb}#Sketch", "nested more than 256 deep")
        bomb.write_bytes(self.one.read_bytes()[:300])
        refused_cheaply(self, PROGRAM, f"{bomb}#Sketch", "no sound archive")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
