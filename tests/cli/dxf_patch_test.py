#!/usr/bin/env python3
"""Edits DXF files in every way and compares each byte of what comes out with the file that was edited.

Usage: dxf_patch_test.py PROGRAM FOLDER_OF_DRAWINGS...
Reads the folder dxf beside that of HOLDFAST_DRAWINGS as well, and files of every version that ezdxf writes, where that
is installed; then it judges the results, too.
"""
import collections
import json
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

try:
    import ezdxf
    from ezdxf.lldxf.tagger import binary_tags_loader
except ImportError:
    ezdxf = None

PROGRAM, FOLDERS = sys.argv[1], [pathlib.Path(folder).resolve() for folder in sys.argv[2:]]
LOOKS = (b"8", b"6", b"62", b"370", b"48", b"60", b"420")


def groups(record):
    lines = record.split(b"\n")
    return [(code.strip(), value.strip()) for code, value in zip(lines[::2], lines[1::2])]


def records(data):
    """The bytes of a file from one group 0 to the next; vertices of a polyline and attributes belong to it."""
    found, at, inside = [b""], 0, False
    lines = data.split(b"\n")
    for code, value in zip(lines[::2], lines[1::2]):
        end = at + len(code) + len(value) + 2
        if code.strip().lstrip(b"\xef\xbb\xbf") == b"0":
            if not inside and value.strip() not in (b"ATTRIB", b"SEQEND"):
                found.append(b"")
            inside = value.strip() == b"POLYLINE" or (inside and value.strip() != b"SEQEND")
        found[-1] += data[at:end]
        at = end
    found[-1] += data[at:]
    return found


SEED = re.compile(rb"(\$HANDSEED\s+5\s+)([0-9A-Fa-f]+)")


def without_seed(data):
    return SEED.sub(rb"\1", data)


def difference(before, after):
    """The records that went and those that came; the others are the same bytes in the same order, or it fails."""
    a, b = records(without_seed(before)), records(without_seed(after))
    gone, come = collections.Counter(a) - collections.Counter(b), collections.Counter(b) - collections.Counter(a)
    changed = set(gone) | set(come)
    if [r for r in a if r not in changed] != [r for r in b if r not in changed]:
        raise AssertionError("other bytes, or another order, outside of what was edited")
    return list(gone.elements()), list(come.elements())


def is_dimension(record):
    return groups(record)[:1] == [(b"0", b"DIMENSION")]


def others(some):
    return [record for record in some if not is_dimension(record)]


def looks(record):
    """Layer, colour and such, and what other programs have put there, of the first record only."""
    own = []
    for i, group in enumerate(groups(record)):
        if i > 0 and group[0] == b"0":
            break
        own.append(group)
    return tuple(sorted(g for g in own if g[0] in LOOKS)), tuple(g for g in own if int(g[0]) >= 1000)


def handles(data):
    variable, found = False, []
    for code, value in groups(data):
        if code in (b"5", b"105") and not variable and re.fullmatch(rb"[0-9A-Fa-f]+", value):
            found.append(int(value, 16))
        variable = code == b"9"
    return found


# What can be done to an entity, wherever it lies.

def at(point):
    return f"{point[0]!r},{point[1]!r}"


def between(a, b, t):
    return [a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])]


def on_circle(e, angle):
    return [e["centre"][0] + e["radius"] * math.cos(angle), e["centre"][1] + e["radius"] * math.sin(angle)]


def anchor(e):
    for key in ("start", "centre", "position", "point"):
        if key in e:
            return e[key]
    return (e.get("vertices") or e["control"])[0]


def edits_of(e):
    """Edits of one entity, each as a user types it."""
    name, kind, origin = e["id"], e["type"], anchor(e)
    edits = [f"move {name} by 3.25,-2", f"rotate {name} about {at(origin)} by 30", f"scale {name} about {at(origin)} by 2",
             f"copy {name} by 5,5 times 2", f"mirror {name} about {at(origin)} {at([origin[0] + 1, origin[1] + 2])}",
             f"mirror {name} about {at(origin)} {at([origin[0] + 1, origin[1]])} keep", f"erase {name}",
             f"align {name} from {at(origin)} to 1,1", f"drag {name} by 1,0.5", f"offset {name} by 0.01",
             f"stretch window {at([origin[0] - .01, origin[1] - .01])} {at([origin[0] + .01, origin[1] + .01])} by .5,.25"]
    if kind == "line":
        edits += [f"break {name} at {at(between(e['start'], e['end'], .25))} to {at(between(e['start'], e['end'], .5))}",
                  f"break {name} at {at(between(e['start'], e['end'], .5))}", f"lengthen {name} end by 1.5",
                  f"lengthen {name} start by 0.125", f"set {name} end {at([e['end'][0] + .5, e['end'][1]])}",
                  f"drag {name}.start by 0.5,0.5"]
    elif kind == "circle":
        edits += [f"break {name} at {at(on_circle(e, 1))} to {at(on_circle(e, 2))}", f"set {name} radius {e['radius'] + .5}"]
    elif kind == "arc":
        low, high = e["start_angle"], e["end_angle"]
        edits += [f"break {name} at {at(on_circle(e, low + .25 * (high - low)))} to {at(on_circle(e, (low + high) / 2))}",
                  f"set {name} radius {e['radius'] + .5}", f"lengthen {name} end by -0.01"]
    elif kind == "polyline":
        edits += [f"explode {name}", f"set {name} vertex 1 {at([e['vertices'][1][0] + .25, e['vertices'][1][1]])}",
                  f"fillet {name} corner 1 radius 0.05", f"chamfer {name} corner 1 by 0.05"]
        if not any(e["bulges"]) and len(e["vertices"]) > 2:
            edits.append(f"break {name} at {at(between(e['vertices'][0], e['vertices'][1], .5))} to "
                         f"{at(between(e['vertices'][1], e['vertices'][2], .5))}")
    elif kind in ("spline", "elliptical_arc"):
        edits += [f"lengthen {name} end by -0.01"]
    elif kind == "text":
        edits += [f"set {name} rotation 15", f"set {name} height 4"]
    return edits


def pairs_of(entities):
    """Edits of two lines that meet."""
    lines = [e for e in entities if e["type"] == "line"][:200]
    ends = {}
    for e in lines:
        for end in ("start", "end"):
            other = ends.setdefault(tuple(e[end]), e)
            if other is not e:
                a, b = other["id"], e["id"]
                return [f"fillet {a} {b} radius 0.05", f"chamfer {a} {b} by 0.05", f"join {a} {b}"]
    return []


def chosen(entities):
    """One of each kind from the front of the file, and one from its middle."""
    found = {e["type"]: e for e in reversed(entities)}
    middle = entities[len(entities) // 2]
    return list({e["id"]: e for e in [*found.values(), middle]}.values())


def numbers(e):
    """What an entity is, to six decimals: what was read back from a file has gone through degrees."""
    def rounded(value):
        if isinstance(value, bool) or isinstance(value, str):
            return value
        if isinstance(value, (int, float)):
            return round(value, 6) + 0.0
        return tuple(rounded(v) for v in value)
    whole = 2 * math.pi
    told = {k: v for k, v in e.items() if k not in ("id", "ids", "construction", "direction")}
    for first, last in (("start_angle", "end_angle"), ("start_param", "end_param")):
        if first in told:
            told[last] = [math.cos(told[last]), math.sin(told[last])]
            told[first] = [math.cos(told[first]), math.sin(told[first])]
    if "rotation" in told:
        told["rotation"] = [math.cos(told["rotation"]), math.sin(told["rotation"])]
    if not told.get("closed", True):
        told["bulges"] = told["bulges"][:-1]
    if told["type"] == "ellipse":
        told["major_axis"] = math.hypot(*told["major_axis"])
    return tuple(sorted((k, rounded(v)) for k, v in told.items()))


class DxfPatch(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = pathlib.Path(self.folder.name)

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)

    def entities(self, file):
        out = self.path / "read.json"
        result = self.run_program("convert", file, out)
        self.assertEqual(result.returncode, 0, result.stderr)
        return json.loads(out.read_text(encoding="utf-8"))["entities"]

    def run_edits(self, file, edits, ending):
        lines = []
        for i, edit in enumerate(edits):
            lines += [f"open {file}", *edit, f"save {self.path}/{i}{ending}"]
        script = self.path / "all.edit"
        script.write_text("\n".join(lines) + "\n", encoding="utf-8")
        result = self.run_program("run", script, "--json", "--no-ties")
        self.assertIn(result.returncode, (0, 3), result.stderr)
        return json.loads(result.stdout)["drawings"]

    def check_file(self, file, least):
        """Every edit of a file; how many were done."""
        before = file.read_bytes()
        entities = self.entities(file)
        edits = [[edit] for e in chosen(entities) for edit in edits_of(e)] + [[edit] for edit in pairs_of(entities)]
        edits += [["draw circle 1,2 radius 3", "draw polyline 0,0 1,0 1,1 closed", "draw text \"so\" at 1,1"], ["undo"]]
        edits.append([f"move {entities[0]['id']} by 1,1", f"copy {entities[0]['id']} by 9,9", "undo", "undo"])
        told = self.run_edits(file, edits, ".dxf")
        self.run_edits(file, edits, ".json")
        done = 0
        for i, (edit, line) in enumerate(zip(edits, told)):
            out = self.path / f"{i}.dxf"
            self.assertEqual(out.exists(), "error" not in line, edit)
            if "error" in line:
                continue
            done += 1
            with self.subTest(file=file.name, edit=edit):
                self.check_edit(file, before, out, line["totals"]["entities"], edit)
            self.judge(file, out)
        self.assertGreaterEqual(done, least, file)
        self.check_drawings(file, [self.path / f"{i}.dxf" for i in range(len(edits))])
        for out in self.path.glob("[0-9]*.*"):
            out.unlink()
        return done

    def check_edit(self, file, before, out, fates, edit):
        after = out.read_bytes()
        gone, come = difference(before, after)
        # Dimensions go along with what they stand on.
        self.assertEqual(*(sum(is_dimension(r) for r in some) for some in (gone, come)))
        gone, come = others(gone), others(come)
        changed = fates["edited"] + fates["followed"]
        self.assertLessEqual(len(gone), changed + fates["erased"])
        self.assertLessEqual(len(come), changed + fates["created"])
        self.assertEqual(len(come) - len(gone), fates["created"] - fates["erased"])
        known = {looks(r) for r in (gone or records(before))}
        if not edit[0].startswith("draw"):
            for record in come:
                self.assertIn(looks(record), known)
        own = handles(after)
        if len(handles(before)) == len(set(handles(before))):
            self.assertEqual(len(own), len(set(own)), "a handle is there twice")
        for _, seed in SEED.findall(after):
            self.assertGreater(int(seed, 16), max(own))

    def check_drawings(self, file, outs):
        """What is in the file is what the edit has made of the drawing."""
        outs = [out for out in outs if out.exists()]
        again = self.path / "again"
        again.mkdir(exist_ok=True)
        script = self.path / "again.edit"
        script.write_text("\n".join(f"open {out}\nsave {again}/{out.stem}.json" for out in outs), encoding="utf-8")
        self.assertEqual(self.run_program("run", script, "--json").returncode, 0)
        for out in outs:
            want = json.loads(out.with_suffix(".json").read_text(encoding="utf-8"))["entities"]
            found = json.loads((again / f"{out.stem}.json").read_text(encoding="utf-8"))["entities"]
            with self.subTest(file=file.name, out=out.name):
                self.assertEqual(collections.Counter(map(numbers, want)), collections.Counter(map(numbers, found)))

    def judge(self, file, out):
        """What a program that knows the format says of a file that it wrote and we edited."""

    def test_an_edit_of_a_file_changes_the_records_of_what_it_edits(self):
        folders = list(FOLDERS)
        if "HOLDFAST_DRAWINGS" in os.environ:
            folders.append(pathlib.Path(os.environ["HOLDFAST_DRAWINGS"]).parent / "dxf")
        files = sorted({file.name: file for folder in folders for file in folder.glob("*.dxf")}.values())
        done = sum(self.check_file(file, 10) for file in files)
        print(f"{len(files)} files, {done} edits")

    def test_a_file_that_is_converted_without_an_edit_is_the_same(self):
        for file in (file for folder in FOLDERS for file in sorted(folder.glob("*.dxf"))):
            for command in ("convert", "solve"):
                out = self.path / "b.dxf"
                arguments = [file, out] if command == "convert" else [file, "-o", out]
                self.assertEqual(self.run_program(command, *arguments).returncode, 0)
                self.assertEqual(out.read_bytes(), file.read_bytes(), (command, file))


@unittest.skipIf(ezdxf is None, "python3-ezdxf is not installed")
class DxfPatchOfOtherPrograms(DxfPatch):
    def judge(self, file, out):
        document = ezdxf.readfile(out)
        auditor = document.audit()
        self.assertFalse(auditor.errors, [e.message for e in auditor.errors])

    def test_an_edit_of_a_file_changes_the_records_of_what_it_edits(self):
        done = 0
        for version in ("R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"):
            file = self.path / f"made-{version}.dxf"
            made(version).saveas(file)
            done += self.check_file(file, 25)
        print(f"files of 7 versions, {done} edits")

    def test_a_file_that_is_converted_without_an_edit_is_the_same(self):
        file, out = self.path / "made.dxf", self.path / "b.dxf"
        made("R2018").saveas(file)
        self.assertEqual(self.run_program("convert", file, out).returncode, 0)
        self.assertEqual(out.read_bytes(), file.read_bytes())


    def test_an_edit_of_a_binary_file_changes_the_records_of_what_it_edits(self):
        for version in ("R12", "R2000", "R2018"):
            file = self.path / "made.dxf"
            made(version).saveas(file, fmt="bin")
            edits = [["move g0 by 1,2"], ["erase g3"], ["break g0 at 4,0 to 6,0"], ["copy g3 by 5,5"],
                     ["draw circle 1,2 radius 3"]]
            for i, (edit, line) in enumerate(zip(edits, self.run_edits(file, edits, ".dxf"))):
                with self.subTest(version=version, edit=edit):
                    out, fates = self.path / f"{i}.dxf", line["totals"]["entities"]
                    gone, come = (others(some) for some in difference(said(file.read_bytes()), said(out.read_bytes())))
                    self.assertEqual((len(gone), len(come)), (fates["edited"] + fates["erased"], fates["edited"] + fates["created"]))
                    self.assertFalse(ezdxf.readfile(out).audit().errors)


def said(data):
    """A binary file as the text that says the same."""
    return b"".join(f"{tag.code}\n{tag.value}\n".encode() for tag in binary_tags_loader(data))


def made(version):
    """A drawing with every kind of entity, layers, line types, blocks and data of other programs."""
    document = ezdxf.new(version, setup=True)
    document.layers.new("Cut", dxfattribs={"color": 1, "linetype": "DASHED"})
    document.layers.new("Frozen", dxfattribs={"color": 3}).freeze()
    document.appids.new("THEIRS")
    space = document.modelspace()
    look = {"layer": "Cut", "color": 5, "linetype": "DOT"}
    down = {**look, "extrusion": (0, 0, -1)}
    line = space.add_line((0, 0), (10, 0), dxfattribs=look)
    line.set_xdata("THEIRS", [(1000, "held"), (1070, 7)])
    space.add_line((10, 0), (10, 8), dxfattribs=look)
    space.add_line((1, 1, 3), (5, 4, 3), dxfattribs={"thickness": 2})
    space.add_circle((20, 5), 3, dxfattribs=look)
    space.add_circle((40, 5), 3, dxfattribs=down)
    space.add_arc((30, 0), 4, 20, 200, dxfattribs=look)
    space.add_arc((30, 0), 5, 300, 30, dxfattribs=down)
    space.add_point((3, 3), dxfattribs=look)
    space.add_text("one %%c5", dxfattribs={**look, "insert": (0, 20), "height": 2}).set_placement(
        (4, 20), align=ezdxf.enums.TextEntityAlignment.MIDDLE_CENTER)
    space.add_polyline2d([(0, 30, .5), (10, 30, 0), (10, 40, 0), (0, 40, -.25)], format="xyb", close=True, dxfattribs=look)
    if version != "R12":
        space.add_lwpolyline([(50, 0, 0, 0, .5), (60, 0, .5, 1, 0), (60, 10, 0, 0, 0)], format="xyseb", dxfattribs=look)
        space.add_lwpolyline([(70, 0, .5), (80, 0, 0), (80, 10, 0)], format="xyb", close=True, dxfattribs=down)
        space.add_ellipse((0, 60), (8, 2), .4, dxfattribs=look)
        space.add_ellipse((30, 60), (8, 2), .4, .5, 3, dxfattribs=down)
        space.add_open_spline([(0, 80), (5, 90), (10, 80), (15, 85), (20, 80)], dxfattribs=look)
        space.add_rational_spline([(30, 80), (35, 90), (40, 80), (45, 85)], [1, 2, 1, .5], dxfattribs=look)
        space.add_ray((0, 100), (1, 0), dxfattribs=look)
        space.add_xline((0, 110), (0, 1), dxfattribs=look)
        space.add_mtext("two\\Plines {\\fArial|b1;bold}", {**look, "insert": (0, 120), "char_height": 2, "rotation": 30})
        space.add_hatch(color=2).paths.add_polyline_path([(0, 0), (10, 0), (10, 8)])
        document.groups.new("PAIR").extend([line])
        line.set_reactors(["1F"])
    block = document.blocks.new("PART")
    block.add_line((0, 0), (1, 1))
    block.add_attdef("NAME", (0, 0))
    space.add_blockref("PART", (5, 5)).add_attrib("NAME", "first", (5, 5))
    space.add_linear_dim(base=(0, -5), p1=(0, 0), p2=(10, 0)).render()
    space.add_solid([(0, 0), (1, 0), (1, 1)])
    document.layout("Layout1").add_line((0, 0), (5, 5))
    return document


if __name__ == "__main__":
    sys.argv[1:] = []
    unittest.main()
