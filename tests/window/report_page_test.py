#!/usr/bin/env python3
"""The report as the program writes it, read as text: complete in itself, well-formed, small.

usage: report_page_test.py PROGRAM DRAWING.json
"""
import base64
import gzip
import html
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as tree

from program import check, outcome

PROGRAM, DRAWING = sys.argv[1], sys.argv[2]
POLICY = "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'"
HTML = "{http://www.w3.org/1999/xhtml}"


def reported(folder, drawing, *edits):
    """A drawing's report on edits, as text."""
    path, page = pathlib.Path(folder) / "drawing.json", pathlib.Path(folder) / "page.html"
    path.write_text(json.dumps(drawing))
    subprocess.run([PROGRAM, "edit", str(path), *edits, "--report", str(page)], check=True, capture_output=True)
    return page.read_text()


def held(text):
    """What the page holds for its script."""
    found = re.search(r'<script id="steps-data" type="application/json"( data-packed="gzip")?>([^<>&]*)</script>', text)
    check(found, "the page holds its steps, and nothing in them ends the element")
    return json.loads(gzip.decompress(base64.b64decode(found.group(2))) if found.group(1) else found.group(2))


def edits_are_steps(folder):
    text = reported(folder, json.loads(pathlib.Path(DRAWING).read_text()), "fillet base left radius 6", "drag hole1 by 5,2", "undo")
    page = tree.fromstring(text)
    policies = [meta.get("content") for meta in page.iter(HTML + "meta") if meta.get("http-equiv") == "Content-Security-Policy"]
    check(policies == [POLICY], f"one policy, that lets nothing in: {policies}")
    sources = [each.tag for each in page.iter() if any(each.get(name) for name in ("src", "srcset", "action", "data"))]
    check(not sources, f"nothing is fetched: {sources}")
    addresses = re.findall(r"(?:https?:)?//[a-z0-9.-]+\.[a-z]+", re.sub(r"http://www\.w3\.org/(?:2000/svg|1999/xhtml)", "", text))
    check(not addresses, f"it names no other place: {addresses}")
    steps = held(text)["steps"]
    check([step["text"] for step in steps] == ["fillet base left radius 6", "drag hole1 by 5,2", "undo"], "an edit is a step")
    fates = [{each["id"]: each["fate"] for each in step["constraints"]} for step in steps]
    check(fates[0].get("c0") == "deleted" and "added" in fates[0].values() and not fates[1] and not fates[2], f"with its fates: {fates}")
    check({each["id"]: each["why"] for each in steps[0]["entities"]}.get("base") == "moved by up to 6 mm, length 80 → 74",
          "and the sizes that it changed")
    rows = {row.get("data-c") for row in page.iter(HTML + "tr") if row.get("data-c")}
    check({"c0", "c1", "c18"} <= rows, "the tables stand there without a script")
    check(sum(each.get("class") == "picture" for each in page.iter("{http://www.w3.org/2000/svg}svg")) == 2, "and the pictures")


def freedom_is_told_of_each_state(folder):
    freedom = held(reported(folder, json.loads(pathlib.Path(DRAWING).read_text()), "delete c1", "delete c2", "undo"))["freedom"]
    numbers = [state["freedom"] for state in freedom]
    check(numbers[1] == numbers[0] + 1 and numbers[3] == numbers[1] and numbers[2] > numbers[1], f"before and after each edit: {numbers}")
    check(len(freedom[0]["entities"]) == 11 and 0 < len(freedom[1]["entities"]) < 11, "and of entities what is another")


def names_are_text(folder):
    """In names of drawings, entities, constraints, layers of words: edits and refusals."""
    bad = "</script><img src=x onerror=alert(1)>&]]><!--"
    drawing = json.loads(pathlib.Path(DRAWING).read_text())
    drawing["name"] = bad
    for constraint in drawing["constraints"]:
        constraint["name"] = bad
        for ref in constraint["refs"]:
            ref["entity"] = bad if ref["entity"] == "rib" else ref["entity"]
    for entity in drawing["entities"]:
        entity["id"] = bad if entity["id"] == "rib" else entity["id"]
    text = reported(folder, drawing, f'erase "{bad}"')
    page = tree.fromstring(text)
    check(not list(page.iter(HTML + "img")) and text.count("<img") == 0 and text.count("]]>") == 2, "no name is markup")
    data = held(text)
    check(bad in [entity["id"] for entity in data["before"]["entities"]], "the page's script has it as it is")
    check(html.escape(bad) in text or bad in "".join(page.itertext()), "and so has the reader")


def plates(count):
    """Many small plates, five entities and eight constraints each."""
    drawing = json.loads(pathlib.Path(DRAWING).read_text()) | {"name": "plates", "entities": [], "constraints": []}
    for number in range(count):
        x, y, ids = 30.0 * (number % 40), 20.0 * (number // 40), [f"g{5 * number + i}" for i in range(5)]
        corners = [[x, y], [x + 20, y], [x + 20, y + 10], [x, y + 10]]
        drawing["entities"] += [{"id": ids[i], "type": "line", "start": corners[i], "end": corners[(i + 1) % 4]} for i in range(4)]
        drawing["entities"].append({"id": ids[4], "type": "circle", "centre": [x + 10, y + 5], "radius": 3.0})
        ties = [("coincident", [(ids[i], "end"), (ids[(i + 1) % 4], "start")]) for i in range(4)]
        ties += [("horizontal", [(ids[0], "whole")]), ("vertical", [(ids[1], "whole")]), ("parallel", [(ids[0], "whole"), (ids[2], "whole")])]
        ties.append(("radius", [(ids[4], "whole")]))
        for i, (kind, places) in enumerate(ties):
            refs = [{"entity": entity, "point": point} for entity, point in places]
            drawing["constraints"].append({"id": f"c{8 * number + i}", "type": kind, "refs": refs} | ({"value": 3.0} if kind == "radius" else {}))
    return drawing


def large_drawings_make_small_pages(folder):
    drawing = plates(600)
    text = reported(folder, drawing, "drag g1.end by 1,1")
    check('data-packed="gzip"' in text, "what a large drawing holds is packed")
    data = held(text)
    check([e["id"] for e in data["before"]["entities"]] == [e["id"] for e in drawing["entities"]], "every entity is there")
    check(len(data["before"]["constraints"]) == 4800, "and every constraint")
    each = len(text) / len(drawing["entities"])
    check(each < 300, f"the page takes {each:.0f} bytes for an entity with its constraints")
    kept = "".join(next(part for part in tree.fromstring(text).iter(HTML + "details") if part.get("class") == "keeps").itertext())
    check(all(f"{each['id']}: " in kept for each in drawing["constraints"]), "what was kept is listed whole")


def main():
    with tempfile.TemporaryDirectory() as folder:
        for test in (edits_are_steps, freedom_is_told_of_each_state, names_are_text, large_drawings_make_small_pages):
            test(folder)
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
