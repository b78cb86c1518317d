#!/usr/bin/env python3
"""Has FreeCAD judge what is written into its documents: it writes documents, the program edits them with every command,
and FreeCAD opens, solves and counts what came out.

Usage: freecad_test.py PROGRAM [NAME_OF_A_DOCUMENT...]
Exits 77, which counts as skipped, where FreeCAD is not installed.
"""
import collections
import json
import math
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import zipfile

for folder in ("/usr/lib/freecad-python3/lib", "/usr/lib/freecad/lib"):
    if os.path.isdir(folder):
        sys.path.append(folder)
try:
    import FreeCAD
    import Part
    import Sketcher
except ImportError:
    print("skipped: FreeCAD is not installed; the package is freecad-python3")
    sys.exit(77)

PROGRAM, WANTED = sys.argv[1], set(sys.argv[2:])
NEAR = 1e-6  # what FreeCAD may move when it opens and solves a result
START, END, CENTRE, WHOLE = 1, 2, 3, 0
ROOT, X_AXIS, Y_AXIS = (-1, START), -1, -2
FreeCAD.Console.SetStatus("Console", "Err", False)
FreeCAD.Console.SetStatus("Console", "Wrn", False)
FreeCAD.Console.SetStatus("Console", "Msg", False)
FreeCAD.Console.SetStatus("Console", "Log", False)
V = FreeCAD.Vector
failures, seen = [], collections.Counter()


# Documents as users make them.

class Maker:
    def __init__(self, sketch, seed):
        self.sketch, self.rng = sketch, random.Random(seed)

    def size(self, low, high):
        return round(self.rng.uniform(low, high), 1)

    def line(self, a, b, construction=False):
        return self.sketch.addGeometry(Part.LineSegment(V(*a, 0), V(*b, 0)), construction)

    def circle(self, centre, radius, construction=False):
        return self.sketch.addGeometry(Part.Circle(V(*centre, 0), V(0, 0, 1), radius), construction)

    def arc(self, centre, radius, start, end):
        return self.sketch.addGeometry(Part.ArcOfCircle(Part.Circle(V(*centre, 0), V(0, 0, 1), radius), start, end), False)

    def add(self, *constraint, name=None):
        number = self.sketch.addConstraint(Sketcher.Constraint(*constraint))
        if name:
            self.sketch.renameConstraint(number, name)
        return number

    def rectangle(self, x, y, width, height):
        corners = [(x, y), (x + width, y), (x + width, y + height), (x, y + height)]
        sides = [self.line(corners[i], corners[(i + 1) % 4]) for i in range(4)]
        for i in range(4):
            self.add("Coincident", sides[i], END, sides[(i + 1) % 4], START)
            self.add("Horizontal" if i % 2 == 0 else "Vertical", sides[i])
        return sides


def plate(m):
    width, height = m.size(40, 80), m.size(20, 35)
    sides = m.rectangle(0, 0, width, height)
    m.add("Coincident", sides[0], START, *ROOT)
    m.add("DistanceX", sides[0], START, sides[0], END, width, name="width")
    m.add("DistanceY", sides[1], START, sides[1], END, height)
    hole = m.circle((10, 10), 3)
    m.add("DistanceX", *ROOT, hole, CENTRE, 10)
    m.add("DistanceY", *ROOT, hole, CENTRE, 10)
    m.add("Diameter", hole, 6, name="bore")
    other = m.circle((25, 10), 3)
    m.add("Equal", hole, other)
    m.add("Horizontal", hole, CENTRE, other, CENTRE)


def loose_plate(m):
    sides = m.rectangle(3, 4, m.size(40, 80), m.size(20, 35))
    m.add("Distance", sides[0], m.sketch.Geometry[sides[0]].length())
    m.line((0, 50), (30, 60), True)
    m.circle((20, 15), m.size(2, 5))


def slot(m):
    length, radius = m.size(20, 50), m.size(3, 6)
    left, right = m.arc((0, 0), radius, math.pi / 2, 3 * math.pi / 2), m.arc((length, 0), radius, -math.pi / 2, math.pi / 2)
    top, bottom = m.line((0, radius), (length, radius)), m.line((0, -radius), (length, -radius))
    m.add("Tangent", left, START, top, START)
    m.add("Tangent", top, END, right, END)
    m.add("Tangent", right, START, bottom, END)
    m.add("Tangent", bottom, START, left, END)
    m.add("Equal", left, right)
    m.add("Horizontal", top)
    m.add("Coincident", left, CENTRE, *ROOT)
    m.add("DistanceX", left, CENTRE, right, CENTRE, length)
    m.add("Radius", left, radius)


def polygon(m):
    sides = m.rng.randint(5, 7)
    radius = m.size(15, 30)
    round_ = m.circle((0, 0), radius, True)
    m.add("Coincident", round_, CENTRE, *ROOT)
    points = [(radius * math.cos(2 * math.pi * i / sides), radius * math.sin(2 * math.pi * i / sides)) for i in range(sides)]
    lines = [m.line(points[i], points[(i + 1) % sides]) for i in range(sides)]
    for i in range(sides):
        m.add("Coincident", lines[i], END, lines[(i + 1) % sides], START)
        m.add("PointOnObject", lines[i], START, round_)
    for i in range(1, sides):
        m.add("Equal", lines[0], lines[i])
    m.add("Radius", round_, radius)


def symmetric_bracket(m):
    width, height = m.size(20, 40), m.size(10, 30)
    base = m.line((-width / 2, 0), (width / 2, 0))
    left, right = m.line((-width / 2, 0), (-width / 2, height)), m.line((width / 2, 0), (width / 2, height))
    m.add("Coincident", base, START, left, START)
    m.add("Coincident", base, END, right, START)
    m.add("Symmetric", base, START, base, END, Y_AXIS)
    m.add("PointOnObject", base, START, X_AXIS)
    m.add("Parallel", left, right)
    m.add("Perpendicular", base, left)
    m.add("Equal", left, right)
    m.add("Distance", base, width)
    rib = m.line((0, 0), (0, height / 2), True)
    m.add("Symmetric", base, START, base, END, rib, START)
    m.add("Vertical", rib)


def chain(m):
    a = m.line((0, 0), (30, 0))
    b = m.arc((30, 10), 10, -math.pi / 2, 0)
    c = m.line((40, 10), (40, 40))
    d = m.arc((35, 40), 5, 0, math.pi)
    m.add("Coincident", a, START, *ROOT)
    m.add("Horizontal", a)
    m.add("Tangent", a, END, b, START)
    m.add("Tangent", b, END, c, START)
    m.add("Tangent", c, END, d, START)
    m.add("Radius", b, 10)
    m.add("Distance", a, 30)


def triangle_with_angles(m):
    a, b, c = m.line((0, 0), (30, 0)), m.line((30, 0), (12, 20)), m.line((12, 20), (0, 0))
    for first, second in ((a, b), (b, c), (c, a)):
        m.add("Coincident", first, END, second, START)
    m.add("Coincident", a, START, *ROOT)
    m.add("Angle", a, math.radians(m.rng.choice([10, 20, 30])))
    m.add("Angle", a, START, c, END, math.radians(m.rng.choice([40, 50, 60])))
    m.add("Distance", a, 30)


def ellipse(m):
    number = m.sketch.addGeometry(Part.Ellipse(V(10, 5, 0), m.size(8, 12), m.size(3, 6)), False)
    m.sketch.exposeInternalGeometry(number)
    m.rectangle(40, 0, 20, 10)


def spline(m):
    curve = Part.BSplineCurve()
    curve.buildFromPoles([V(0, 0, 0), V(5, m.size(5, 9), 0), V(12, m.size(-6, 6), 0), V(20, 0, 0)])
    number = m.sketch.addGeometry(curve, False)
    m.sketch.exposeInternalGeometry(number)
    end = m.line((20, 0), (40, 0))
    m.add("Coincident", number, END, end, START)
    m.add("Horizontal", end)
    m.line((50, 0), (50, 20))
    m.line((50, 20), (70, 20))


def calculated(m):
    sides = m.rectangle(0, 0, 40, 20)
    m.add("Coincident", sides[0], START, *ROOT)
    m.add("DistanceX", sides[0], START, sides[0], END, 40, name="width")
    height = m.add("DistanceY", sides[1], START, sides[1], END, 20)
    m.sketch.setExpression(f"Constraints[{height}]", "Constraints.width / 2")
    hole = m.circle((10, 10), 4)
    m.add("DistanceX", *ROOT, hole, CENTRE, 10)
    m.add("DistanceY", *ROOT, hole, CENTRE, 10)
    radius = m.add("Radius", hole, 4, name="hole")
    m.sketch.setExpression("Constraints.hole", f"Constraints[{height}] / 5")
    m.line((5, 30), (25, 35))


def blocked(m):
    a, b = m.line((0, 0), (20, 3)), m.line((20, 3), (25, 18))
    m.add("Coincident", a, END, b, START)
    m.add("Block", a)
    c = m.circle((5, 20), 4)
    m.add("PointOnObject", b, END, c)
    point = m.sketch.addGeometry(Part.Point(V(10, 10, 0)), False)
    m.add("DistanceX", *ROOT, point, START, 10)
    m.add("Horizontal", point, START, c, CENTRE)


MAKERS = [plate, loose_plate, slot, polygon, symmetric_bracket, chain, triangle_with_angles, ellipse, spline, calculated,
          blocked]
# Every kind of document three times; with a stride, as tests over real drawings have it, once.
IS_SAMPLE = int(os.environ.get("HOLDFAST_STRIDE") or 1) > 1
SEEDS = 1 if IS_SAMPLE else 3


def write_document(make, seed, file):
    """A document with a solid and another sketch beside the one that is edited."""
    document = FreeCAD.newDocument("made")
    other = document.addObject("Sketcher::SketchObject", "Sketch")
    other.addGeometry(Part.LineSegment(V(0, 0, 0), V(1, 1, 0)), False)
    box = document.addObject("Part::Box", "Box")
    box.Length = 3
    sketch = document.addObject("Sketcher::SketchObject", "Sketch001")
    make(Maker(sketch, seed))
    document.recompute()
    if sketch.solve() != 0:
        raise AssertionError(f"{make.__name__}: the document that was made is not sound: {sketch.solve()}")
    document.saveAs(str(file))
    FreeCAD.closeDocument(document.Name)


# What FreeCAD finds.

def numbers(shape):
    kind = type(shape).__name__
    if kind == "LineSegment":
        return [*shape.StartPoint, *shape.EndPoint]
    if kind == "Point":
        return [shape.X, shape.Y]
    if kind in ("Circle", "ArcOfCircle"):
        ends = [*shape.StartPoint, *shape.EndPoint] if kind == "ArcOfCircle" else []
        return [*shape.Center, shape.Radius, *ends]
    if kind in ("Ellipse", "ArcOfEllipse"):
        ends = [*shape.StartPoint, *shape.EndPoint] if kind == "ArcOfEllipse" else []
        return [*shape.Center, shape.MajorRadius, shape.MinorRadius, *ends]
    if kind == "BSplineCurve":
        return [c for pole in shape.getPoles() for c in pole] + list(shape.getKnots()) + list(shape.getWeights())
    raise AssertionError(kind)


PLACES = {"LineSegment": (START, END), "Point": (START,), "Circle": (CENTRE,), "ArcOfCircle": (CENTRE, START, END),
          "Ellipse": (CENTRE,), "ArcOfEllipse": (CENTRE, START, END), "BSplineCurve": (START, END)}


def candidates(sketch, number):
    """Dimensions of one piece of geometry that hold as drawn, enough to determine it."""
    shape = sketch.Geometry[number]
    kind = type(shape).__name__
    for place in PLACES[kind]:
        point = sketch.getPoint(number, place)
        yield Sketcher.Constraint("DistanceX", *ROOT, number, place, point.x)
        yield Sketcher.Constraint("DistanceY", *ROOT, number, place, point.y)
    if kind in ("Circle", "ArcOfCircle"):
        yield Sketcher.Constraint("Radius", number, shape.Radius)


def takes(sketch, constraint):
    number = sketch.addConstraint(constraint)
    if sketch.solve() == 0:
        return True
    sketch.delConstraint(number)
    sketch.solve()
    return False


def freedom(sketch):
    """How many more dimensions the sketch takes before it is determined, or takes no more. Blocked geometry is none of
    the solver's, which takes any dimension of it: it is held by dimensions instead, which do not count."""
    blocks = [(i, c.First) for i, c in enumerate(sketch.Constraints) if c.Type == "Block"]
    for number, _ in reversed(blocks):
        sketch.delConstraint(number)
    for _, geometry in blocks:
        for constraint in list(candidates(sketch, geometry)):
            takes(sketch, constraint)
    count = 0
    for geometry in range(sketch.GeometryCount):
        for constraint in list(candidates(sketch, geometry)):
            if sketch.FullyConstrained:
                return count
            count += takes(sketch, constraint)
    return count


def weights(sketch):
    """Of splines, which FreeCAD lets change and drawings do not: the radii of the circles at control points."""
    return sum(1 for c in sketch.Constraints
               if c.Type == "InternalAlignment" and type(sketch.Geometry[c.First]).__name__ == "Circle")


class Found:
    def __init__(self, file):
        document = FreeCAD.openDocument(str(file))
        sketch = document.getObject("Sketch001")
        before = [numbers(shape) for shape in sketch.Geometry]
        sketch.touch()
        document.recompute()
        self.status = sketch.solve()
        after = [numbers(shape) for shape in sketch.Geometry]
        self.moved = max((abs(a - b) for p, q in zip(before, after) for a, b in zip(p, q)), default=0.0)
        self.errors = [o.Name for o in document.Objects if "Invalid" in o.State]
        self.freedom = freedom(sketch) - weights(sketch)
        FreeCAD.closeDocument(document.Name)


# What the program finds.

def run(*arguments):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)


def our_freedom(file):
    done = run("show", f"{file}#Sketch001", "--json")
    return json.loads(done.stdout)["degrees_of_freedom"] if done.returncode == 0 else None


def at(point):
    return f"{point[0]:.9g},{point[1]:.9g}"


def between(a, b, t):
    return [a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])]


def beside(a, b, t, to_the_left):
    """As far beside the point between two others as their distance times a factor."""
    point = between(a, b, t)
    return [point[0] - to_the_left * (b[1] - a[1]), point[1] + to_the_left * (b[0] - a[0])]


def edits_of(drawing, rng):
    """Edits of each command that this drawing may take, by verb."""
    entities = [e for e in drawing["entities"] if not e.get("fixed")]
    lines = [e for e in entities if e["type"] == "line"]
    rounds = [e for e in entities if e["type"] in ("circle", "arc")]
    dimensions = [c for c in drawing["constraints"] if "value" in c]
    names = [e["id"] for e in entities]
    line = rng.choice(lines)
    a, b = line["start"], line["end"]
    found = {
        "break": [f"break {line['id']} at {at(between(a, b, 0.5))}"],
        "break out": [f"break {line['id']} at {at(between(a, b, 0.3))} to {at(between(a, b, 0.6))}"],
        "lengthen": [f"lengthen {line['id']} end by 3"],
        "move": [f"move {line['id']} by 4,3"],
        "rotate": [f"rotate {line['id']} about {at(a)} by 10"],
        "scale": [f"scale {' '.join(names)} about 0,0 by 1.5"],
        "mirror": [f"mirror {line['id']} about x_axis"],
        "mirror keep": [f"mirror {line['id']} about y_axis keep"],
        "align": [f"align {line['id']} from {at(a)} to 2,3"],
        "drag": [f"drag {line['id']}.end by 1,2"],
        "stretch": [f"stretch window {at([b[0] - 1, b[1] - 1])} {at([b[0] + 1, b[1] + 1])} by 2,1"],
        "set": [f"set {line['id']} end {at([b[0] + 1, b[1] + 2])}"],
        "copy": [f"copy {line['id']} by 5,7"],
        "copy grid": [f"copy {line['id']} by 5,7 times 2 and by 20,0 times 1"],
        "copy ring": [f"copy {line['id']} around 0,0 by 30 times 2"],
        "copy linked": [f"copy {line['id']} by 5,7 times 2 linked"],
        "offset": [f"offset {line['id']} by 2"],
        "erase": [f"erase {rng.choice(names)}"],
        "draw": ["draw line 100,0 110,5", "draw circle 100,20 radius 4", "draw arc centre 120,0 from 125,0 to 120,5",
                 "draw point 90,90"],
        "define": ["define"],
        "trim": [f"draw line {at(beside(a, b, 0.6, 0.2))} {at(beside(a, b, 0.6, -0.2))} as cutter",
                 f"trim {line['id']} at {at(between(a, b, 0.9))} by cutter"],
        "extend": [f"draw line {at(beside(a, b, 1.3, 1))} {at(beside(a, b, 1.3, -1))} as wall",
                   f"extend {line['id']} end to wall"],
        "constrain": [f"constrain distance {line['id']}"],
        "constrain level": [f"constrain horizontal {line['id']}"],
        "fix": [f"constrain fixed {line['id']}.start", f"constrain fixed {line['id']}.end"],
    }
    if rounds:
        each = rng.choice(rounds)
        found["set radius"] = [f"set {each['id']} radius {each['radius'] + 1:.9g}"]
        found["break ring"] = [f"break {each['id']} at {at([each['centre'][0] + each['radius'], each['centre'][1]])} to "
                               f"{at([each['centre'][0], each['centre'][1] + each['radius']])}"]
    corners = [c["refs"] for c in drawing["constraints"] if c["type"] == "coincident"
               and {r["entity"] for r in c["refs"]} <= {l["id"] for l in lines}]
    if corners:
        corner = rng.choice(corners)
        pair = f"{corner[0]['entity']} {corner[1]['entity']}"
        found["fillet"] = [f"fillet {pair} radius 2"]
        found["fillet keep"] = [f"fillet {pair} radius 2 keep corner"]
        found["chamfer"] = [f"chamfer {pair} by 2"]
        found["join"] = [f"join {pair}"]
        found["explode"] = [f"join {pair}", f"explode {corner[0]['entity']}_2"]
    if dimensions:
        each = rng.choice(dimensions)
        angle = each["type"] == "angle"
        value = math.degrees(each["value"]) if angle else each["value"]
        found["set dimension"] = [f"set {each['id']} {value * 1.1:.9g}"]
        found["measure"] = [f"set {each['id']} measured"]
        found["delete"] = [f"delete {rng.choice(drawing['constraints'])['id']}"]
        lengths = [d for d in dimensions if d["type"] != "angle"]
        if len(lengths) > 1:
            first, second = lengths[0], lengths[-1]
            if "formula" not in first and first["id"] not in second.get("formula", ""):
                found["formula"] = [f"set {second['id']} = {first['id']} * {second['value'] / first['value']:.12g} + 1"]
        found["parameter"] = ["parameter depth = 12", f"set {lengths[0]['id']} = depth"] if lengths else []
    return {verb: texts for verb, texts in found.items() if texts}


def same_entries(before, after):
    """All entries but the text, as they are packed, and the text but for the properties of the sketch."""
    with zipfile.ZipFile(before) as a, zipfile.ZipFile(after) as b:
        if a.namelist() != b.namelist():
            return False
        for name in a.namelist():
            if name != "Document.xml" and (raw(before, a.getinfo(name)) != raw(after, b.getinfo(name))):
                return False
        return rest(a.read("Document.xml")) == rest(b.read("Document.xml"))


def raw(file, info):
    with open(file, "rb") as data:
        data.seek(info.header_offset + 26)
        name, extra = (int.from_bytes(data.read(2), "little") for _ in range(2))
        data.seek(name + extra, 1)
        return data.read(info.compress_size)


def rest(text):
    begin = text.index(b"<Object name=\"Sketch001\"")
    own = text[begin:]
    for name in (b"Geometry", b"Constraints", b"ExpressionEngine"):
        own = re.sub(b"<Property name=\"" + name + b"\".*?</Property>", b"", own, flags=re.S)
    return text[:begin] + own


def judge(name, file, verb, texts):
    out = file.with_name("out.FCStd")
    done = run("edit", f"{file}#Sketch001", *texts, "-o", out)
    if done.returncode != 0:
        seen[verb, "refused"] += 1
        return
    seen[verb, "done"] += 1
    problems = []
    if not same_entries(file, out):
        problems.append("other parts of the archive changed")
    try:
        found = Found(out)
    except Exception as error:  # whatever FreeCAD throws
        failures.append(f"{name}: {'; '.join(texts)}: FreeCAD: {error}")
        return
    if found.status != 0:
        problems.append(f"FreeCAD's solver answers {found.status}")
    if found.moved > NEAR:
        problems.append(f"FreeCAD moves it by {found.moved:.3g}")
    if found.errors:
        problems.append(f"FreeCAD calls invalid: {found.errors}")
    ours = our_freedom(out)
    if ours != found.freedom:
        problems.append(f"degrees of freedom: FreeCAD {found.freedom}, here {ours}")
    if problems:
        failures.append(f"{name}: {'; '.join(texts)}: {'; '.join(problems)}\n    {done.stderr.strip()}")


def main():
    count = 0
    with tempfile.TemporaryDirectory() as folder:
        for make in MAKERS:
            for seed in range(SEEDS):
                name = f"{make.__name__}{seed}"
                if WANTED and name not in WANTED:
                    continue
                file = pathlib.Path(folder) / f"{name}.FCStd"
                write_document(make, seed, file)
                count += 1
                base, ours = Found(file), our_freedom(file)
                drawing_file = file.with_suffix(".json")
                done = run("convert", f"{file}#Sketch001", drawing_file)
                if done.returncode != 0 or ours != base.freedom:
                    failures.append(f"{name}: FreeCAD has {base.freedom} degrees of freedom, here {ours}: {done.stderr}")
                    continue
                if done.stderr:
                    failures.append(f"{name}: not all was read: {done.stderr}")
                drawing = json.loads(drawing_file.read_text())
                for verb, texts in edits_of(drawing, random.Random(seed)).items():
                    judge(name, file, verb, texts)
    verbs = sorted({verb for verb, _ in seen})
    for verb in verbs:
        print(f"{verb}: {seen[verb, 'done']} done, {seen[verb, 'refused']} refused")
        if not WANTED and not IS_SAMPLE and seen[verb, "done"] == 0:
            failures.append(f"{verb}: refused everywhere")
    if not WANTED and not IS_SAMPLE and count < 30:
        failures.append(f"only {count} documents")
    print(f"{count} documents, {sum(n for (_, how), n in seen.items() if how == 'done')} edits, {len(failures)} failures")
    print("\n".join(failures[:60]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
