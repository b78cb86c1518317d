"""What the program tells, against the schema of it; and tampered answers that the schema must refuse.

Usage: output_schema_test.py PROGRAM ROOT
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

PROGRAM, ROOT = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
SCHEMA = json.loads((ROOT / "docs/output.schema.json").read_text())
B, LOOSE = "examples/drawings/mounting-bracket.json", "examples/drawings/acrylic-case-top.dxf"
TORN = {"name": "", "license": "", "units": {"length": "mm", "angle": "rad"},
        "entities": [{"id": "a", "type": "line", "start": [0, 0], "end": [10, 2]}],
        "constraints": [{"id": kind, "type": kind, "refs": [{"entity": "a", "point": "whole"}]}
                        for kind in ("horizontal", "vertical")]}
SIZED = {"name": "sized", "license": "", "units": {"length": "mm", "angle": "rad"}, "layers": [{"name": "Cut"}],
         "parameters": [{"name": "side", "formula": "5", "value": 5.0}],
         "entities": [{"id": "a", "type": "line", "start": [0, 0], "end": [10, 2]}],
         "constraints": [{"id": "wide", "type": "distance_x", "value": 10.0, "formula": "side * 2",
                          "refs": [{"entity": "a", "point": "start"}, {"entity": "a", "point": "end"}]}]}
CALLS = [
    ["show", B], ["show", B, "--list", "--missing"], ["show", "sized.json", "--list"], ["show", "torn.json"],
    ["show", "examples/commands/plate-with-screws.dxf", "--list"],
    ["show", B, LOOSE], ["show", B, "none.json"], ["show", "none.json"], ["show", "--lits"],
    ["edit", B, "break base at 10,0", "lengthen base end by 2", "undo"], ["edit", B, "drag base.end by 3,2"],
    ["edit", "torn.json", "drag a by 0,1"], ["edit", "sized.json", "parameter side = 9", "parameter more = 2"],
    ["edit", B, "erase bsae"], ["edit", B, "braek base at 10,0"], ["edit", B, "set c9 5000"],
    ["solve", B, "--explain"], ["solve", "torn.json"], ["solve", B, "torn.json"],
    ["convert", B, "out.dxf"], ["convert", B, LOOSE, "."], ["convert", B, "out.txt"],
    ["infer", LOOSE], ["infer", LOOSE, "torn.json"], ["infer", "torn.json"],
    ["run", "examples/commands/fillet-corner.edit"], ["run", "all.edit"], ["run", "all.edit", "--resume"],
]
SCRIPT = "open {0}\nbreak base at 10,0\nsave out.json\nopen {0}\nerase bsae\nopen none.json\n".format(B)
# What is wrong, in which answer, and how to make it so.
FAULTS = {
    "unknown key": ("show", lambda t: t.update(colour="red")),
    "no freedom": ("show", lambda t: t.pop("degrees_of_freedom")),
    "broken without a distance": ("show", lambda t: t.update(broken=[{"constraint": "c1"}])),
    "unknown fate": ("edit", lambda t: t["constraints"][0].update(fate="gone")),
    "refused edit among the done": ("edit", lambda t: t["edits"][0].update(done=False)),
    "total missing": ("edit", lambda t: t["totals"]["entities"].pop("erased")),
    "unknown status": ("solve", lambda t: t.update(status="done")),
    "distance as text": ("solve", lambda t: t.update(movements=[{"entity": "a", "distance": "1"}])),
    "count below 0": ("infer", lambda t: t.update(implied=-1)),
    "unknown code": ("failure", lambda t: t["error"].update(code="oops")),
    "error without a message": ("failure", lambda t: t["error"].pop("message")),
    "line 0": ("failure", lambda t: t["error"].update(line=0)),
    "findings beside an error": ("failure", lambda t: t.update(drawing="a")),
}


def validator(name):
    return jsonschema.Draft202012Validator({"$ref": f"#/$defs/{name}", "$defs": SCHEMA["$defs"]})


def answers(call, folder):
    """The schema's name and each object that a call tells, in both forms."""
    for option, name in (("--json", call[0]), ("--jsonl", call[0] + "_line")):
        result = subprocess.run([PROGRAM, *call, option], cwd=folder, capture_output=True, text=True, check=False)
        texts = [result.stdout] if option == "--json" else result.stdout.splitlines()
        assert texts, (call, result.stderr)
        for text in texts:
            told = json.loads(text)
            # What is wrong before there is a drawing has no line of one.
            yield ("failure" if list(told) == ["error"] else name), told


def main():
    jsonschema.Draft202012Validator.check_schema(SCHEMA)
    failures, known, count = [], {}, 0
    table = re.findall(r'ErrorRow\{ErrorCode::\w+, "(\w+)"', (ROOT / "apps/cli/telling/ErrorCodes.cpp").read_text())
    if SCHEMA["$defs"]["error"]["properties"]["code"]["enum"] != table:
        failures.append(f"the schema does not know the codes {table}")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "examples").symlink_to(ROOT / "examples")
        (folder / "torn.json").write_text(json.dumps(TORN))
        (folder / "sized.json").write_text(json.dumps(SIZED))
        (folder / "all.edit").write_text(SCRIPT)
        for call in CALLS:
            for kind, told in answers(call, folder):
                known.setdefault(kind, told)
                count += 1
                for error in validator(kind).iter_errors(told):
                    failures.append(f"{call}: {error.json_path}: {error.message[:300]} {[e.message[:200] for e in error.context]}")
    for wrong, (kind, spoil) in FAULTS.items():
        told = copy.deepcopy(known[kind])
        spoil(told)
        if validator(kind).is_valid(told):
            failures.append(f"the schema lets pass: {wrong}")
    print(f"{count} answers, {len(FAULTS)} faults, {len(failures)} failures")
    print("\n".join(failures[:40]))
    return 1 if failures or count < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
