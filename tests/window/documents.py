"""FreeCAD documents to drop on the window."""
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
