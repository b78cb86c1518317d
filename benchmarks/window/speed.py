#!/usr/bin/env python3
"""How fast the window is, in a real browser by its own frames and from the server alone: a table of what is measured
beside what it may take. Exit code 1 when something takes longer.

usage: speed.py PROGRAM [--quick] [--profile NAME]

PROGRAM is of a release build, on a machine that does nothing else; --quick takes a tenth of the entities. --profile tells
of one of the lines of the table where the page spends its time. Needs chromium, its driver and selenium.
"""
import argparse
import collections
import gc
import json
import os
import pathlib
import statistics
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "window"))

from browser import Tab, started  # noqa: E402
from program import Window  # noqa: E402

FRAME = 1000 / 60 + 1  # milliseconds: browsers' clocks are that coarse

# One thing after the other, and what each took in milliseconds.
TOOLS = """
const page = window.holdfast, canvas = document.getElementById('above'), box = canvas.getBoundingClientRect();
canvas.setPointerCapture = () => {};
const send = (name, [x, y]) => canvas.dispatchEvent(new PointerEvent(name, { bubbles: true, button: 0, pointerId: 1,
  clientX: box.left + x, clientY: box.top + y }));
const frame = () => new Promise((done) => requestAnimationFrame(done));
// The next task is one after the frame has been handed to be shown.
const shown = () => new Promise((done) => { const way = new MessageChannel(); way.port1.onmessage = done; way.port2.postMessage(0); });
// So near that a hand could take hold; what is not seen follows all the same.
const near = async () => { page.view.fit([0, 0, 300, 240]); page.moved(); await frame(); await frame(); };
const noteRefusal = () => { if (page.hands.pull?.error) throw new Error(page.hands.pull.error); };
const pulled = (i) => { const [x, y] = page.view.toScreen(page.drawing.entities.get('s0_0').start); return [x - 5 - i % 40, y + 5 + i % 40]; };
"""

# From a move of the pointer to the frame that shows its answer.
TO_PAINT = TOOLS + """
return (async () => {
  await near();
  send('pointerdown', page.view.toScreen(page.drawing.entities.get('s0_0').start));
  const times = [];
  for (let i = 0; i < arguments[0]; i += 1) {
    const before = page.scene.trial, start = performance.now();
    send('pointermove', pulled(i));
    do await frame(); while (page.hands.latest.isBusy && page.scene.trial === before || page.isPainting);
    await shown();
    times.push(performance.now() - start);
    while (page.hands.latest.isBusy) await frame();
    noteRefusal();
  }
  page.escape();
  return times;
})();"""

# A hand that moves with every frame.
FRAMES_OF_A_PULL = TOOLS + """
return (async () => {
  await near();
  send('pointerdown', page.view.toScreen(page.drawing.entities.get('s0_0').start));
  const times = [];
  let last = await frame();
  for (let i = 0; i < arguments[0]; i += 1) {
    send('pointermove', pulled(i));
    const now = await frame();
    times.push(now - last);
    last = now;
  }
  page.escape();
  return times;
})();"""

FRAMES_OF_A_VIEW = TOOLS + """
return (async () => {
  const times = [], [steps, what] = arguments;
  let last = await frame();
  for (let i = 0; i < steps; i += 1) {
    if (what === 'pan') page.view.pan(3, 2); else page.view.zoom(300, 200, i % 40 < 20 ? 1.03 : 1 / 1.03);
    page.moved();
    const now = await frame();
    times.push(now - last);
    last = now;
  }
  return times;
})();"""

# When something of the drawing stood on the screen first, in milliseconds since the address was asked for.
WATCH = """new MutationObserver((_, self) => {
  if (!document.body?.dataset.painted || !window.holdfast?.drawing.entities.size) return;
  const way = new MessageChannel();
  way.port1.onmessage = () => { window.firstPicture ??= performance.now(); };
  way.port2.postMessage(0);
  self.disconnect();
}).observe(document, { subtree: true, childList: true, attributes: true });"""


def drawing_of(entities, constraints):
    return {"name": "speed", "units": {"length": "mm", "angle": "rad"}, "entities": entities, "constraints": constraints}


def chain(boxes):
    """Rectangles that touch at corners, one behind the other: 9 constraints each, all of them one part."""
    entities, constraints = [], []

    def add(kind, *places):
        constraints.append({"id": f"c{len(constraints)}", "type": kind,
                            "refs": [{"entity": entity, "point": point} for entity, point in places]})
    for i in range(boxes):
        x, y = 10.0 * i, 8.0 * i
        corners = [(x, y), (x + 10, y), (x + 10, y + 8), (x, y + 8)]
        for side in range(4):
            entities.append({"id": f"s{i}_{side}", "type": "line", "start": corners[side], "end": corners[(side + 1) % 4]})
            add("coincident", (f"s{i}_{side}", "end"), (f"s{i}_{(side + 1) % 4}", "start"))
            add("vertical" if side % 2 else "horizontal", (f"s{i}_{side}", "whole"))
        if i:
            add("coincident", (f"s{i}_0", "start"), (f"s{i - 1}_1", "end"))
    return drawing_of(entities, constraints)


def plates(count):
    """Plates with holes and a slot's arc, side by side: eight entities and nine constraints each."""
    entities, constraints = [], []

    def add(kind, *places):
        constraints.append({"id": f"c{len(constraints)}", "type": kind,
                            "refs": [{"entity": entity, "point": point} for entity, point in places]})
    for i in range(count):
        x, y, name = 14.0 * (i % 50), 10.0 * (i // 50), f"p{i}"
        corners = [(x, y), (x + 12, y), (x + 12, y + 8), (x, y + 8)]
        for side in range(4):
            entities.append({"id": f"{name}_{side}", "type": "line", "start": corners[side], "end": corners[(side + 1) % 4]})
            add("coincident", (f"{name}_{side}", "end"), (f"{name}_{(side + 1) % 4}", "start"))
            add("vertical" if side % 2 else "horizontal", (f"{name}_{side}", "whole"))
        for hole in range(3):
            entities.append({"id": f"{name}_h{hole}", "type": "circle", "centre": [x + 3 + 3 * hole, y + 3], "radius": 1.0})
        entities.append({"id": f"{name}_a", "type": "arc", "centre": [x + 6, y + 6], "radius": 1.0, "start_angle": 0.0, "end_angle": 3.0})
        add("equal", (f"{name}_h0", "whole"), (f"{name}_h1", "whole"))
    return drawing_of(entities, constraints)


def worst(values):
    """What 95 of 100 do not take longer than."""
    return sorted(values)[int(0.95 * (len(values) - 1))]


class Table:
    """What takes how long, beside what it may."""

    def __init__(self):
        self.missed = 0
        print(f"{'':58} {'95 of 100':>12} {'median':>10} {'may be':>9}")

    def tell(self, what, values, most, unit="ms"):
        misses = worst(values) > most
        self.missed += misses
        print(f"{what:58} {worst(values):9.1f} {unit:2} {statistics.median(values):7.1f} {unit:2} {most:6.0f} {unit:2}"
              f"{'  too much' if misses else ''}", flush=True)


def server_steps(window, name, frames):
    """From a question to the last byte of its answer. What reading these here would take, and tidying up after it, is
    none of the server's time."""
    times, ask = [], window.asking(name)
    gc.collect()
    gc.disable()
    for frame in range(frames):
        start = time.perf_counter()
        answer = ask(f"drag s0_0.start by {-0.01 * (frame + 1):.2f},{-0.02 * (frame + 1):.2f}")
        times.append(1000 * (time.perf_counter() - start))
        result = json.loads(answer)
        if not result["done"]:
            raise RuntimeError(result["error"])
    gc.enable()
    return times


def spent_by(process):
    """Milliseconds of the processors, which others on the machine do not lengthen much."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return 1000 * (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def descends(process, ancestor):
    while process > 1 and process != ancestor:
        process = int(pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])
    return process == ancestor


def memory_of_pages(driver):
    """What the processes of this browser's pages hold for themselves, in MB: the largest."""
    largest = 0.0
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if b"--type=renderer" not in (folder / "cmdline").read_bytes() or not descends(int(folder.name), driver):
                continue
            held = [int(line.split()[1]) for line in (folder / "smaps_rollup").read_text().splitlines() if line.startswith("Private_")]
            largest = max(largest, sum(held) / 1024)
        except OSError:
            pass
    return largest


class Browser:
    def __init__(self, folder, profiled):
        self.driver = started(pathlib.Path(folder) / "profile", "--enable-precise-memory-info")
        self.driver.set_script_timeout(300)
        self.driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": WATCH})
        self.profiled = profiled

    def run(self, name, script, *values):
        if name != self.profiled:
            return self.driver.execute_script(script, *values)
        self.driver.execute_cdp_cmd("Profiler.enable", {})
        self.driver.execute_cdp_cmd("Profiler.start", {})
        told = self.driver.execute_script(script, *values)
        tell_profile(self.driver.execute_cdp_cmd("Profiler.stop", {})["profile"])
        return told


def tell_profile(profile):
    spent, places = collections.Counter(), {node["id"]: node["callFrame"] for node in profile["nodes"]}
    for node, took in zip(profile["samples"], profile["timeDeltas"]):
        frame = places[node]
        spent[f"{frame['functionName'] or '(nameless)'} {frame['url'].rsplit('/', 1)[-1]}:{frame['lineNumber'] + 1}"] += took / 1000
    for place, took in spent.most_common(15):
        print(f"    {took:9.1f} ms  {place}")


def measure_drag(table, browser, folder, boxes, most):
    drawing = chain(boxes)
    size = f"{len(drawing['constraints']):,} constraints in one part"
    path = pathlib.Path(folder) / f"chain{boxes}.json"
    path.write_text(json.dumps(drawing))
    with Window(browser.program, path) as window:
        before, steps = spent_by(window.process), 60
        table.tell(f"drag, {size}: server's step", server_steps(window, "pull", steps), 16)
        table.tell(f"drag, {size}: its processor's time", [(spent_by(window.process) - before) / steps], 16)
        table.tell(f"drag, {size}: all of its fates when it rests", server_steps(window, "try", 10), 250)
        Tab(browser.driver, window, None)
        table.tell(f"drag, {size}: pointer to paint", browser.run("paint", TO_PAINT, 60), 33)
        table.tell(f"drag, {size}: frames", browser.run("frames", FRAMES_OF_A_PULL, 120), most)
        browser.driver.get("about:blank")


def measure_many(table, browser, folder, count):
    drawing = plates(count)
    size = f"{len(drawing['entities']):,} entities"
    path = pathlib.Path(folder) / "many.json"
    path.write_text(json.dumps(drawing))
    with Window(browser.program, path) as window:
        first = []
        for _ in range(5):
            browser.driver.get(window.address)
            while not (took := browser.driver.execute_script("return window.firstPicture")):
                time.sleep(0.02)
            first.append(took)
        table.tell(f"first picture, {size}", first, 1000)
        Tab(browser.driver, window, None)
        table.tell(f"pan, {size}: frames", browser.run("pan", FRAMES_OF_A_VIEW, 90, "pan"), FRAME)
        table.tell(f"zoom, {size}: frames", browser.run("zoom", FRAMES_OF_A_VIEW, 90, "zoom"), FRAME)
        held = browser.driver.execute_script("return performance.memory.usedJSHeapSize / 1048576")
        table.tell(f"memory of the page, {size}: objects", [held], 300, "MB")
        table.tell(f"memory of the page, {size}: all of its process", [memory_of_pages(browser.driver.service.process.pid)], 300, "MB")


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    arguments.add_argument("program", type=lambda path: str(pathlib.Path(path).resolve()))
    arguments.add_argument("--quick", action="store_true")
    arguments.add_argument("--profile", default="", help="paint, frames, pan or zoom")
    asked = arguments.parse_args()
    print(f"load of the machine before: {os.getloadavg()[0]:.1f} on {os.cpu_count()} processors")
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = Browser(folder, asked.profile)
        browser.program = asked.program
        table = Table()
        try:
            measure_drag(table, browser, folder, 55, FRAME)
            if not asked.quick:
                measure_drag(table, browser, folder, 1112, 33)
            measure_many(table, browser, folder, 250 if asked.quick else 2500)
        finally:
            browser.driver.quit()
    return 1 if table.missed else 0


if __name__ == "__main__":
    sys.exit(main())
