"""A drawing of two lines that meet, and a folder for tests that run the program on such."""
import json
import pathlib
import tempfile
import unittest


def line(name, start, end):
    return {"id": name, "type": "line", "start": list(start), "end": list(end)}


def constraint(name, kind, *places, **more):
    return {"id": name, "type": kind, "refs": [{"entity": e, "point": at} for e, at in places], **more}


def drawing(entities, constraints):
    return {"name": "corner", "license": "", "units": {"length": "mm", "angle": "rad"}, "entities": entities,
            "constraints": constraints}


CORNER = drawing([line("a", (0, 0), (10, 0)), line("b", (10, 0), (10, 5))],
                 [constraint("tie", "coincident", ("a", "end"), ("b", "start")),
                  constraint("level", "horizontal", ("a", "whole"))])


class InAFolder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = pathlib.Path(self.folder.name)

    def file(self, name, content):
        path = self.path / name
        path.write_text(content if isinstance(content, str) else json.dumps(content))
        return path
