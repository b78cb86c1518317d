#!/usr/bin/env python3
"""Tests of the checks: that they fail where they should, and only there.

Usage: checks_test.py COMPILER
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

import constants
import includes
from names import Program, problems_of

COMPILER = sys.argv.pop()
WITH_LIST = """
template <typename T> struct List {{ T first; T second; void add(T value) {{ second = value; }} }};
namespace holdfast {{ struct Run {{ {member} }}; }}
void {user}(List<holdfast::Run>& list) {{ list.add({{}}); }}
"""
WITH_TABLE = """
namespace holdfast {{ struct Shape {{ virtual void draw() {{}} {more} }}; }}
holdfast::Shape* {user}() {{ return new holdfast::Shape; }}
"""


class Names(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def compiled(self, name, text, *flags):
        source = pathlib.Path(self.folder.name) / f"{name}.cpp"
        source.write_text(text)
        subprocess.run([COMPILER, "-std=c++20", *(flags or ("-O0",)), "-c", source.name, "-o", f"{name}.o"],
                       check=True, cwd=self.folder.name)
        return source.with_suffix(".o")

    def problems(self, *objects, bodies=True):
        return list(problems_of([Program("program", dict.fromkeys(objects, ()))], bodies))

    def test_finds_two_structs_of_one_name(self):
        found = self.problems(self.compiled("one", WITH_LIST.format(member="int length = 0;", user="one")),
                              self.compiled("two", WITH_LIST.format(member="double a = 0, b = 0;", user="two")))
        self.assertTrue(any("List<holdfast::Run>::add" in line and "one.o and otherwise in two.o" in line
                            for line in found), found)

    def test_finds_two_tables_of_virtual_functions_in_optimised_objects(self):
        objects = [self.compiled("one", WITH_TABLE.format(more="", user="one"), "-O2"),
                   self.compiled("two", WITH_TABLE.format(more="virtual void erase() {}", user="two"), "-O2")]
        self.assertTrue(any("vtable for holdfast::Shape" in line for line in self.problems(*objects, bodies=False)))

    def test_is_content_with_one_meaning(self):
        texts = [(name, WITH_LIST.format(member="int length = 0;", user=name)
                  + WITH_TABLE.format(more="", user=f"{name}Shape")) for name in ("one", "two")]
        self.assertEqual(self.problems(*(self.compiled(*text) for text in texts)), [])

    def test_lets_two_programs_differ(self):
        one = self.compiled("one", WITH_LIST.format(member="int length = 0;", user="one"))
        two = self.compiled("two", WITH_LIST.format(member="double a = 0, b = 0;", user="two"))
        programs = [Program("first", {one: ()}), Program("second", {two: ()})]
        self.assertEqual(list(problems_of(programs, True)), [])


class Includes(unittest.TestCase):
    def test_tell_upwards_from_downwards(self):
        rows = (
            ("module/core", "module/core/Reactors.cpp", "host/model/Scene.h", False),
            ("module/core", "module/core/Reactors.cpp", "yxdb/YxDbLine.h", True),
            ("module/core", "module/core/Reactors.cpp", "evaluation/Feed.h", False),
            ("solver", "solver/src/numerics/DenseStep.cpp", "Eigen/Dense", True),
            ("solver", "solver/src/numerics/DenseStep.cpp", "document/Document.h", False),
            ("document", "document/Names.cpp", "Eigen/Dense", False),
            ("document", "document/Names.cpp", "solver/src/solving/Solve.h", False),
            ("geometry", "geometry/Box.h", "Geom2d_Curve.hxx", False),
            ("geometry", "geometry/curves/Lengths.cpp", "Geom2d_Curve.hxx", False),
            ("geometry", "geometry/occ/OpenCascade.cpp", "Geom2d_Curve.hxx", True),
            ("formats", "formats/json/JsonReader.h", "nlohmann/json.hpp", False),
            ("formats", "formats/json/JsonReader.h", "nlohmann/json_fwd.hpp", True),
            ("editing", "editing/Session.cpp", "report/picture/Svg.h", False),
            ("report", "report/picture/Svg.cpp", "editing/Session.h", True),
            ("apps", "apps/cli/Show.cpp", "host/src/HostAccess.h", False),
            ("apps", "apps/cli/Show.cpp", "solver/src/sketch/Measure.h", False),
            ("editing", "editing/aftermath/Aftermath.cpp", "solver/src/sketch/Measure.h", False),
            ("editing", "editing/aftermath/Aftermath.cpp", "hosting/evaluator/SketchFromDocument.h", False),
            ("editing", "editing/aftermath/Aftermath.cpp", "hosting/DocumentSketch.h", True),
            ("hosting", "hosting/evaluator/HostDrag.cpp", "solver/src/dragging/Drag.h", True),
            ("hosting", "hosting/evaluator/HostDrag.cpp", "solver/src/solving/SolverState.h", False),
            ("hosting", "hosting/evaluator/HostDrag.cpp", "hosting/evaluator/HostSketch.h", True),
            ("solver", "solver/src/dragging/Drag.cpp", "solver/src/solving/SolverState.h", True),
            ("host/src", "host/src/HostCall.cpp", "host/src/HostCall.h", True),
        )
        for floor, file, name, allowed in rows:
            self.assertEqual(includes.may_include(floor, file, name), allowed, f"{file} includes {name}")


class Constants(unittest.TestCase):
    ROW = "| `{name}` | src/Rings.cpp | {value} | rings | few | fewer | more | {test} |\n"

    def problems(self, source, *rows):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in (("solver/src/Rings.cpp", source), (constants.PAGE, "".join(rows)),
                               ("tests/RingsTest.cpp", "TEST(Rings, Widen) {}\n")):
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text)
            return list(constants.problems_in(root))

    def row(self, name="kRings", value="2", test="Rings.Widen"):
        return self.ROW.format(name=name, value=value, test=test)

    def test_are_content_with_a_row_for_each(self):
        source = """
            constexpr int kRings = 2;  // not 1e5
            static constexpr double kNear = 1e-4, kFar = 1.0 / 8;
            constexpr int kNone = -1;
            constexpr int rowsOf(int kind) { return 3 * kind; }
            double half(double x) { return 0.5 * x; }
        """
        rows = self.row(), self.row("kNear", "1e-4"), self.row("kFar", "1.0 / 8")
        self.assertEqual(self.problems(source, *rows), [])

    def test_tell_what_is_missing_stale_changed_or_unnamed(self):
        source = "constexpr int kRings = 2;\n"
        rows = (
            ("constant without a row", source, (), "solver/src/Rings.cpp:1: kRings is not explained"),
            ("row without a constant", source, (self.row(), self.row("kGone")), "no constant kGone"),
            ("another value", source, (self.row(value="4"),), "kRings is 2 in solver/src/Rings.cpp:1, not 4"),
            ("a test that is gone", source, (self.row(test="Rings.Shrink"),), "no test Rings.Shrink"),
            ("nothing notices", source, (self.row(test=""),), 'nothing under "noticed by"'),
            ("a number without a name", source + "double f() { return 1e-9; }\n", (self.row(),), "1e-9 has no name"),
        )
        for what, text, lines, expected in rows:
            found = self.problems(text, *lines)
            self.assertTrue(len(found) == 1 and expected in found[0], f"{what}: {found}")


if __name__ == "__main__":
    unittest.main()
