"""Drawings to drop on the window: FreeCAD documents, and a large one."""
import io
import zipfile

LINE = """<Geometry type="Part::GeomLineSegment"><GeoExtensions count="1"><GeoExtension
 type="Sketcher::SketchGeometryExtension" internalGeometryType="0"
 geometryModeFlags="00000000000000000000000000000000" geometryLayer="0"/></GeoExtensions>
<LineSegment StartX="0" StartY="0" StartZ="0" EndX="{}" EndY="0" EndZ="0"/></Geometry>"""


def document(**sketches):
    """The bytes of one that has sketches of one line each, as long as is said."""
    names = "".join(f'<Object type="Sketcher::SketchObject" name="{name}" id="1"/>' for name in sketches)
    bodies = "".join(
        f'<Object name="{name}"><Properties Count="3">'
        '<Property name="Constraints" type="Sketcher::PropertyConstraintList"><ConstraintList count="0"/></Property>'
        f'<Property name="Geometry" type="Part::PropertyGeometryList"><GeometryList count="1">{LINE.format(length)}'
        f'</GeometryList></Property><Property name="Label" type="App::PropertyString"><String value="{name} of a test"/>'
        '</Property></Properties></Object>' for name, length in sketches.items())
    text = ('<?xml version="1.0" encoding="utf-8"?>\n<Document SchemaVersion="4" ProgramVersion="0.20R" FileVersion="1">\n'
            f'<Objects Count="{len(sketches)}">{names}</Objects>\n<ObjectData Count="{len(sketches)}">{bodies}</ObjectData>\n'
            '</Document>\n')
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w") as packed:
        packed.writestr("Document.xml", text)
    return archive.getvalue()


def ladder(rungs):
    """Rectangles side by side that share their corners: all of them one part, and a large one."""
    entities, constraints = [], []

    def tie(kind, *places):
        constraints.append({"id": f"c{len(constraints)}", "type": kind,
                            "refs": [{"entity": entity, "point": point} for entity, point in places]})
    for i in range(rungs):
        for name, start, end, kind in ((f"bottom{i}", [10 * i, 0], [10 * i + 10, 0], "horizontal"),
                                       (f"side{i}", [10 * i + 10, 0], [10 * i + 10, 8], "vertical"),
                                       (f"top{i}", [10 * i + 10, 8], [10 * i, 8], "horizontal")):
            entities.append({"id": name, "type": "line", "start": start, "end": end})
            tie(kind, (name, "whole"))
        tie("coincident", (f"bottom{i}", "end"), (f"side{i}", "start"))
        tie("coincident", (f"side{i}", "end"), (f"top{i}", "start"))
        if i:
            tie("coincident", (f"bottom{i}", "start"), (f"bottom{i - 1}", "end"))
            tie("coincident", (f"top{i}", "end"), (f"top{i - 1}", "start"))
    constraints.append({"id": "wide", "type": "distance", "refs": [{"entity": "top0", "point": "whole"}], "value": 10.0, "driving": False})
    return {"name": "ladder", "units": {"length": "mm", "angle": "rad"}, "entities": entities, "constraints": constraints}
