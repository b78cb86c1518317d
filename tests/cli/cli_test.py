#!/usr/bin/env python3
"""Runs the program as a user does: what it prints, what it answers, what it writes.

Usage: cli_test.py PROGRAM FOLDER_OF_DRAWINGS
"""
import json
import os
import pathlib
import pty
import re
import resource
import shlex
import subprocess
import sys
import unittest

sys.dont_write_bytecode = True
from corner import CORNER, InAFolder, constraint, drawing, line  # noqa: E402

PROGRAM, DRAWINGS = sys.argv[1], pathlib.Path(sys.argv[2])
DONE, UNSOLVED, WRONG, REFUSED = 0, 1, 2, 3  # wrong: use or input; refused: by the drawing
COUNTS = {"entities", "references", "constraints", "added", "totals.constraints", "totals.entities",
          "drawings[].totals.constraints", "drawings[].totals.entities"}  # objects with a number for each kind or fate
ELSEWHERE = {"drawings[].error", "drawings[].constraints", "drawings[].entities"}  # told of under errors and edit


def keys(told, before=""):
    """The keys of an object and of all below it, as docs/json-output.md writes them."""
    found = set()
    for key, value in told.items():
        name = before + key
        below = value if isinstance(value, list) else [value]
        if not isinstance(value, dict) or name in COUNTS | ELSEWHERE:
            found.add(name)
        if name in ELSEWHERE or name in COUNTS and isinstance(value, dict):
            continue
        for each in below:
            if isinstance(each, dict):
                found |= keys(each, name + ("[]." if isinstance(value, list) else "."))
    return found


class Program(InAFolder):
    def run_program(self, *arguments):
        result = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=300,
                                check=False)
        self.assertNotIn("\x1b", result.stdout, "colours only on a terminal")
        return result

    def on_terminal(self, environment, *arguments, watch=lambda told: None):
        """All that the program tells on a terminal of its own, which watch sees grow."""
        child, terminal = pty.fork()
        if child == 0:
            plain = {name: value for name, value in os.environ.items() if name not in ("NO_COLOR", "TERM")}
            os.execve(PROGRAM, [PROGRAM, *map(str, arguments)], {**plain, "TERM": "xterm", **environment})
        told = b""
        try:
            while piece := os.read(terminal, 4096):
                told += piece
                watch(told.decode(errors="replace"))
        except OSError:
            pass  # the program has ended, and its terminal with it
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), DONE)
        return told.decode()

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

    def test_solve_tells_how_near_it_came_where_no_reason_is_known(self):
        # Lines of one length, 10 at one end and 11 at the other: the set is too large to be proven.
        count, lines, constraints = 3000, [], []
        for i in range(count):
            lines.append({"id": f"l{i}", "type": "line", "start": [10 * i, 3 * (i % 2)],
                          "end": [10 * i + 10, 3 * ((i + 1) % 2)]})
            if i > 0:
                constraints += [constraint(f"e{i}", "equal", (f"l{i - 1}", "whole"), (f"l{i}", "whole")),
                                constraint(f"c{i}", "coincident", (f"l{i - 1}", "end"), (f"l{i}", "start"))]
        constraints += [constraint("ten", "distance", ("l0", "whole"), value=10),
                        constraint("eleven", "distance", (f"l{count - 1}", "whole"), value=11)]
        chain = dict(CORNER, entities=lines, constraints=constraints)
        result = self.run_program("solve", self.file("chain.json", chain))
        self.assertEqual(result.returncode, UNSOLVED)
        self.assertRegex(result.stdout,
                         r"no solution was found; where the search ended, \w+ \(.*\) was off by [0-9.e-]+\n")

    def test_solve_lists_each_conflict_once_and_calls_none_of_it_redundant(self):
        contrary = json.loads(json.dumps(CORNER))
        contrary["constraints"].append(constraint("upright", "vertical", ("a", "whole")))
        path = self.file("contrary.json", contrary)
        found = json.loads(self.run_program("solve", path, "--json").stdout)
        self.assertEqual(len(found["conflicts"]), 1, found["conflicts"])
        self.assertIn("upright", found["conflicts"][0])
        self.assertEqual(len(found["conflicts"][0]), 2)
        self.assertEqual(set(found["redundant"]) & set(found["conflicts"][0]), set())
        self.assertEqual(self.run_program("solve", path, "--explain").stdout.count("cannot hold together: "), 1)

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

    def test_pictures_and_reports_never_take_a_drawings_place(self):
        path = self.file("corner.json", CORNER)
        before = path.read_bytes()
        for arguments in (("show", path, "-o", path), ("edit", path, "break a at 4,0", "--report", path),
                          ("edit", path, "break a at 4,0", "--picture", path), ("solve", path, "--report", path)):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, WRONG, arguments)
            self.assertIn("a name that ends in .json; expected a name that ends in", result.stderr)
            self.assertEqual(path.read_bytes(), before)

    def test_files_that_belong_together_are_written_all_or_none(self):
        path, out = self.file("corner.json", CORNER), self.path / "out.json"
        for report in (self.path / "nowhere" / "out.html", self.path / "out.txt", "/dev/full"):
            result = self.run_program("edit", path, "break a at 4,0", "-o", out, "--report", report)
            self.assertEqual(result.returncode, WRONG, result.stderr)
            self.assertEqual(sorted(file.name for file in self.path.iterdir()), ["corner.json"])
        twice = self.run_program("edit", path, "break a at 4,0", "-o", self.path / "a.svg", "--picture",
                                 self.path / "." / "a.svg")
        self.assertIn("one name for two files", twice.stderr)

    def test_a_full_disk_leaves_nothing_behind(self):
        path = self.file("corner.json", CORNER)
        limited = subprocess.run([PROGRAM, "show", path, "-o", self.path / "corner.svg"], capture_output=True, check=False,
                                 preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000)))
        self.assertEqual(limited.returncode, WRONG, limited.stderr)
        self.assertIn(b"the file is as it was", limited.stderr)
        self.assertEqual([file.name for file in self.path.iterdir()], ["corner.json"])

    def test_endings_are_read_in_capital_letters_too(self):
        path = self.file("corner.json", CORNER)
        for name in ("UP.DXF", "UP.JSON", "UP.SVG"):
            self.assertEqual(self.run_program("convert", path, self.path / name).returncode, DONE)
        for name in ("UP.DXF", "UP.JSON"):
            self.assertIn("entities: 2", self.run_program("show", self.path / name).stdout)

    def test_what_a_dxf_file_cannot_hold_is_named_with_its_tolerance(self):
        oval = {"id": "o", "type": "ellipse", "centre": [0, 0], "major_axis": [2, 0], "ratio": 0.5}
        path = self.file("oval.json", dict(drawing([oval, line("a", (0, 0), (1, 1))], [
            constraint("up", "vertical", ("a", "whole"))]), units={"length": "in", "angle": "rad"}))
        result = self.run_program("convert", path, self.path / "oval.dxf", "--tolerance", "0.5")
        self.assertIn("o went out as a polyline of 8 segments, within 0.5 in", result.stderr)
        self.assertIn("1 constraint was left out", result.stderr)
        self.assertIn("numbers are in the unit \"in\", which the file does not say", result.stderr)

    def test_infer_states_its_tolerances_and_makes_no_polylines_redundant(self):
        inferred = self.path / "inferred.json"
        plain = DRAWINGS / "split-keyboard-plate.dxf"
        result = self.run_program("infer", plain, "--polylines", "--tolerance", "0.001", "--angle", "0.01", "-o", inferred)
        self.assertIn("tolerances: 0.001 mm, 0.01 degrees", result.stdout)
        kinds = {entity["type"] for entity in json.loads(inferred.read_text())["entities"]}
        self.assertEqual(kinds, {"polyline"})
        found = json.loads(self.run_program("solve", inferred, "--json").stdout)
        self.assertEqual((found["redundant"], found["redundant_in_part"], found["conflicts"]), ([], [], []))
        told = json.loads(self.run_program("infer", plain, "--json").stdout)
        self.assertEqual(sum(told["added"].values()), 1137)

    def test_infer_says_no_half_of_a_constraint_twice(self):
        grille = json.loads((DRAWINGS / "honeycomb-grille.json").read_text())
        plain, inferred = self.file("plain.json", {**grille, "constraints": []}), self.path / "inferred.json"
        told = json.loads(self.run_program("infer", plain, "-o", inferred, "--json").stdout)
        # Rows of slanted edges that are known to be parallel need a common point only.
        self.assertEqual((told["added"]["collinear"], told["added"]["point_on_curve"]), (43, 10))
        found = json.loads(self.run_program("solve", inferred, "--json").stdout)
        self.assertEqual((found["redundant"], found["redundant_in_part"], found["conflicts"]), ([], [], []))
        self.assertEqual(found["degrees_of_freedom"], 45)

    def test_infer_makes_nothing_that_cannot_hold(self):
        # Within this tolerance the upper line is level, but its ends are fixed at two heights.
        nearly = drawing([line("a", (0, 0), (100, 0)), line("b", (100, 0), (100, 60)), line("c", (100, 60), (0, 60.03)),
                          line("d", (0, 60.03), (0, 0))],
                         [constraint(n + at, "fixed", (n, at))
                          for n in "ac" for at in ("start", "end")])
        out = self.path / "out.json"
        result = self.run_program("infer", self.file("nearly.json", nearly), "--tolerance", "0.05", "--angle", "1", "-o", out)
        self.assertEqual(result.returncode, DONE, result.stderr)
        self.assertIn("cannot hold exactly beside these: 1", result.stdout)
        found = json.loads(self.run_program("solve", out, "--json").stdout)
        self.assertEqual((found["status"], found["redundant"]), ("unchanged", []))

    def test_infer_adds_nothing_to_a_contradiction(self):
        contrary = json.loads(json.dumps(CORNER))
        contrary["constraints"] += [constraint("ten", "distance", ("a", "whole"), value=10),
                                    constraint("nine", "distance", ("a", "whole"), value=9)]
        out = self.path / "out.json"
        result = self.run_program("infer", self.file("contrary.json", contrary), "-o", out)
        self.assertEqual(result.returncode, UNSOLVED)
        self.assertIn("its own constraints cannot hold together", result.stderr)
        self.assertFalse(out.exists())

    def test_tolerances_without_a_meaning_are_refused(self):
        path, out = self.file("corner.json", CORNER), self.path / "out.dxf"
        for option, value in (("--tolerance", "-1"), ("--tolerance", "nan"), ("--angle", "-1"), ("--angle", "60")):
            result = self.run_program("infer", path, option, value)
            self.assertEqual(result.returncode, WRONG, (option, value))
            self.assertIn(option, result.stderr)
        for value in ("0", "-1", "inf"):
            result = self.run_program("convert", path, out, "--tolerance", value)
            self.assertEqual((result.returncode, out.exists()), (WRONG, False), value)
            self.assertIn(f"--tolerance: found {value}; expected a length", result.stderr)

    def test_a_drawing_without_a_name_is_called_by_its_file(self):
        path = self.file("corner.json", {**CORNER, "name": ""})
        self.assertTrue(self.run_program("show", path).stdout.startswith("corner\n"))
        for command in ("show", "solve", "infer"):
            self.assertEqual(json.loads(self.run_program(command, path, "--json").stdout)["drawing"], "corner")

    def test_a_file_named_in_another_encoding_gives_a_readable_drawing(self):
        plain = os.path.join(os.fsencode(self.path), b"B\xfcgel.dxf")
        with open(plain, "w") as file:
            file.write("0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n1\n20\n2\n0\nENDSEC\n0\nEOF\n")
        out = self.path / "out.json"
        for command in (["show", plain, "--json"], ["infer", plain, "--json", "-o", str(out)]):
            result = subprocess.run([PROGRAM, *command], capture_output=True, check=False)
            self.assertEqual(json.loads(result.stdout)["drawing"], "B\u00fcgel", result.stderr)
        self.assertEqual(json.loads(out.read_text())["name"], "B\u00fcgel")

    def test_a_missing_file_is_refused_by_name(self):
        result = self.run_program("show", self.path / "none.json")
        self.assertEqual(result.returncode, WRONG)
        self.assertIn("none.json", result.stderr)

    def test_a_script_is_read_as_editors_on_other_systems_write_it(self):
        self.file("my plate.json", CORNER)
        script = self.path / "cut.edit"
        script.write_bytes(b"\xef\xbb\xbf# a cut\r\nopen my plate.json\t# with a blank\r\n\r\n\tbreak\ta at 4,0\t# here\r\n"
                           b"save \"my cut.json\"\r\n")
        result = self.run_program("run", script, "--json")
        self.assertEqual(result.returncode, DONE, result.stderr)
        self.assertEqual([edit["text"] for edit in json.loads(result.stdout)["edits"]], ["break\ta at 4,0"])
        self.assertTrue((self.path / "my cut.json").exists())

    def test_a_script_may_name_drawings_anywhere(self):
        path = self.file("corner.json", CORNER)
        (self.path / "scripts").mkdir()
        script = self.file("scripts/cut.edit", f"open {path}\nbreak a at 4,0\nsave ../cut.json\n")
        self.assertEqual(self.run_program("run", script).returncode, DONE)
        self.assertTrue((self.path / "cut.json").exists())

    def test_errors_of_a_script_name_its_line(self):
        self.file("one.json", CORNER)
        for text, line, said in (("opn one.json\n", 1, 'did you mean "open"?'), ("\nbreak a at 4,0\n", 2, "open DRAWING"),
                                 ("open one.json\n\nudno\n", 3, 'did you mean "undo"?'),
                                 ("open one.json\nrdeo\n", 2, 'did you mean "redo"?'), ("open\n", 1, "expected the name"),
                                 ("open one.json\nties of\n", 2, 'expected on or off; did you mean "off"?'),
                                 ("open one.json\nsave x.json\nundo\n", 3, "saved already"),
                                 ("open one.json\nsave x.json\nsave y.json\n", 3, "saved already"),
                                 ("open one.json\nbreak a at 4,0\n# c\nbreak q at 4,0\n", 4, "no entity q"),
                                 ("open one.json\nbreak a at 4,9\n", 2, "is not on a")):
            script = self.file("bad.edit", text)
            result = self.run_program("run", script)
            self.assertEqual(result.returncode, REFUSED if said.split()[0] in ("no", "is") else WRONG, text)
            self.assertTrue(result.stderr.startswith(f"holdfast: {script}, line {line}: "), result.stderr)
            self.assertIn(said, result.stderr)
            self.assertEqual(sorted(file.name for file in self.path.iterdir()), ["bad.edit", "one.json"])

    def test_ids_stand_in_pictures_on_request(self):
        corner, picture = self.file("corner.json", CORNER), self.path / "p.svg"
        for command in (["show", corner, "-o", picture], ["edit", corner, "break a at 4,0", "--picture", picture]):
            for ids in ([], ["--ids"]):
                self.assertEqual(self.run_program(*command, *ids).returncode, DONE)
                self.assertEqual(">a</text>" in picture.read_text(), bool(ids), command)
        for command in (["show", corner, "--ids"], ["edit", corner, "break a at 4,0", "--ids"]):
            result = self.run_program(*command)
            self.assertEqual(result.returncode, WRONG)
            self.assertIn("--ids", result.stderr)

    def test_redo_does_again_what_was_taken_back(self):
        corner = self.file("corner.json", CORNER)
        once, again = self.path / "once.json", self.path / "again.json"
        self.assertEqual(self.run_program("edit", corner, "break a at 4,0", "-o", once).returncode, DONE)
        script = self.file("again.edit", "open corner.json\nbreak a at 4,0\nundo\nredo\nsave again.json\n")
        result = self.run_program("run", script, "--json")
        self.assertEqual(result.returncode, DONE, result.stderr)
        self.assertEqual(again.read_bytes(), once.read_bytes())
        self.assertEqual(json.loads(result.stdout)["totals"]["constraints"]["restored"], 0)

    def test_redo_is_refused_when_nothing_was_taken_back(self):
        result = self.run_program("edit", self.file("corner.json", CORNER), "break a at 4,0", "redo")
        self.assertEqual(result.returncode, REFUSED)
        self.assertIn("there is no edit to do again", result.stderr)

    def test_a_cut_gives_ties_unless_it_is_told_not_to(self):
        corner, cut = self.file("corner.json", CORNER), self.path / "cut.json"

        def kinds_after(*arguments):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, DONE, result.stderr)
            return [each["type"] for each in json.loads(cut.read_text())["constraints"]]

        def of_script(lines, *options):
            script = self.file("cut.edit", "open corner.json\n" + lines + "save cut.json\n")
            return kinds_after("run", script, *options)

        tied = kinds_after("edit", corner, "break a at 4,0", "-o", cut)
        bare = kinds_after("edit", corner, "break a at 4,0", "-o", cut, "--no-ties")
        self.assertEqual(bare, ["horizontal"])
        self.assertEqual(set(tied), {"coincident", "horizontal", "parallel"})
        self.assertEqual(of_script("break a at 4,0\n"), tied)
        self.assertEqual(of_script("ties off\nbreak a at 4,0\n"), bare)
        self.assertEqual(of_script("ties off\nties on\nbreak a at 4,0\n"), tied)
        self.assertEqual(of_script("ties on\nbreak a at 4,0\n", "--no-ties"), bare)

    def test_why_a_tie_is_there_is_told(self):
        edit = ["edit", self.file("corner.json", CORNER), "break a at 4,0"]
        self.assertIn("the pieces of a meet there", self.run_program(*edit).stdout)
        added = [each["reason"] for each in json.loads(self.run_program(*edit, "--json").stdout)["constraints"]
                 if each["fate"] == "added"]
        self.assertIn("the pieces of a stay in one line", added)

    def test_help_lists_redo(self):
        self.assertIn("does the edit again that was taken back last", self.run_program("edit", "--help").stdout)

    def test_a_refused_edit_among_several_is_named_once(self):
        result = self.run_program("edit", self.file("corner.json", CORNER), "break a at 4,0", "break q at 1,0")
        self.assertEqual(result.stderr.count("break q at 1,0"), 1)
        result = self.run_program("edit", self.file("corner.json", CORNER), "break a at 4,0", "break b at 1,0")
        self.assertIn("holdfast: break b at 1,0: ", result.stderr)

    def test_several_drawings_are_told_as_json_too(self):
        self.file("one.json", CORNER)
        script = self.file("both.edit", "open one.json\nbreak a at 4,0 to 6,0\nopen one.json\nbreak a at 4,9\n")
        result = self.run_program("run", script, "--json")
        self.assertEqual(result.returncode, REFUSED)
        one, two = json.loads(result.stdout)["drawings"]
        self.assertEqual((one["done"], one["edits"], one["totals"]["constraints"]["re-pointed"]), (1, 1, 1))
        self.assertEqual((two["done"], two["edits"]), (0, 1))
        self.assertTrue(two["error"]["message"].startswith("line 4, break a at 4,9: "), two["error"])
        self.assertEqual((two["error"]["code"], two["error"]["line"], two["error"]["edit"]), ("impossible_edit", 4, 0))
        self.assertEqual([(each["id"], each["fate"]) for each in one["constraints"]],
                         [("tie", "re-pointed"), ("k3", "added")])

    def test_colours_are_for_terminals_that_have_them(self):
        path = self.file("corner.json", CORNER)
        for environment, coloured in (({}, True), ({"NO_COLOR": "1"}, False), ({"NO_COLOR": ""}, True),
                                      ({"TERM": "dumb"}, False)):
            told = self.on_terminal(environment, "edit", path, "break a at 4,0")
            self.assertEqual("\x1b[" in told, coloured, environment)
            self.assertIn("1 re-pointed", told)

    def test_progress_makes_room_for_messages(self):
        self.file("rest.dxf", "0\nSECTION\n2\nENTITIES\n0\nSOLID\n0\nENDSEC\n0\nEOF\n")
        os.mkfifo(self.path / "slow.json")
        script = self.file("slow.edit", "open slow.json\nopen rest.dxf\n")
        wiped = "\r\x1b[K"

        def feed(told):  # the program waits for its first drawing until it has told that it is at work
            if "drawings, 0 of 2, 1 s" in told and (self.path / "slow.json").is_fifo():
                (self.path / "slow.json").write_text(json.dumps(CORNER))
                (self.path / "slow.json").unlink()

        told = self.on_terminal({}, "run", script, watch=feed)
        self.assertIn("s" + wiped + "holdfast: ", told)
        self.assertIn("not understood and left out: SOLID\r\n", told)
        self.assertNotIn(" s", told.split("SOLID\r\n")[1].split("drawing ")[0])

    def test_a_script_over_several_drawings_ends_in_a_table(self):
        self.file("one.json", CORNER)
        self.file("two.json", CORNER)
        script = self.file("both.edit", "open one.json\nbreak a at 4,0 to 6,0\nsave one-cut.json\n"
                                        "open two.json # the same, refused\nbreak a at 4,9\n")
        result = self.run_program("run", script)
        self.assertEqual(result.returncode, REFUSED)
        rows = [row.split() for row in result.stdout.splitlines()]
        self.assertEqual(rows[1][:4], ["one.json", "1/1", "0", "1"])
        self.assertEqual(rows[2][:2], ["two.json", "0/1"])
        self.assertEqual(rows[-1][:5], ["2", "drawings", "1/2", "0", "1"])
        self.assertIn("refused: line 5, break a at 4,9: ", result.stdout)
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

    def test_a_real_drawing_without_its_constraints_gets_new_ones_that_hold(self):
        paths, folder = sorted(DRAWINGS.glob("*.json")), os.environ.get("HOLDFAST_DRAWINGS")
        if folder:
            paths += sorted(pathlib.Path(folder).glob("*.json"))[::int(os.environ.get("HOLDFAST_STRIDE", "1"))]
        for path in paths:
            plain = self.file("plain.json", {**json.loads(path.read_text()), "constraints": []})
            for options in ([], ["--polylines", "--tolerance", "0.05"]):
                with self.subTest(drawing=path.name, options=options):
                    inferred = self.path / "inferred.json"
                    result = self.run_program("infer", plain, *options, "-o", inferred)
                    self.assertEqual(result.returncode, DONE, result.stderr)
                    found = json.loads(self.run_program("solve", inferred, "--json").stdout)
                    self.assertIn(found["status"], ("unchanged", "solved"))
                    self.assertEqual((found["redundant"], found["redundant_in_part"]), ([], []))

    def test_chains_become_polylines_on_request(self):
        out = self.path / "poly.json"
        self.assertEqual(self.run_program("convert", self.file("corner.json", CORNER), out, "--polylines").returncode,
                         DONE)
        self.assertEqual([entity["type"] for entity in json.loads(out.read_text())["entities"]], ["polyline"])

    def test_a_plain_drawing_is_led_to_where_its_joints_are_found(self):
        plain = drawing(CORNER["entities"], [])
        result = self.run_program("convert", self.file("plain.json", plain), self.path / "poly.json", "--polylines")
        self.assertEqual(result.returncode, DONE)
        self.assertIn("holdfast infer --polylines", result.stderr)

    def test_an_edit_that_is_a_drawing_leads_to_the_command_for_several(self):
        one, two = self.file("one.json", CORNER), self.file("two.json", CORNER)
        result = self.run_program("edit", one, two, "move a by 1,1", "-o", self.path / "out.json")
        self.assertEqual(result.returncode, WRONG)
        self.assertIn("two.json: found a second drawing; expected one drawing; \"holdfast run\" edits several",
                      result.stderr)

    def test_the_list_names_what_a_user_has_to_know(self):
        listed = self.run_program("show", DRAWINGS / "mounting-bracket.json", "--list").stdout
        self.assertIn("  base: line (0, 0) to (80, 0), length 80; ", listed)
        self.assertIn("  hole1: circle about (15, 12), radius 4; ", listed)
        self.assertRegex(listed, r"  axis: line .*; c14 c15 c16\n")
        self.assertIn("  c13 (equal hole1 hole2)\n", listed)

    def test_what_is_missing_is_told_as_edits_that_finish_the_drawing(self):
        path = DRAWINGS / "mounting-bracket.json"
        told = json.loads(self.run_program("show", path, "--missing", "--json").stdout)["missing"]
        self.assertEqual(len(told), 14)
        text = self.run_program("show", path, "--missing").stdout
        self.assertIn("missing: 14\n", text)
        self.assertIn("  constrain distance base 80  # its value as it stands\n", text)
        out = self.path / "whole.json"
        self.assertEqual(self.run_program("edit", path, *[each["edit"] for each in told], "-o", out).returncode, DONE)
        self.assertEqual(json.loads(self.run_program("show", out, "--missing", "--json").stdout)["missing"], [])

    def test_every_key_of_the_json_is_written_down(self):
        self.file("one.json", CORNER)
        several = self.file("both.edit", "open one.json\nbreak a at 4,9\nopen one.json\n")
        resumed = self.file("resumed.edit", "open one.json\nsave o.json\nopen one.json\n")
        broken = json.loads(json.dumps(CORNER))
        broken["entities"][1]["start"] = [10, 1]
        mend, cut = self.file("broken.json", broken), DRAWINGS.parent / "commands" / "fillet-corner.edit"
        loose = DRAWINGS / "mounting-bracket.json"
        torn = drawing([{"id": "t", "type": "line", "start": [0, 0], "end": [10, 2]}],
                       [{"id": name, "type": kind, "refs": [{"entity": "t", "point": "whole"}]}
                        for name, kind in (("h", "horizontal"), ("v", "vertical"))])
        sized = drawing(CORNER["entities"],
                        [{"id": "wide", "type": "distance", "refs": [{"entity": "a", "point": "whole"}], "value": 10.0,
                          "formula": "side * 2"},
                         {"id": "other", "type": "distance", "refs": [{"entity": "b", "point": "whole"}], "value": 5.0}])
        sized["parameters"] = [{"name": "side", "formula": "5", "value": 5.0},
                               {"name": "double", "formula": "other * 2", "value": 10.0}]
        sized["layers"] = [{"name": "Cut"}]
        measured = self.path / "measured.dxf"
        measured.write_text("\n".join(
            "0 SECTION 2 BLOCKS 0 BLOCK 2 *D1 0 POINT 10 0 20 0 0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES 0 CIRCLE 10 0 20 0 "
            "40 5 0 DIMENSION 2 *D1 70 4 10 0 20 0 15 3 25 4 0 ENDSEC 0 EOF".split()) + "\n")
        calls = {"show": [("show", mend), ("show", measured, "--list"), ("show", loose, "--list", "--missing"), ("show", self.file("sized.json", sized), "--list"),
                          ("show", DRAWINGS.parent / "commands" / "plate-with-screws.dxf", "--list")], "solve": [("solve", mend)], "infer": [("infer", DRAWINGS / "acrylic-case-top.dxf")],
                 "convert": [("convert", mend, self.path / "mended.dxf")],
                 "edit": [("edit", self.path / "one.json", "lengthen a end by 2", "break a at 4,0"), ("run", cut),
                          ("edit", loose, "drag base.end by 3,2"), ("edit", self.file("torn.json", torn), "drag t by 0,1"),
                          ("edit", self.path / "sized.json", "parameter side = 9", "delete other")],
                 "run": [("run", several), ("run", resumed), ("run", resumed, "--resume")]}
        page = (DRAWINGS.parent.parent / "docs/json-output.md").read_text()
        for section in re.split(r"^## ", page, flags=re.M)[1:]:
            command = section.split("\n", 1)[0]
            written = set(re.findall(r"^\| `([^`]*)`", section, flags=re.M))
            found = set()
            for call in calls[command]:
                found |= keys(json.loads(self.run_program(*call, "--json").stdout))
            # Of what stands in a list as in a drawing file, the page of drawing files tells.
            found = {key for key in found if not key.startswith(("list.entities[].", "list.constraints[]", "list.parameters[]", "list.layers[]", "list.references[].parts[]"))
                     or key.startswith(("list.entities[].freedom", "list.entities[].motions", "list.entities[].sizes",
                                        "list.entities[].constraints"))}
            self.assertEqual(found, written, command)

    def test_layers_and_colours_are_shown_kept_by_pieces_and_written(self):
        coloured = json.loads(json.dumps(CORNER))
        coloured["layers"] = [{"name": "Cut", "colour": 1, "weight": 0.35, "frozen": True}]
        coloured["entities"][0].update(layer="Cut", colour="#ff8000", linetype="DOT", visible=False)
        path, out = self.file("coloured.json", coloured), self.path / "out.json"
        told = self.run_program("show", path, "--list").stdout
        self.assertIn("; on Cut, colour #ff8000, DOT, invisible; ", told)
        self.assertIn("each layer:\n  Cut: colour 1, width 0.35 mm, frozen\n", told)
        edits = ("break a at 3,0 to 6,0", "fillet a_2 b radius 1", "copy a by 0,20", "move a by 1,1", "undo")
        self.assertEqual(self.run_program("edit", path, *edits, "-o", out).returncode, DONE)
        kept = json.loads(out.read_text())
        self.assertEqual(kept["layers"], coloured["layers"])
        looks = {e["id"]: (e.get("layer"), e.get("colour"), e.get("linetype"), e.get("visible")) for e in kept["entities"]}
        cut = ("Cut", "#ff8000", "DOT", False)
        self.assertEqual({name for name, look in looks.items() if look == cut}, set(looks) - {"b"}, looks)
        self.assertEqual(looks["b"], (None,) * 4)
        self.assertEqual(self.run_program("convert", out, self.path / "out.dxf").returncode, DONE)
        self.assertIn("  8\nCut\n", (self.path / "out.dxf").read_text())
        again = self.path / "again.json"
        self.assertEqual(self.run_program("convert", self.path / "out.dxf", again).returncode, DONE)
        self.assertEqual([(layer["name"], layer["colour"], layer["frozen"])
                          for layer in json.loads(again.read_text())["layers"]], [("Cut", 1, True)])

    def test_parameters_are_shown_followed_and_left_out_of_dxf(self):
        sized = drawing(CORNER["entities"], CORNER["constraints"] + [
            {"id": "wide", "type": "distance", "refs": [{"entity": "a", "point": "whole"}], "value": 10.0,
             "formula": "side * 2 + 1 mm - 1"}])
        sized["parameters"] = [{"name": "side", "formula": "5", "value": 5.0}]
        path = self.file("sized.json", sized)
        listed = self.run_program("show", path, "--list").stdout
        self.assertIn("  wide (distance a, 10 = side * 2 + 1 mm - 1)\n", listed)
        self.assertIn("each parameter:\n  side: 5\n", listed)
        out = self.path / "out.json"
        edited = self.run_program("edit", path, "parameter side = 6", "-o", out)
        self.assertIn("10 -> 12 = side * 2 + 1 mm - 1", edited.stdout)
        self.assertIn("changed  side       5 -> 6\n", edited.stdout)
        self.assertEqual(json.loads(out.read_text())["parameters"], [{"name": "side", "formula": "6", "value": 6.0}])
        refused = self.run_program("edit", path, "set wide = sied * 2")
        self.assertEqual(refused.returncode, REFUSED)
        self.assertIn('column 12: there is no parameter or dimension sied, found "sied"; did you mean "side"?',
                      refused.stderr)
        lossy = self.run_program("convert", path, self.path / "out.dxf")
        self.assertIn("1 parameter was left out", lossy.stderr)

    def test_every_command_has_help_with_an_example_that_runs(self):
        os.symlink(DRAWINGS.parent.resolve(), self.path / "examples")
        for command in ("show", "edit", "run", "solve", "convert", "infer"):
            result = self.run_program(command, "--help")
            self.assertEqual(result.returncode, DONE)
            self.assertIn("Exit codes: 0 done", result.stdout)
            example = re.search(r"Example:\n  holdfast (.*)", result.stdout)[1]
            ran = subprocess.run([PROGRAM, *shlex.split(example)], cwd=self.path, capture_output=True, check=False)
            self.assertEqual((ran.returncode, ran.stderr.decode().count("found")), (DONE, 0), example)

    def test_misspelt_commands_and_options_are_answered_with_the_nearest(self):
        for arguments, meant in ((["shwo"], "show"), (["solv", "x"], "solve"), (["edit", "x", "undo", "--repot", "y"], "--report"),
                                 (["infer", "x", "--tolerence", "1"], "--tolerance")):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, WRONG)
            self.assertIn(f'did you mean "{meant}"?', result.stderr)
            self.assertTrue(result.stderr.startswith("holdfast: "), result.stderr)
            self.assertEqual(result.stderr.count("\n"), 1)

    def test_arguments_that_miss_or_are_too_many_are_named(self):
        self.assertIn("expected a command (show, edit,", self.run_program().stderr)
        self.assertIn("edit: EDIT is required", self.run_program("edit", "x.json").stderr)
        self.assertIn('found "b.edit"; nothing more was expected', self.run_program("run", "a.edit", "b.edit").stderr)

    def test_a_full_standard_output_is_no_success(self):
        path = self.file("corner.json", CORNER)
        for arguments in (("show", path), ("edit", path, "break a at 4,0", "--json"), ("edit", "--help")):
            with open("/dev/full", "w") as full:
                result = subprocess.run([PROGRAM, *arguments], stdout=full, stderr=subprocess.PIPE, check=False)
            self.assertEqual(result.returncode, WRONG, arguments)
            self.assertIn(b"standard output", result.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
