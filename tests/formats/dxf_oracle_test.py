"""Holds the DXF reader and writer against ezdxf's reading of the same files.

Usage: dxf_oracle_test.py PROBE ALL_KINDS.json DXF_OR_FOLDER...
"""

import collections
import io
import json
import math
import os
import pathlib
import random
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode
from ezdxf.lldxf.tagwriter import TagCollector
from ezdxf.math import BSpline, OCS, Vec3

AS_A_WHOLE = {"INSERT", "HATCH", "DIMENSION"}  # drawn, and no entities
READ = {"LINE", "ARC", "CIRCLE", "ELLIPSE", "LWPOLYLINE", "POLYLINE", "SPLINE", "RAY", "XLINE", "POINT", "TEXT", "MTEXT"}
failures = []


def expect(condition, message):
    if not condition:
        failures.append(message)


def near(a, b, tolerance=1e-9):
    return all(abs(p - q) <= tolerance * max(1.0, abs(p), abs(q)) for p, q in zip(a, b)) and len(a) == len(b)


def plane(point):
    return [point[0], point[1]]


def run_probe(*arguments):
    done = subprocess.run([PROBE, *map(str, arguments)], capture_output=True, text=True, check=False)
    expect(done.returncode == 0, f"{arguments}: {done.stderr}")
    return [line.split("\t") for line in done.stdout.splitlines()]


# The plane point of one of our entities at a parameter from 0 to 1.

def on_arc(e, t):
    a = e["start_angle"] + t * (e["end_angle"] - e["start_angle"])
    return [e["centre"][0] + e["radius"] * math.cos(a), e["centre"][1] + e["radius"] * math.sin(a)]


def on_ellipse(e, t):
    first, last = e.get("start_param", 0.0), e.get("end_param", 2 * math.pi)
    p = first + t * (last - first)
    u, c, s = e["major_axis"], math.cos(p), e["ratio"] * math.sin(p)
    return [e["centre"][0] + c * u[0] - s * u[1], e["centre"][1] + c * u[1] + s * u[0]]


def b_spline(e):
    """The curve with its knots moved to begin at 0, which ezdxf takes for granted."""
    knots = [knot - e["knots"][0] for knot in e["knots"]]
    return BSpline([Vec3(*p) for p in e["control"]], order=e["degree"] + 1, knots=knots, weights=e.get("weights"))


def spline_range(e):
    return e["knots"][e["degree"]] - e["knots"][0], e["knots"][len(e["control"])] - e["knots"][0]


# What ezdxf says of an entity, compared with ours.

def compare_line(theirs, ours):
    return ours["type"] == "line" and near(plane(theirs.dxf.start) + plane(theirs.dxf.end), ours["start"] + ours["end"])


def compare_point(theirs, ours):
    return ours["type"] == "point" and near(plane(theirs.dxf.location), ours["position"])


def compare_ray(theirs, ours):
    kind = theirs.dxftype().lower()
    return ours["type"] == kind and near(
        plane(theirs.dxf.start) + plane(theirs.dxf.unit_vector), ours["point"] + ours["direction"])


def compare_circle(theirs, ours):
    centre = theirs.ocs().to_wcs(theirs.dxf.center)
    return ours["type"] == "circle" and near(plane(centre) + [theirs.dxf.radius], ours["centre"] + [ours["radius"]])


def compare_arc(theirs, ours):
    ends = [plane(theirs.start_point), plane(theirs.end_point)]
    if theirs.dxf.extrusion.z < 0:
        ends.reverse()
    middle_angle = math.radians(theirs.dxf.start_angle + ((theirs.dxf.end_angle - theirs.dxf.start_angle) % 360 or 360) / 2)
    middle = theirs.ocs().to_wcs(theirs.dxf.center + Vec3.from_angle(middle_angle, theirs.dxf.radius))
    return ours["type"] == "arc" and near(
        ends[0] + ends[1] + plane(middle), on_arc(ours, 0) + on_arc(ours, 1) + on_arc(ours, 0.5), 1e-8)


def compare_ellipse(theirs, ours):
    first, last = theirs.dxf.start_param, theirs.dxf.end_param
    sweep = (last - first) % (2 * math.pi) or 2 * math.pi
    params = [first + sweep * t for t in (0, 0.25, 0.5, 1)]
    expected = [plane(p) for p in theirs.vertices(params)]
    steps = [0, 0.25, 0.5, 1] if theirs.dxf.extrusion.z > 0 else [1, 0.75, 0.5, 0]
    full = sweep > 2 * math.pi - 1e-9
    if full:
        return ours["type"] == "ellipse" and all(on_ours(ours, p) < 1e-6 for p in expected)
    found = [on_ellipse(ours, t) for t in steps]
    return ours["type"] == "elliptical_arc" and all(near(p, q, 1e-7) for p, q in zip(expected, found))


def on_ours(e, point):
    """How far a point is off the implicit equation of an ellipse."""
    u = e["major_axis"]
    a2 = u[0] ** 2 + u[1] ** 2
    dx, dy = point[0] - e["centre"][0], point[1] - e["centre"][1]
    x, y = (dx * u[0] + dy * u[1]) / a2, (dy * u[0] - dx * u[1]) / (a2 * e["ratio"])
    return abs(x * x + y * y - 1)


def compare_vertices(vertices, bulges, closed, turned, ours):
    if ours["type"] != "polyline" or ours["closed"] != closed or len(vertices) != len(ours["vertices"]):
        return False
    sign = -1 if turned else 1
    last = len(vertices) if closed else len(vertices) - 1
    return all(near(plane(v), w) for v, w in zip(vertices, ours["vertices"])) and all(
        abs(sign * bulges[i] - ours["bulges"][i]) < 1e-12 for i in range(last))


def compare_lwpolyline(theirs, ours):
    bulges = [p[0] for p in theirs.get_points("b")]
    return compare_vertices(list(theirs.vertices_in_wcs()), bulges, bool(theirs.closed), theirs.dxf.extrusion.z < 0, ours)


def compare_polyline(theirs, ours):
    ocs = theirs.ocs() if theirs.is_2d_polyline else OCS()
    vertices = [v for v in theirs.vertices if not v.dxf.flags & 16]
    return compare_vertices([ocs.to_wcs(v.dxf.location) for v in vertices], [v.dxf.get("bulge", 0) for v in vertices],
                            bool(theirs.is_closed), theirs.dxf.extrusion.z < 0, ours)


def compare_spline(theirs, ours):
    if ours["type"] != "spline" or ours["degree"] != theirs.dxf.degree:
        return False
    control = [number for point in theirs.control_points for number in point[:2]]
    if not near(control, [number for point in ours["control"] for number in point]):
        return False
    return near(list(theirs.knots), ours["knots"]) and near(list(theirs.weights), ours.get("weights", []))


def compare_text(theirs, ours):
    position = theirs.ocs().to_wcs(theirs.dxf.insert)
    direction = theirs.ocs().to_wcs(Vec3.from_deg_angle(theirs.dxf.rotation))
    return ours["type"] == "text" and near(
        plane(position) + [theirs.dxf.height] + plane(direction),
        ours["position"] + [ours["height"], math.cos(ours["rotation"]), math.sin(ours["rotation"])]
    ) and ours["text"] == theirs.plain_text()


def compare_mtext(theirs, ours):
    rotation = math.radians(theirs.get_rotation())
    return ours["type"] == "mtext" and near(
        plane(theirs.dxf.insert) + [theirs.dxf.char_height, math.cos(rotation), math.sin(rotation)],
        ours["position"] + [ours["height"], math.cos(ours["rotation"]), math.sin(ours["rotation"])]
    ) and ours["text"] == theirs.plain_text()


COMPARE = {
    "LINE": compare_line, "POINT": compare_point, "RAY": compare_ray, "XLINE": compare_ray, "CIRCLE": compare_circle,
    "ARC": compare_arc, "ELLIPSE": compare_ellipse, "LWPOLYLINE": compare_lwpolyline, "POLYLINE": compare_polyline,
    "SPLINE": compare_spline, "TEXT": compare_text, "MTEXT": compare_mtext,
}


# Files that were reduced to their entities lack the class marks that ezdxf asks for in newer kinds of entities.

def class_marks():
    """The marks of an entity's groups, as ezdxf writes them, by the name of the entity."""
    space = ezdxf.new("R2000").modelspace()
    samples = [space.add_spline([(0, 0), (1, 1), (2, 0)]), space.add_lwpolyline([(0, 0), (1, 1)]),
               space.add_ellipse((0, 0)), space.add_ray((0, 0), (1, 0)), space.add_xline((0, 0), (1, 0)),
               space.add_mtext("a"), space.add_line((0, 0), (1, 1)), space.add_circle((0, 0), 1),
               space.add_arc((0, 0), 1, 0, 1), space.add_point((0, 0)), space.add_text("a")]
    return {e.dxftype(): [tag.value for tag in TagCollector.dxftags(e) if tag.code == 100] for e in samples}


def marked(dxf_file):
    """The file's entities with class marks in a file that ezdxf has begun."""
    common = {5, 6, 8, 48, 60, 62, 67, 330, 370, 420}
    marks, lines, owed = class_marks(), [], []
    source = [line.strip() for line in open(dxf_file, encoding="utf-8")]
    pairs = list(zip(source[::2], source[1::2]))
    begin = pairs.index(("2", "ENTITIES")) + 1
    for code, value in pairs[begin:pairs.index(("0", "ENDSEC"), begin)]:
        if int(code) not in common and owed and code != "0":
            lines += [part for mark in owed for part in ("100", mark)]
            owed = []
        lines += [code, value]
        if code == "0" and value in marks:
            lines += ["100", marks[value][0]]
            owed = marks[value][1:2]
    frame = io.StringIO()
    ezdxf.new("R2000").write(frame)
    head, tail = frame.getvalue().split("ENTITIES\n", 1)
    return head + "ENTITIES\n" + "\n".join(lines) + "\n" + tail


def loaded(dxf_file):
    try:
        return ezdxf.readfile(dxf_file)
    except ezdxf.DXFStructureError:
        return ezdxf.read(io.StringIO(marked(dxf_file)))


def is_stub(entity):
    return entity.dxftype() in ("LWPOLYLINE", "POLYLINE") and len(entity) < 2


def compare_file(dxf_file, folder):
    """Reads a file with both programs; the number of entities compared."""
    document = loaded(dxf_file)
    json_file = folder / "read.json"
    notices = [line for line in run_probe("read", dxf_file, json_file) if line[0] == "not understood"]
    if not json_file.exists():
        return 0
    ours = json.loads(json_file.read_text(encoding="utf-8"))["entities"]
    json_file.unlink()
    theirs = [e for e in document.modelspace() if e.dxftype() in READ and not is_stub(e)]
    others = collections.Counter(e.dxftype() for e in document.modelspace()
                                 if e.dxftype() not in READ | AS_A_WHOLE)
    others += collections.Counter(f"{e.dxftype()} of fewer than two vertices" for e in document.modelspace() if is_stub(e))
    counted = collections.Counter({what: int(number) for _, number, what in notices if what != "BLOCK definition"})
    expect(counted == others, f"{dxf_file}: counted {counted}, not understood are {others}")
    expect(len(ours) == len(theirs), f"{dxf_file}: {len(ours)} entities read, there are {len(theirs)}")
    for number, (a, b) in enumerate(zip(theirs, ours)):
        expect(COMPARE[a.dxftype()](a, b), f"{dxf_file}: entity {number}, {a.dxftype()}: {a.dxfattribs()} but {b}")
    return len(ours)


# A drawing made by ezdxf with every kind of entity, also on planes that look down.

def made_drawing(version, seed):
    rng = random.Random(seed)
    number = lambda: rng.uniform(-100, 100)
    point = lambda: (number(), number())
    document = ezdxf.new(version)
    space = document.modelspace()
    for _ in range(20):
        attributes = {"extrusion": rng.choice([(0, 0, 1), (0, 0, -1)])}
        space.add_line(point(), point())
        space.add_point(point())
        space.add_circle(point(), rng.uniform(0.1, 50), dxfattribs=attributes)
        space.add_arc(point(), rng.uniform(0.1, 50), rng.uniform(-360, 720), rng.uniform(-360, 720),
                      dxfattribs=attributes)
        space.add_text(f"%%c{rng.randint(0, 99)} %%p0.5 100%%%", dxfattribs={
            "insert": point(), "height": rng.uniform(1, 9), "rotation": rng.uniform(0, 360), **attributes})
        bulges = [(number(), number(), rng.choice([0, 0, rng.uniform(-2, 2)])) for _ in range(rng.randint(2, 9))]
        space.add_polyline2d(bulges, format="xyb", close=rng.random() < 0.5, dxfattribs=attributes)
        if version == "R12":
            continue
        space.add_lwpolyline(bulges, format="xyb", close=rng.random() < 0.5, dxfattribs=attributes)
        space.add_ray(point(), (rng.uniform(0.1, 1), number()))
        space.add_xline(point(), (number(), rng.uniform(0.1, 1)))
        space.add_ellipse(point(), point(), rng.uniform(0.01, 1), rng.uniform(0, 7), rng.uniform(7.1, 13),
                          dxfattribs=attributes)
        space.add_ellipse(point(), point(), rng.uniform(0.01, 1))
        control = [point() for _ in range(rng.randint(4, 12))]
        space.add_open_spline(control, degree=3)
        space.add_rational_spline(control, [rng.uniform(0.1, 5) for _ in control], degree=2)
        space.add_spline(degree=3).set_closed([(*p, 0) for p in control], degree=3)
        space.add_mtext("two\\Plines {\\fArial|b1;bold} \\H2.5;tall \\S1/2; 5%%d \\\\ \\{a\\}", {
            "insert": point(), "char_height": rng.uniform(1, 9), "rotation": rng.uniform(0, 360)})
    block = document.blocks.new("PART")
    block.add_line((0, 0), (1, 1))
    for _ in range(3):
        space.add_blockref("PART", point())
    if version != "R12":
        space.add_hatch().paths.add_polyline_path([(0, 0), (1, 0), (1, 1)])
    space.add_solid([(0, 0), (1, 0), (1, 1)])
    return document


# What our writer makes of a drawing.

def shown(text):
    return decode_dxf_unicode(text.plain_text())


def distance_to_chain(point, chain):
    best = math.inf
    for a, b in zip(chain, chain[1:]):
        dx, dy = b[0] - a[0], b[1] - a[1]
        square = dx * dx + dy * dy
        t = 0 if square == 0 else min(1, max(0, ((point[0] - a[0]) * dx + (point[1] - a[1]) * dy) / square))
        best = min(best, math.hypot(point[0] - a[0] - t * dx, point[1] - a[1] - t * dy))
    return best


def curve_points(e, count=400):
    if e["type"] in ("ellipse", "elliptical_arc"):
        return [on_ellipse(e, i / count) for i in range(count + 1)]
    curve = b_spline(e)
    first, last = spline_range(e)
    params = {first + (last - first) * i / count for i in range(count + 1)}
    params |= {k - e["knots"][0] for k in e["knots"] if first <= k - e["knots"][0] <= last}  # corners
    return [plane(p) for p in curve.points(sorted(params))]


def compare_flat(theirs, ours, tolerance):
    chain = [plane(v.dxf.location) for v in theirs.vertices]
    if theirs.is_closed:
        chain.append(chain[0])
    points = curve_points(ours)
    step = max(math.dist(a, b) for a, b in zip(points, points[1:]))
    off = max(distance_to_chain(p, chain) for p in points)
    back = max(distance_to_chain(p, points) for p in chain)
    return off <= tolerance * 1.0001 and back <= tolerance + step * step


def compare_written(json_file, folder, tolerance):
    """Writes a drawing and reads it with ezdxf; the number of entities compared."""
    dxf_file = folder / "written.dxf"
    notes = {line[0]: (int(line[1]), int(line[2])) for line in run_probe("write", json_file, dxf_file, tolerance)}
    document = ezdxf.readfile(dxf_file)
    expect(document.dxfversion == "AC1009", f"{json_file}: not the old form")
    auditor = document.audit()
    expect(not auditor.errors, f"{json_file}: {[e.message for e in auditor.errors]}")
    theirs = iter(list(document.modelspace()))
    count = 0
    for ours in json.loads(pathlib.Path(json_file).read_text(encoding="utf-8"))["entities"]:
        kind = ours["type"]
        if kind in ("xline", "ray"):
            expect(notes.get(ours["id"]) == (2, 0), f"{json_file}: {ours['id']} left out without a note")
            continue
        if kind == "spline" and ours["periodic"]:
            entity = next(theirs)
            expect(entity.is_closed and notes[ours["id"]] == (0, len(entity.vertices)), f"{json_file}: {ours['id']}")
            continue
        if kind == "mtext":
            lines = [next(theirs) for _ in ours["text"].split("\n")]
            expect([shown(t) for t in lines] == ours["text"].split("\n"), f"{json_file}: {ours['id']}")
            continue
        entity = next(theirs)
        count += 1
        layer = "REFERENCE" if ours.get("fixed") else "CONSTRUCTION" if ours.get("construction") else "0"
        expect(entity.dxf.layer == layer, f"{json_file}: {ours['id']} on layer {entity.dxf.layer}")
        if kind in ("ellipse", "elliptical_arc", "spline"):
            pieces = len(entity.vertices) - (0 if entity.is_closed else 1)
            expect(notes.get(ours["id"]) == (0, pieces), f"{json_file}: {ours['id']} flattened without a note")
            expect(compare_flat(entity, ours, tolerance), f"{json_file}: {ours['id']} is off by more than {tolerance}")
        elif kind == "text":
            expect(near(plane(entity.dxf.insert), ours["position"]) and shown(entity) == ours["text"],
                   f"{json_file}: {ours['id']}: {shown(entity)}")
        else:
            expect(COMPARE[entity.dxftype()](entity, ours), f"{json_file}: {ours['id']}: {entity.dxfattribs()} {ours}")
    expect(next(theirs, None) is None, f"{json_file}: more entities written than there are")
    return count


def main(all_kinds, arguments):
    files = []
    for argument in map(pathlib.Path, arguments):
        files += sorted(argument.rglob("*.dxf")) if argument.is_dir() else [argument]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        read = sum(compare_file(file, folder) for file in files)
        for version in ("R12", "R2000", "R2010"):
            for seed in range(2):
                made = folder / f"made-{version}-{seed}.dxf"
                made_drawing(version, seed).saveas(made)
                read += compare_file(made, folder)
        written = 0
        for file in [pathlib.Path(all_kinds), *sorted(p for a in arguments for p in pathlib.Path(a).rglob("*.json")
                                                      if p.name != "manifest.json")]:
            written += compare_written(file, folder, 0.01)
            written += compare_written(file, folder, 0.0001)
    print(f"{len(files)} files and 6 made ones, {read} entities read, {written} written, {len(failures)} failures")
    print("\n".join(failures[:20]))
    return 1 if failures or read < 1000 or written < 500 else 0


if __name__ == "__main__":
    PROBE = sys.argv[1]
    more = [os.environ["HOLDFAST_DXF"]] if "HOLDFAST_DXF" in os.environ else []
    sys.exit(main(sys.argv[2], sys.argv[3:] + more))
