"""The schema of drawing files against real drawings, and against drawings that it must refuse.

Usage: schema_test.py SCHEMA DRAWING_OR_FOLDER...
"""

import copy
import json
import os
import pathlib
import sys

import jsonschema


def drawings(arguments):
    for argument in map(pathlib.Path, arguments):
        files = sorted(argument.rglob("*.json")) if argument.is_dir() else [argument]
        for file in files:
            if file.name != "manifest.json":
                yield file, json.loads(file.read_text(encoding="utf-8"))


def entity_of(drawing, kind):
    return next(entity for entity in drawing["entities"] if entity["type"] == kind)


def constraint_of(drawing, kind):
    return next(constraint for constraint in drawing["constraints"] if constraint["type"] == kind)


# What is wrong, and how to make it so in a drawing that has every kind.
FAULTS = {
    "no units": lambda d: d.pop("units"),
    "no entities": lambda d: d.pop("entities"),
    "unknown field": lambda d: d.update(colour="red"),
    "angles in degrees": lambda d: d["units"].update(angle="deg"),
    "unknown length unit": lambda d: d["units"].update(length="parsec"),
    "plane without an axis": lambda d: d["plane"].pop("x_axis"),
    "unknown entity type": lambda d: entity_of(d, "line").update(type="lien"),
    "colour of no palette": lambda d: entity_of(d, "line").update(colour=300),
    "layer without a name": lambda d: d.update(layers=[{"colour": 1}]),
    "entity without an id": lambda d: entity_of(d, "line").pop("id"),
    "empty id": lambda d: entity_of(d, "line").update(id=""),
    "line without an end": lambda d: entity_of(d, "line").pop("end"),
    "line with a radius": lambda d: entity_of(d, "line").update(radius=1),
    "point of three numbers": lambda d: entity_of(d, "point").update(position=[0, 0, 0]),
    "negative radius": lambda d: entity_of(d, "circle").update(radius=-1),
    "arc without a radius": lambda d: entity_of(d, "arc").pop("radius"),
    "ratio above 1": lambda d: entity_of(d, "ellipse").update(ratio=1.5),
    "elliptical arc without a parameter": lambda d: entity_of(d, "elliptical_arc").pop("end_param"),
    "degree 0": lambda d: entity_of(d, "spline").update(degree=0),
    "weight 0": lambda d: entity_of(d, "spline").update(weights=[0, 1]),
    "ray without a direction": lambda d: entity_of(d, "ray").pop("direction"),
    "xline without a point": lambda d: entity_of(d, "xline").pop("point"),
    "polyline of one vertex": lambda d: entity_of(d, "polyline").update(vertices=[[0, 0]]),
    "negative vertex identifier": lambda d: entity_of(d, "polyline").update(ids=[-1, 0, 0]),
    "text of no height": lambda d: entity_of(d, "text").update(height=0),
    "mtext without text": lambda d: entity_of(d, "mtext").pop("text"),
    "flag as a number": lambda d: entity_of(d, "line").update(fixed=1),
    "unknown constraint type": lambda d: constraint_of(d, "tangent").update(type="touching"),
    "constraint without an id": lambda d: constraint_of(d, "tangent").pop("id"),
    "constraint without refs": lambda d: constraint_of(d, "tangent").pop("refs"),
    "one ref too few": lambda d: constraint_of(d, "coincident")["refs"].pop(),
    "ref without a place": lambda d: constraint_of(d, "tangent")["refs"][0].pop("point"),
    "unknown place": lambda d: constraint_of(d, "tangent")["refs"][0].update(point="middle"),
    "place with needless zero": lambda d: constraint_of(d, "tangent")["refs"][0].update(point="segment:01"),
    "the same ref twice": lambda d: constraint_of(d, "coincident")["refs"].__setitem__(
        1, constraint_of(d, "coincident")["refs"][0]),
    "dimension without a value": lambda d: constraint_of(d, "radius").pop("value"),
    "radius 0": lambda d: constraint_of(d, "radius").update(value=0),
    "formula of a relation": lambda d: constraint_of(d, "tangent").update(formula="1"),
    "formula of a measured dimension": lambda d: constraint_of(d, "radius").update(formula="1", driving=False),
    "empty formula": lambda d: constraint_of(d, "radius").update(formula=""),
    "parameter without a formula": lambda d: d.update(parameters=[{"name": "a", "value": 1}]),
    "parameter with a unit": lambda d: d.update(parameters=[{"name": "a", "formula": "1", "value": 1, "unit": "mm"}]),
    "value of a relation": lambda d: constraint_of(d, "tangent").update(value=1),
    "measured relation": lambda d: constraint_of(d, "tangent").update(driving=False),
    "internal without a role": lambda d: constraint_of(d, "internal").pop("role"),
    "unknown role": lambda d: constraint_of(d, "internal").update(role="focus3"),
    "role of a relation": lambda d: constraint_of(d, "tangent").update(role="focus1"),
    "composite without members": lambda d: constraint_of(d, "composite").pop("members"),
    "composite with refs": lambda d: constraint_of(d, "composite").update(
        refs=[{"entity": "g0", "point": "whole"}]),
    "members of a relation": lambda d: constraint_of(d, "tangent").update(members=["c0"]),
}


def main(schema_file, arguments):
    schema = json.loads(pathlib.Path(schema_file).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = []
    count = 0
    for file, drawing in drawings(arguments):
        count += 1
        for error in validator.iter_errors(drawing):
            failures.append(f"{file}: {error.json_path}: {error.message[:200]}")
        if file.name == "all-kinds.json":
            for description, spoil in FAULTS.items():
                spoilt = copy.deepcopy(drawing)
                spoil(spoilt)
                if validator.is_valid(spoilt):
                    failures.append(f"the schema lets pass: {description}")
            kinds = {entity["type"] for entity in drawing["entities"]}
            for kind in schema["$defs"]["entity"]["properties"]["type"]["enum"]:
                if kind not in kinds:
                    failures.append(f"{file} has no {kind}")
    print(f"{count} drawings, {len(FAULTS)} faults, {len(failures)} failures")
    print("\n".join(failures[:50]))
    return 1 if failures or count < 7 else 0


if __name__ == "__main__":
    more = [os.environ["HOLDFAST_DRAWINGS"]] if "HOLDFAST_DRAWINGS" in os.environ else []
    sys.exit(main(sys.argv[1], sys.argv[2:] + more))
