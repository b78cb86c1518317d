#!/usr/bin/env python3
"""Runs the program as a user does: what it prints, what it answers, what it writes.

Usage: cli_test.py PROGRAM FOLDER_OF_DRAWINGS
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM, DRAWINGS = sys.argv[1], pathlib.Path(sys.argv[2])
DONE, UNSOLVED, REFUSED = 0, 1, 2


def line(name, start, end):
    return {"id": name, "type": "line", "start": list(start), "end": list(end)}


def constraint(name, kind, *places, value=None):
    found = {"id": name, "type": kind, "refs": [{"entity": e, "point": at} for e, at in places]}
    if value is not None:
        found["value"] = value
    return found


def drawing(entities, constraints):
    return {"name": "corner", "license": "", "units": {"length": "mm", "angle": "rad"}, "entities": entities, "constraints": constraints}


CORNER = drawing([line("a", (0, 0), (10, 0)), line("b", (10, 0), (10, 5))],
                 [constraint("tie", "coincident", ("a", "end"), ("b", "start")),
                  constraint("level", "horizontal", ("a", "whole"))])


class Program(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = pathlib.Path(self.folder.name)

    def file(self, name, content):
        path = self.path / name
        path.write_text(content if isinstance(content, str) else json.dumps(content))
        return path

    def run_program(self, *arguments):
        result = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=300,
                                check=False)
        self.assertNotIn("\x1b", result.stdout, "colours only on a terminal")
        return result

    def test_solve_mends_a_broken_drawing_and_writes_it(self):
        broken = json.loads(json.dumps(CORNER))
        broken["entities"][1]["start"] = [10, 1]
        out = self.path / "out.json"
        result = self.run_program("solve", self.file("broken.json", broken), "-o", out)
        self.assertEqual(result.returncode, DONE, result.stderr)
        self.assertIn("moved by", result.stdout)
        a, b = json.loads(out.read_text())["entities"]
        self.assertAlmostEqual(a["end"][0], b["start"][0])
        self.assertAlmostEqual(a["end"][1], b["start"][1])

    def test_solve_tells_freedom_and_leaves_a_sound_drawing(self):
        result = self.run_program("solve", self.file("corner.json", CORNER))
        self.assertIn("everything holds as it is", result.stdout)
        self.assertIn("degrees of freedom: 5", result.stdout)

    def test_solve_answers_1_for_a_conflict_and_writes_nothing(self):
        contrary = json.loads(json.dumps(CORNER))
        contrary["constraints"] += [constraint("ten", "distance", ("a", "whole"), value=10),
                                    constraint("nine", "distance", ("a", "whole"), value=9)]
        out = self.path / "out.json"
        result = self.run_program("solve", self.file("contrary.json", contrary), "-o", out)
        self.assertEqual(result.returncode, UNSOLVED)
        self.assertIn("ten (distance a, 10)", result.stdout)
        self.assertIn("nine (distance a, 9)", result.stdout)
        self.assertFalse(out.exists())

    def test_solve_explains_what_is_redundant(self):
        double = json.loads(json.dumps(CORNER))
        double["constraints"].append(constraint("again", "horizontal", ("a", "whole")))
        path = self.file("double.json", double)
        self.assertIn("redundant, harmless: again", self.run_program("solve", path, "--explain").stdout)
        self.assertEqual(json.loads(self.run_program("solve", path, "--json").stdout)["redundant"], ["again"])

    def test_show_names_broken_constraints(self):
        broken = json.loads(json.dumps(CORNER))
        broken["entities"][0]["end"] = [10, 1]
        path = self.file("broken.json", broken)
        self.assertIn("broken constraints: 2", self.run_program("show", path).stdout)
        found = json.loads(self.run_program("show", path, "--json").stdout)
        self.assertEqual([entry["constraint"] for entry in found["broken"]], ["tie", "level"])

    def test_edit_refuses_with_the_constraints_in_the_way(self):
        held = json.loads(json.dumps(CORNER))
        held["constraints"] += [constraint("ten", "distance", ("a", "whole"), value=10),
                                constraint("here", "fixed", ("a", "start"))]
        out = self.path / "out.json"
        result = self.run_program("edit", self.file("held.json", held), "set a end 14,0", "-o", out)
        self.assertEqual(result.returncode, REFUSED)
        self.assertIn("ten (distance a, 10)", result.stderr)
        self.assertFalse(out.exists())

    def test_edit_suggests_a_verb_and_an_entity(self):
        path = self.file("corner.json", CORNER)
        self.assertIn('did you mean "break"', self.run_program("edit", path, "braek a at 1,0").stderr)
        many = self.run_program("edit", DRAWINGS / "battery-clip.json", "break g333 at 1,0")
        self.assertIn("did you mean", many.stderr)

    def test_a_missing_file_is_refused_by_name(self):
        result = self.run_program("show", self.path / "none.json")
        self.assertEqual(result.returncode, REFUSED)
        self.assertIn("none.json", result.stderr)

    def test_a_script_over_several_drawings_ends_in_a_table(self):
        self.file("one.json", CORNER)
        self.file("two.json", CORNER)
        script = self.file("both.edit", "open one.json\nbreak a at 4,0 to 6,0\nsave one-cut.json\n"
                                        "open two.json # the same, refused\nbreak a at 4,9\n")
        result = self.run_program("run", script)
        self.assertEqual(result.returncode, REFUSED)
        rows = [row.split() for row in result.stdout.splitlines()]
        self.assertEqual(rows[1][:3], ["one.json", "1/1", "1"])
        self.assertEqual(rows[2][:2], ["two.json", "0/1"])
        self.assertIn("refused: break a at 4,9", result.stdout)
        self.assertTrue((self.path / "one-cut.json").exists())

    def test_a_real_plain_drawing_is_inferred_solved_and_edited(self):
        folder = os.environ.get("HOLDFAST_DRAWINGS")
        plain = sorted(DRAWINGS.glob("*.dxf"))
        plain += sorted((pathlib.Path(folder).parent / "dxf").glob("*.dxf")) if folder else []
        self.assertGreater(len(plain), 0)
        for path in plain:
            with self.subTest(drawing=path.name):
                inferred, solved = self.path / "inferred.json", self.path / "solved.json"
                self.assertEqual(self.run_program("infer", path, "-o", inferred).returncode, DONE)
                result = self.run_program("solve", inferred, "-o", solved, "--json")
                self.assertEqual(result.returncode, DONE, result.stderr)
                found = json.loads(result.stdout)
                self.assertEqual((found["redundant"], found["conflicts"]), ([], []))
                name = next(entity["id"] for entity in json.loads(solved.read_text())["entities"]
                            if entity.get("start") != entity.get("end", 0))  # some have lines of no length
                edited = self.run_program("edit", solved, f"drag {name} by 0.5,0.25", "-o", self.path / "edited.json")
                self.assertEqual(edited.returncode, DONE, edited.stderr)
                again = json.loads(self.run_program("solve", self.path / "edited.json", "--json").stdout)
                self.assertIn(again["status"], ("unchanged", "solved"))
                self.assertLess(sum(move["distance"] for move in again["movements"]), 1e-6)

    def test_chains_become_polylines_on_request(self):
        out = self.path / "poly.json"
        self.assertEqual(self.run_program("convert", self.file("corner.json", CORNER), out, "--polylines").returncode,
                         DONE)
        self.assertEqual([entity["type"] for entity in json.loads(out.read_text())["entities"]], ["polyline"])

    def test_every_command_has_help_with_an_example(self):
        for command in ("show", "edit", "run", "solve", "convert", "infer"):
            result = self.run_program(command, "--help")
            self.assertEqual(result.returncode, DONE)
            self.assertIn("Example:", result.stdout, command)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
