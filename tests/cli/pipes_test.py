#!/usr/bin/env python3
"""Runs the program as scripts and pipelines do: standard streams, many drawings, exit codes, interruptions.

Usage: pipes_test.py PROGRAM FOLDER_OF_DRAWINGS
"""
import json
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

sys.dont_write_bytecode = True
from corner import CORNER, InAFolder, constraint, drawing, line  # noqa: E402

PROGRAM, DRAWINGS = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
DONE, FAULTS, WRONG, REFUSED = range(4)
BRACKET, PLATE = DRAWINGS / "mounting-bracket.json", DRAWINGS / "acrylic-case-top.dxf"
CUT = "break base at 40,0"
TORN = drawing(CORNER["entities"], CORNER["constraints"] + [constraint("ten", "distance", ("a", "whole"), value=10),
                                                            constraint("nine", "distance", ("a", "whole"), value=9)])


class Pipes(InAFolder):
    def run_program(self, *arguments, stdin="", code=DONE, **more):
        result = subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, text=True,
                                timeout=300, check=False, cwd=self.path, **more)
        self.assertEqual(result.returncode, code, result.stderr)
        return result

    def names(self):
        return sorted(each.name for each in self.path.iterdir())


class Errors(Pipes):
    def error(self, *arguments, code, stdin=""):
        result = self.run_program(*arguments, stdin=stdin, code=code)
        told = json.loads(result.stdout)
        self.assertEqual(list(told), ["error"])
        self.assertEqual(result.stderr, f"holdfast: {told['error']['message']}\n")
        return told["error"]

    def test_an_error_is_one_object_on_standard_output(self):
        corner = self.file("corner.json", CORNER)
        for arguments, code, name in (
                (["show", corner, "--lits"], WRONG, "usage"), (["shwo"], WRONG, "usage"),
                (["show", "none.json"], WRONG, "unreadable_file"), (["run", "none.edit"], WRONG, "unreadable_file"),
                (["infer", corner, "--angle", "60"], WRONG, "usage"), (["show", corner, "-o", "x.png"], WRONG, "usage"),
                (["show", corner, "-o", "nowhere/x.svg"], WRONG, "not_written"),
                (["edit", corner, "braek a at 4,0"], WRONG, "bad_edit"), (["edit", corner, "undo"], REFUSED, "impossible_edit"),
                (["infer", self.file("torn.json", TORN)], FAULTS, "not_solved")):
            self.assertEqual(self.error(*arguments, "--json", code=code)["code"], name, arguments)
        self.assertEqual(self.names(), ["corner.json", "torn.json"])

    def test_the_place_of_a_fault_in_a_drawing_is_told(self):
        bad = json.loads(json.dumps(CORNER))
        bad["entities"][1]["type"] = "lien"
        error = self.error("show", self.file("bad.json", json.dumps(bad, indent=1)), "--json", code=WRONG)
        self.assertEqual((error["code"], error["place"]), ("bad_drawing", "/entities/1/type"))
        self.assertEqual((self.path / "bad.json").read_text().splitlines()[error["line"] - 1].strip(), '"type": "lien",')
        error = self.error("show", self.file("cut.json", '{"name": \n  tru}'), "--json", code=WRONG)
        self.assertEqual((error["line"], error["column"] > 0), (2, True))

    def test_a_refused_edit_is_told_by_number_and_column(self):
        error = self.error("edit", self.file("corner.json", CORNER), "break a at 4,0", "erase g7", "--json", code=REFUSED)
        self.assertEqual((error["code"], error["edit"], error["column"]), ("wrong_word", 1, 7))
        error = self.error("edit", "corner.json", "break a at ten", "--json", code=WRONG)
        self.assertEqual((error["code"], error["edit"], error["column"]), ("bad_edit", 0, 12))

    def test_constraints_in_the_way_are_told_by_id_and_how_far_it_went(self):
        held = json.loads(json.dumps(CORNER))
        held["constraints"] += [constraint("ten", "distance", ("a", "whole"), value=10),
                                constraint("here", "fixed", ("a", "start"))]
        error = self.error("edit", self.file("held.json", held), "set a end 14,0", "--json", code=REFUSED)
        self.assertEqual(error["code"], "constraints_in_the_way")
        self.assertIn("ten", error["constraints"])
        self.assertLessEqual(set(error["constraints"]), {"tie", "level", "ten", "here"})
        wide = drawing([line("a", (0, 0), (3, 0)), line("b", (3, 0), (3, 4))], [
            constraint("o", "fixed", ("a", "start")), constraint("la", "distance", ("a", "whole"), value=3),
            constraint("j", "coincident", ("a", "end"), ("b", "start")),
            constraint("lb", "distance", ("b", "whole"), value=4),
            constraint("far", "distance", ("a", "start"), ("b", "end"), value=5)])
        error = self.error("edit", self.file("wide.json", wide), "set far 9", "--json", code=REFUSED)
        self.assertEqual(set(error["constraints"]) >= {"la", "lb"}, True, error)
        self.assertGreater(error["how_far"], 0.4)
        self.assertLess(error["how_far"], 0.6)

    def test_errors_of_a_script_tell_file_and_line(self):
        self.file("corner.json", CORNER)
        script = self.file("cut.edit", "open corner.json\n\nbreak a at 4,0\nerase g7\n")
        error = self.error("run", script, "--json", code=REFUSED)
        self.assertEqual((error["file"], error["line"], error["edit"], error["column"]), (str(script), 4, 1, 7))
        error = self.error("run", self.file("bad.edit", "open corner.json\nudno\n"), "--json", code=WRONG)
        self.assertEqual((error["code"], error["line"]), ("bad_script", 2))

    def test_solve_tells_a_contradiction_beside_its_findings(self):
        told = json.loads(self.run_program("solve", self.file("torn.json", TORN), "--json", code=FAULTS).stdout)
        self.assertEqual((told["status"], told["error"]["code"]), ("conflicting", "not_solved"))
        self.assertEqual(told["error"]["constraints"], ["ten", "nine"])


class Streams(Pipes):
    def test_a_drawing_comes_from_standard_input(self):
        for source, more in ((BRACKET, []), (PLATE, []), (BRACKET, ["--from", "json"]), (PLATE, ["--from", "dxf"])):
            named = self.run_program("show", source).stdout
            piped = self.run_program("show", "-", *more, stdin=source.read_text()).stdout
            self.assertEqual(piped.split("\n")[1:], named.split("\n")[1:])

    def test_a_form_that_is_said_counts_more_than_the_name(self):
        plain = self.file("plate.txt", PLATE.read_text())
        self.assertIn("--from", self.run_program("show", plain, code=WRONG).stderr)
        self.assertIn("entities: ", self.run_program("show", plain, "--from", "dxf").stdout)
        self.assertIn("standard input: line 2, column 1: found", self.run_program("show", "-", "--from", "json", stdin="0\nSECTION\n", code=WRONG).stderr)

    def test_nothing_but_the_drawing_is_on_standard_output(self):
        for form in ("json", "dxf", "svg"):
            out = self.path / f"out.{form}"
            self.run_program("edit", BRACKET, CUT, "-o", out)
            piped = self.run_program("edit", "-", CUT, "-o", "-", "--to", form, stdin=BRACKET.read_text())
            self.assertEqual(piped.stdout, out.read_text())
        self.run_program("convert", BRACKET, self.path / "b.dxf")
        self.assertEqual(self.run_program("convert", "-", "-", "--to", "dxf", stdin=BRACKET.read_text()).stdout,
                         (self.path / "b.dxf").read_text())
        self.assertIn("<svg", self.run_program("show", BRACKET, "-o", "-").stdout[:200])
        self.assertIn("<html", self.run_program("edit", BRACKET, CUT, "--report", "-").stdout[:200])

    def test_a_drawing_goes_out_as_it_came_in(self):
        self.assertEqual(self.run_program("convert", "-", "-", stdin=PLATE.read_text()).stdout, PLATE.read_text())
        self.assertTrue(self.run_program("solve", BRACKET, "-o", "-").stdout.startswith("{"))

    def test_commands_make_a_pipeline(self):
        plain = PLATE.read_text()
        inferred = self.run_program("infer", "-", "-o", "-", "--to", "json", stdin=plain).stdout
        solved = self.run_program("solve", "-", "-o", "-", stdin=inferred).stdout
        self.assertEqual(json.loads(self.run_program("solve", "-", "--json", stdin=solved).stdout)["status"], "unchanged")

    def test_remarks_go_to_standard_error(self):
        fixed = drawing(CORNER["entities"], CORNER["constraints"] + [constraint("here", "fixed", ("a", "start"))])
        result = self.run_program("edit", self.file("fixed.json", fixed), "drag a.end by 3,2", "-o", "-")
        self.assertIn("short of what was asked", result.stderr)
        json.loads(result.stdout)

    def test_standard_output_takes_one_thing(self):
        for more in (["--json"], ["--jsonl"], ["--report", "-"]):
            result = self.run_program("edit", BRACKET, CUT, "-o", "-", *more, code=WRONG)
            self.assertIn("standard output", result.stderr)

    def test_what_is_refused_puts_no_drawing_on_standard_output(self):
        for arguments, code in ((["edit", BRACKET, "erase g999", "-o", "-"], REFUSED),
                                (["solve", self.file("torn.json", TORN), "-o", "-"], FAULTS)):
            self.assertEqual(self.run_program(*arguments, code=code).stdout, "")

    def test_a_script_comes_from_standard_input(self):
        self.file("corner.json", CORNER)
        self.run_program("run", "-", stdin="open corner.json\nbreak a at 4,0\nsave cut.json\n")
        self.assertTrue((self.path / "cut.json").exists())
        self.assertIn("holdfast: standard input, line 2: ",
                      self.run_program("run", "-", stdin="open corner.json\nudno\n", code=WRONG).stderr)

    def test_a_script_edits_what_comes_from_standard_input(self):
        script = self.file("cut.edit", f"open -\n{CUT}\nsave -\n")
        self.run_program("edit", BRACKET, CUT, "-o", "cut.json")
        self.assertEqual(self.run_program("run", script, stdin=BRACKET.read_text()).stdout,
                         (self.path / "cut.json").read_text())

    def test_a_full_standard_output_leaves_the_files_as_they_were(self):
        out = self.file("out.json", "old")
        for more in ([], ["--json"], ["--jsonl"]):
            with open("/dev/full", "w") as full:
                result = subprocess.run([PROGRAM, "edit", BRACKET, CUT, "-o", out, "--report", self.path / "r.html", *more],
                                        stdout=full, stderr=subprocess.PIPE, check=False)
            self.assertEqual(result.returncode, WRONG)
            self.assertIn(b"standard output", result.stderr)
            self.assertEqual((self.names(), out.read_text()), (["out.json"], "old"))

    def test_a_closed_pipe_is_an_error_like_a_full_one(self):
        reader, writer = os.pipe()
        os.close(reader)
        result = subprocess.run([PROGRAM, "edit", BRACKET, CUT, "-o", self.path / "out.json"], stdout=writer,
                                stderr=subprocess.PIPE, check=False)
        os.close(writer)
        self.assertEqual((result.returncode, self.names()), (WRONG, []))

    def test_a_standard_output_that_was_closed_takes_no_file(self):
        result = subprocess.run(["sh", "-c", '"$0" edit "$1" "$2" -o out.json >&-', PROGRAM, BRACKET, CUT],
                                cwd=self.path, stderr=subprocess.PIPE, check=False)
        self.assertEqual((result.returncode, self.names()), (WRONG, []), result.stderr)


class Several(Pipes):
    def test_several_drawings_are_shown_one_after_the_other(self):
        one, two = self.file("one.json", CORNER), BRACKET
        self.assertEqual(self.run_program("show", one, two).stdout,
                         self.run_program("show", one).stdout + "\n" + self.run_program("show", two).stdout)
        alone = [json.loads(self.run_program("show", each, "--json").stdout) for each in (one, two)]
        named = [{"file": str(each), **told} for each, told in zip((one, two), alone)]
        self.assertEqual(json.loads(self.run_program("show", one, two, "--json").stdout), {"drawings": named})
        self.assertEqual([json.loads(each) for each in self.run_program("show", one, two, "--jsonl").stdout.splitlines()],
                         named)

    def test_one_bad_drawing_keeps_none_of_the_others(self):
        one = self.file("one.json", CORNER)
        result = self.run_program("show", one, "none.json", one, "--jsonl", code=WRONG)
        told = [json.loads(each) for each in result.stdout.splitlines()]
        self.assertEqual([each["file"] for each in told], [str(one), "none.json", str(one)])
        self.assertEqual([each.get("error", {}).get("code") for each in told], [None, "unreadable_file", None])
        self.assertEqual(result.stderr.count("\n"), 1)
        self.assertEqual(self.run_program("show", one, "none.json", one, code=WRONG).stdout.count("entities: 2"), 2)

    def test_several_drawings_go_into_a_folder(self):
        broken = json.loads(json.dumps(CORNER))
        broken["entities"][1]["start"] = [10, 1]
        (self.path / "out").mkdir()
        self.file("one.json", broken), self.file("two.json", CORNER), self.file("torn.json", TORN)
        self.run_program("solve", "one.json", "torn.json", "two.json", "-o", "out", code=FAULTS)
        self.assertEqual(sorted(each.name for each in (self.path / "out").iterdir()), ["one.json", "two.json"])
        self.run_program("show", "one.json", "two.json", "-o", "out")
        self.run_program("infer", PLATE, "one.json", "-o", "out")
        self.assertEqual(sorted(each.name for each in (self.path / "out").iterdir()),
                         ["acrylic-case-top.json", "one.json", "one.svg", "two.json", "two.svg"])

    def test_several_drawings_are_converted_into_a_folder(self):
        (self.path / "out").mkdir()
        one = self.file("one.json", CORNER)
        told = self.run_program("convert", one, PLATE, "none.json", "out", "--to", "dxf", "--jsonl", code=WRONG).stdout
        lines = [json.loads(each) for each in told.splitlines()]
        self.assertEqual([each.get("written") for each in lines], ["out/one.dxf", "out/acrylic-case-top.dxf", None])
        self.assertEqual((self.path / "out" / "acrylic-case-top.dxf").read_text(), PLATE.read_text())
        self.assertEqual(self.run_program("convert", one, "out").stdout, "")
        self.assertTrue((self.path / "out" / "one.json").exists())
        self.assertIn("a folder that exists", self.run_program("convert", one, PLATE, "b.json", code=WRONG).stderr)

    def test_several_drawings_do_not_share_a_file(self):
        (self.path / "out").mkdir(), (self.path / "in").mkdir()
        self.file("one.json", CORNER), self.file("in/one.json", CORNER)
        self.assertIn("a folder that exists", self.run_program("solve", "one.json", "in/one.json", "-o", "a.json", code=WRONG).stderr)
        self.assertIn("a second drawing of this name",
                      self.run_program("solve", "one.json", "in/one.json", "-o", "out", code=WRONG).stderr)


class Runs(Pipes):
    def batch(self, count=6):
        """A script over drawings of which the first takes longest, and the third is refused."""
        self.file("d0.json", json.loads((DRAWINGS / "honeycomb-grille.json").read_text()))
        text = ""
        for i in range(count):
            if i > 0:
                self.file(f"d{i}.json", CORNER)
            name = json.loads((self.path / f"d{i}.json").read_text())["entities"][0]["id"]
            edit = "break a at 4,9" if i == 2 else f"drag {name} by 0.5,0.25"
            text += f"open d{i}.json\n{edit}\nsave o{i}.json\n"
        return self.file("all.edit", text)

    def outputs(self):
        return {name: (self.path / name).read_bytes() for name in self.names() if name.startswith("o")}

    def test_a_run_on_several_cores_tells_and_writes_the_same(self):
        script, told = self.batch(), {}
        for jobs in (1, 4):
            for form in ([], ["--json"], ["--jsonl"]):
                result = self.run_program("run", script, "-j", jobs, *form, code=REFUSED)
                told.setdefault(str(form), set()).add((result.stdout, result.stderr, str(self.outputs())))
        self.assertEqual([len(each) for each in told.values()], [1, 1, 1])

    def test_each_line_has_the_fates_of_a_drawing_in_the_order_of_the_script(self):
        lines = [json.loads(each) for each in
                 self.run_program("run", self.batch(), "-j", 3, "--jsonl", code=REFUSED).stdout.splitlines()]
        self.assertEqual([os.path.basename(each["file"]) for each in lines], [f"d{i}.json" for i in range(6)])
        self.assertEqual((lines[2]["error"]["code"], lines[2]["error"]["line"]), ("impossible_edit", 8))
        alone = json.loads(self.run_program("edit", "d1.json", "drag a by 0.5,0.25", "--json").stdout)
        self.assertEqual(lines[1], {"file": lines[1]["file"], **alone})

    def test_remarks_come_in_the_order_of_the_drawings(self):
        for name in ("x.dxf", "y.dxf", "z.dxf"):
            self.file(name, "0\nSECTION\n2\nENTITIES\n0\nSOLID\n0\nENDSEC\n0\nEOF\n")
        script = self.file("rest.edit", "open x.dxf\nopen y.dxf\nopen z.dxf\n")
        said = self.run_program("run", script, "-j", 3).stderr.splitlines()
        self.assertEqual([each.split(".dxf")[0][-1] for each in said], ["x", "y", "z"])

    def test_a_drawing_waits_for_the_one_that_saves_it(self):
        self.file("d0.json", CORNER)
        text = "".join(f"open d{i}.json\nmove a b by 1,0\nsave d{i + 1}.json\n" for i in range(8))
        self.run_program("run", self.file("chain.edit", text), "-j", 8)
        self.assertEqual(json.loads((self.path / "d8.json").read_text())["entities"][0]["start"], [8, 0])

    def test_a_run_is_resumed_where_it_was_interrupted(self):
        script = self.batch()
        self.run_program("run", script, code=REFUSED)
        whole = self.outputs()
        (self.path / "o3.json").unlink()
        os.utime(self.path / "d1.json")  # edited since
        times = {name: (self.path / name).stat().st_mtime_ns for name in self.outputs()}
        time.sleep(0.05)
        lines = [json.loads(each) for each in
                 self.run_program("run", script, "--resume", "--jsonl", code=REFUSED).stdout.splitlines()]
        self.assertEqual([each.get("skipped", False) for each in lines], [True, False, False, False, True, True])
        self.assertEqual(self.outputs(), whole)
        now = {name: (self.path / name).stat().st_mtime_ns for name in times}
        self.assertEqual([name for name in times if now[name] == times[name]], ["o0.json", "o4.json", "o5.json"])

    def test_a_changed_script_is_run_from_the_beginning(self):
        script = self.batch()
        self.run_program("run", script, code=REFUSED)
        time.sleep(0.05)
        os.utime(script)
        self.assertNotIn("skipped", self.run_program("run", script, "--resume", "--jsonl", code=REFUSED).stdout)

    def test_what_cannot_be_resumed_is_refused(self):
        self.file("a.json", CORNER), self.file("b.json", CORNER)
        for text in ("open a.json\nsave a.json\n", "open a.json\nsave c.json\nopen b.json\nsave c.json\n",
                     "open a.json\nsave c.json\nopen b.json\nsave a.json\n"):
            before = self.names()
            result = self.run_program("run", self.file("in.edit", text), "--resume", code=WRONG)
            self.assertIn("--resume", result.stderr)
            self.assertEqual(self.names(), sorted({*before, "in.edit"}))
        self.run_program("run", "-", "--resume", stdin="open a.json\nsave c.json\n", code=WRONG)

    def test_an_interrupted_run_leaves_whole_drawings_only_and_goes_on(self):
        self.file("d0.json", CORNER), os.mkfifo(self.path / "d1.json")
        script = self.file("all.edit", "".join(f"open d{i}.json\nmove a b by 1,0\nsave o{i}.json\n" for i in range(2)))
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with subprocess.Popen([PROGRAM, "run", script], stdout=subprocess.PIPE, stderr=subprocess.PIPE) as program:
                while not (self.path / "o0.json").exists():
                    time.sleep(0.01)
                program.send_signal(number)
                self.assertEqual(program.wait(timeout=60), -number)
            self.assertEqual(self.names(), ["all.edit", "d0.json", "d1.json", "o0.json"])
            if number != signal.SIGHUP:
                (self.path / "o0.json").unlink()
        (self.path / "d1.json").unlink()
        self.file("d1.json", CORNER)
        told = self.run_program("run", script, "--resume").stdout
        self.assertEqual(told.count("left as it was saved before"), 1)
        self.assertTrue((self.path / "o1.json").exists())

    def test_an_interrupt_takes_files_away_that_are_on_their_way(self):
        out = self.file("out.json", "old")
        many = self.file("many.json", drawing([line(f"l{i}", (i, 0), (i, 5)) for i in range(2000)], []))
        with subprocess.Popen([PROGRAM, "edit", many, "move l0 by 0,1", "-o", out, "--report", self.path / "r.html",
                               "--json"], stdout=subprocess.PIPE) as program:
            while len(self.names()) < 4:  # both stand beside their places until standard output is read
                self.assertIsNone(program.poll())
                time.sleep(0.01)
            program.send_signal(signal.SIGTERM)
            self.assertEqual(program.wait(timeout=60), -signal.SIGTERM)
        self.assertEqual((self.names(), out.read_text()), (["many.json", "out.json"], "old"))

    def test_an_ignored_signal_stays_ignored(self):
        os.mkfifo(self.path / "slow.json")
        with subprocess.Popen(["sh", "-c", 'trap "" HUP; exec "$0" show slow.json', PROGRAM], cwd=self.path,
                              stdout=subprocess.PIPE, text=True) as program:
            with open(self.path / "slow.json", "w") as pipe:  # opens when the program reads
                program.send_signal(signal.SIGHUP)
                json.dump(CORNER, pipe)
            self.assertIn("entities: 2", program.stdout.read())
            self.assertEqual(program.wait(timeout=60), DONE)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
