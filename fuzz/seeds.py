#!/usr/bin/env python3
"""Makes the files from which the fuzz targets start, out of the examples and of small files of every kind.

Usage: seeds.py SOURCE_FOLDER OUTPUT_FOLDER
"""
import pathlib
import re
import struct
import sys

SOURCE, OUTPUT = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
LARGEST = 20_000  # bytes: longer seeds are mutated too slowly


def put(target, name, data):
    folder = OUTPUT / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data if isinstance(data, bytes) else data.encode())


def lines(pairs):
    """Groups of a DXF text from "code value, code value"."""
    return "".join("\n".join(pair.strip().split(" ", 1)) + "\n" for pair in pairs.split(",") if pair.strip())


ENTITIES = {
    "line": "0 LINE, 5 2A, 330 1F, 100 AcDbEntity, 8 Cut, 62 1, 370 35, 100 AcDbLine, 10 0, 20 0, 30 0, 11 10, 21 5, "
            "31 0, 1001 THEIRS, 1070 3",
    "arc": "0 ARC, 8 0, 10 1, 20 2, 40 3, 50 350, 51 90, 210 0, 220 0, 230 -1",
    "circle": "0 CIRCLE, 8 0, 10 5, 20 5, 40 2.5",
    "ellipse": "0 ELLIPSE, 10 0, 20 0, 11 5, 21 1, 40 0.5, 41 0, 42 6.283185307179586",
    "elliptical_arc": "0 ELLIPSE, 10 0, 20 0, 11 5, 21 1, 40 0.5, 41 0.5, 42 3",
    "spline": "0 SPLINE, 70 8, 71 3, 72 8, 73 4, 74 0, 40 0, 40 0, 40 0, 40 0, 40 1, 40 1, 40 1, 40 1, 10 0, 20 0, "
              "10 1, 20 2, 10 3, 20 2, 10 4, 20 0",
    "fit_spline": "0 SPLINE, 70 8, 71 3, 72 0, 73 0, 74 3, 11 0, 21 0, 11 1, 21 2, 11 3, 21 1",
    "lwpolyline": "0 LWPOLYLINE, 90 3, 70 1, 43 0.5, 10 0, 20 0, 42 0.5, 10 4, 20 0, 10 4, 20 3",
    "polyline": "0 POLYLINE, 66 1, 70 0, 0 VERTEX, 10 0, 20 0, 42 1, 0 VERTEX, 10 4, 20 0, 0 VERTEX, 10 5, 20 5, "
                "0 SEQEND",
    "ray": "0 RAY, 10 0, 20 0, 11 1, 21 0",
    "xline": "0 XLINE, 10 0, 20 0, 11 0, 21 1",
    "point": "0 POINT, 10 1, 20 2",
    "text": "0 TEXT, 10 0, 20 0, 40 2.5, 1 name, 50 30, 72 1, 11 4, 21 0",
    "mtext": "0 MTEXT, 10 0, 20 0, 40 2.5, 1 one\\Ptwo \\U+00E9, 11 1, 21 0",
    "insert": "0 INSERT, 66 1, 2 PLUG, 10 3, 20 4, 41 2, 42 -2, 50 30, 70 2, 71 2, 44 5, 45 5, 0 ATTRIB, 10 0, 20 0, "
              "40 1, 1 A1, 2 NO, 0 SEQEND",
    "hatch": "0 HATCH, 91 2, 92 3, 72 1, 73 1, 93 3, 10 0, 20 0, 42 0.5, 10 4, 20 0, 10 4, 20 3, 97 0, 92 1, 93 2, "
             "72 1, 10 0, 20 0, 11 4, 21 0, 72 2, 10 0, 20 0, 40 4, 50 0, 51 180, 73 1, 97 0",
    "dimension": "0 LINE, 10 0, 20 0, 11 30, 21 40, 0 DIMENSION, 2 *D1, 70 1, 10 1, 20 2, 13 0, 23 0, 14 30, 24 40, "
                 "42 50",
    "angle": "0 LINE, 10 0, 20 0, 11 40, 21 0, 0 LINE, 10 0, 20 0, 11 30, 21 40, 0 DIMENSION, 70 2, 13 0, 23 0, 14 40, "
             "24 0, 15 0, 25 0, 10 30, 20 40, 16 9, 26 5",
    "radius": "0 CIRCLE, 10 5, 20 5, 40 5, 0 DIMENSION, 70 4, 10 5, 20 5, 15 8, 25 9, 0 DIMENSION, 70 3, 10 2, 20 1, "
              "15 8, 25 9",
}
HEAD = ("999 a comment, 0 SECTION, 2 HEADER, 9 $ACADVER, 1 {version}, 9 $DWGCODEPAGE, 3 ANSI_1252, 9 $INSUNITS, 70 4, "
        "9 $HANDSEED, 5 FF, 0 ENDSEC, 0 SECTION, 2 TABLES, 0 TABLE, 2 LAYER, 0 LAYER, 2 Cut, 62 -1, 6 DASHED, 70 1, "
        "0 ENDTAB, 0 ENDSEC, 0 SECTION, 2 BLOCKS, 0 BLOCK, 2 PLUG, 10 1, 20 1, 0 LINE, 10 0, 20 0, 11 1, 21 1, "
        "0 CIRCLE, 10 0, 20 0, 40 1, 0 ENDBLK, 0 BLOCK, 2 *D1, 0 LINE, 10 0, 20 5, 11 9, 21 5, 0 ENDBLK, 0 ENDSEC, "
        "0 SECTION, 2 ENTITIES")
TAIL = "0 ENDSEC, 0 EOF"


def dxf(entities, version):
    return lines(HEAD.format(version=version)) + "".join(lines(e) for e in entities) + lines(TAIL)


def is_whole(code):
    return 60 <= code < 80 or 90 <= code < 100 or 170 <= code < 180 or 370 <= code < 390 or 1060 <= code < 1072


def binary(text, wide):
    """The same in the binary form; codes of one byte are those of the older one."""
    data = b"AutoCAD Binary DXF\r\n\x1a\x00"
    parts = text.splitlines()[2:]  # without the comment
    for code, value in zip(map(int, parts[::2]), parts[1::2]):
        data += struct.pack("<H", code) if wide else (
            struct.pack("B", code) if code < 255 else b"\xff" + struct.pack("<H", code))
        if 10 <= code < 60 or 210 <= code < 240:
            data += struct.pack("<d", float(value))
        elif code in (90, 91, 92, 93, 97, 1071):
            data += struct.pack("<i", int(value))
        elif is_whole(code):
            data += struct.pack("<h", int(value))
        else:
            data += value.encode() + b"\0"
    return data


def make_dxf():
    for name, entity in ENTITIES.items():
        put("dxf", name, dxf([entity], "AC1009" if name == "polyline" else "AC1032"))
        put("dxf_binary", name, binary(dxf([entity], "AC1032"), True))
    put("dxf", "crlf", dxf(ENTITIES.values(), "AC1021").replace("\n", "\r\n"))
    put("dxf", "early", lines("0 SECTION, 2 ENTITIES, 0 ENDSEC, " + ENTITIES["line"] + ", 0 EOF"))
    put("dxf_binary", "old", binary(dxf([ENTITIES["line"], ENTITIES["polyline"]], "AC1009"), False))


GEOMETRY = {
    "LineSegment": 'StartX="0" StartY="0" StartZ="0" EndX="9" EndY="1" EndZ="0"',
    "Circle": 'CenterX="1" CenterY="2" CenterZ="0" NormalX="0" NormalY="0" NormalZ="1" AngleXU="0" Radius="3"',
    "ArcOfCircle": 'CenterX="1" CenterY="2" CenterZ="0" NormalX="0" NormalY="0" NormalZ="1" AngleXU="0" Radius="3" '
                   'StartAngle="0" EndAngle="2"',
    "Ellipse": 'CenterX="1" CenterY="2" CenterZ="0" NormalX="0" NormalY="0" NormalZ="1" AngleXU="0" MajorRadius="3" '
               'MinorRadius="2"',
    "Point": 'X="1" Y="2" Z="0"',
}


def fcstd(geometry, constraints, expressions=""):
    shapes = "".join(f'<Geometry type="Part::Geom{kind}"><Construction value="0"/><{kind} {shape}/>'
                     "</Geometry>" for kind, shape in geometry)
    return ('<?xml version="1.0" encoding="utf-8"?>\n<Document SchemaVersion="4" ProgramVersion="0.21"><Objects '
            'Count="1"><Object type="Sketcher::SketchObject" name="Sketch" id="1"/></Objects><ObjectData Count="1">'
            '<Object name="Sketch"><Properties Count="4"><Property name="Label" type="App::PropertyString">'
            '<String value="Outline"/></Property><Property name="Geometry" type="Part::PropertyGeometryList">'
            f'<GeometryList count="{len(geometry)}">{shapes}</GeometryList></Property><Property name="Constraints" '
            f'type="Sketcher::PropertyConstraintList"><ConstraintList count="{len(constraints)}">'
            + "".join(constraints) + '</ConstraintList></Property><Property name="ExpressionEngine" '
            f'type="App::PropertyExpressionEngine"><ExpressionEngine count="{expressions.count("<Expression ")}">'
            f"{expressions}</ExpressionEngine></Property></Properties></Object></ObjectData></Document>\n")


def constrain(kind, value, *refs):
    refs = [*refs, -2000, 0, -2000, 0, -2000, 0][:6]
    names = ("First", "FirstPos", "Second", "SecondPos", "Third", "ThirdPos")
    return (f'<Constrain Name="" Type="{kind}" Value="{value}" ' + " ".join(f'{n}="{r}"' for n, r in zip(names, refs))
            + ' LabelDistance="10" LabelPosition="0" IsDriving="1" IsInVirtualSpace="0" IsActive="1"/>')


def make_fcstd():
    for kind, shape in GEOMETRY.items():
        put("fcstd", kind, fcstd([(kind, shape)], [constrain(17, 0, 0, 0)]))
    two = [("LineSegment", GEOMETRY["LineSegment"])] * 2
    put("fcstd", "constraints", fcstd(two + [("Circle", GEOMETRY["Circle"])], [
        constrain(1, 0, 0, 2, 1, 1), constrain(2, 0, 0, 0), constrain(5, 0, 1, 0, 2, 0), constrain(6, 9, 0, 1, 0, 2),
        constrain(9, 1.5, 0, 2, 1, 1), constrain(11, 3, 2, 0), constrain(14, 0, 0, 1, 1, 2, -1, 1)]))
    put("fcstd", "expressions", fcstd(two, [constrain(6, 9, 0, 1, 0, 2), constrain(7, 18, 1, 1, 1, 2)],
                                      '<Expression path="Constraints[1]" expression="2 * Constraints[0]"/>'))


SVGS = {
    "shapes": '<line x1="0" y1="0" x2="9" y2="1"/><circle cx="5" cy="5" r="2"/><ellipse cx="1" cy="1" rx="3" ry="2"/>'
              '<rect x="1" y="1" width="5" height="4" rx="1"/><polyline points="0,0 1,1 2,0"/><polygon points="0 0 1 1 2 0"/>',
    "paths": '<path d="M0 0l1 1h2v3H0z m5 5 A 3 2 30 1 0 9 9 C1 2 3 4 5 6 S 7 8 9 9 Q1 2 3 4 T5 6"/>',
    "transforms": '<g transform="translate(1 2) rotate(30, 1, 1) scale(2 -1) skewX(10) matrix(1 0 0 1 2 3)">'
                  '<circle r="2"/></g>',
    "uses": '<defs><symbol id="s" viewBox="0 0 2 2"><path d="M0 0L1 1"/></symbol></defs><use href="#s" x="3"/>'
            '<svg x="1" width="5" height="5" viewBox="0 0 1 1"><line x2="1"/></svg>',
    "styles": '<style>.a { stroke: #f00; display: inline } #b, line { stroke: blue }</style><g inkscape:label="Cut" '
              'inkscape:groupmode="layer"><line class="a" x2="3" style="stroke:rgb(1,2,3)"/><line id="b" y2="3"/></g>',
    "others": '<text x="1">a &amp; &#233;</text><image/><switch><g requiredFeatures="x"/><line x2="4"/></switch>'
              '<!-- note --><![CDATA[ ]]>',
}


def make_svg():
    for name, body in SVGS.items():
        put("svg", name, '<?xml version="1.0"?>\n<svg xmlns="http://www.w3.org/2000/svg" width="20mm" height="2cm" '
                         f'viewBox="0 0 20 20" preserveAspectRatio="xMidYMin slice">{body}</svg>\n')


def make_from_examples():
    for file in sorted((SOURCE / "examples").rglob("*")):
        target = {".json": "json", ".dxf": "dxf", ".slvs": "slvs", ".svg": "svg"}.get(file.suffix)
        if target and file.stat().st_size <= LARGEST and "expected" not in file.name:
            put(target, file.name, file.read_bytes())
    put("json", "all-kinds", (SOURCE / "tests/formats/data/all-kinds.json").read_bytes())


def make_edits():
    """Every form in which the reference shows an edit, and what the examples and the tests of the program edit."""
    texts = set(re.findall(r"^\| `([^`]+)` \|", (SOURCE / "docs/reference.md").read_text(), re.M))
    for file in (SOURCE / "examples/commands").glob("*.edit"):
        texts |= set(file.read_text().splitlines())
    for test in (SOURCE / "tests/cli").glob("*.py"):
        texts |= set(re.findall(r'"((?:align|break|trim|move|copy|set|fillet|draw|constrain|mirror|define|drag|join|offset'
                                r'|stretch|scale|rotate) [^"{}\\]+)"', test.read_text()))
    for number, text in enumerate(sorted(texts)):
        put("edit_text", f"{number:03}", text)


if __name__ == "__main__":
    make_dxf()
    make_fcstd()
    make_svg()
    make_from_examples()
    make_edits()
    print(", ".join(f"{len(list(f.iterdir()))} for {f.name}" for f in sorted(OUTPUT.iterdir())))
