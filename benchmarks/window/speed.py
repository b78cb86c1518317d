#!/usr/bin/env python3
"""How fast the window is, in a real browser and from the server alone: a drag in one part of many constraints, the first
picture of many entities, the memory of the page.

usage: speed.py PROGRAM [--quick]

PROGRAM is of a release build, on a machine that does nothing else. Needs chromium, its driver and selenium.
"""
import json
import pathlib
import statistics
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "window"))
sys.argv[2:] = sys.argv[2:] or [""]
QUICK = "--quick" in sys.argv
PROGRAM = sys.argv[1]
sys.argv = [sys.argv[0], PROGRAM, "", tempfile.mkdtemp()]  # what the test's module wants

from program import Window  # noqa: E402
import browser_test  # noqa: E402


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
    return {"name": f"chain of {boxes}", "units": {"length": "mm", "angle": "rad"}, "entities": entities,
            "constraints": constraints}


def centiles(values):
    values = sorted(values)
    return f"median {1000 * statistics.median(values):6.1f} ms, 95 % {1000 * values[int(0.95 * (len(values) - 1))]:6.1f} ms"


def server_steps(window, frames):
    times = []
    for frame in range(frames):
        start = time.perf_counter()
        result = window.do("try", f"drag s0_0.start by {-0.01 * (frame + 1):.2f},{-0.02 * (frame + 1):.2f}")
        times.append(time.perf_counter() - start)
        assert result["done"], result["error"]
    return times


def browser_frames(tab, frames):
    """From the pointer's event to the frame in which its answer is painted."""
    return tab.run("""
      const page = window.holdfast, canvas = document.getElementById('above'), box = canvas.getBoundingClientRect();
      const [x, y] = page.view.toScreen(page.drawing.entities.get('s0_0').start);
      const send = (name, dx, dy) => canvas.dispatchEvent(new PointerEvent(name, { bubbles: true, button: 0, pointerId: 1,
        clientX: box.left + x + dx, clientY: box.top + y + dy }));
      canvas.setPointerCapture = () => {};
      const frame = () => new Promise((done) => requestAnimationFrame(done));
      return (async () => {
        send('pointerdown', 0, 0);
        const times = [];
        for (let i = 0; i < arguments[0]; i += 1) {
          const start = performance.now();
          send('pointermove', -5 - i % 40, 5 + i % 40);
          do await frame(); while (page.hands.latest.isBusy);
          times.push((performance.now() - start) / 1000);
        }
        page.escape();
        return times;
      })();""", frames)


def main():
    sizes = [55] if QUICK else [55, 1111]
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = browser_test.started(pathlib.Path(folder) / "profile", "--enable-precise-memory-info")
        browser.set_script_timeout(300)
        for boxes in sizes:
            drawing = chain(boxes)
            path = pathlib.Path(folder) / f"chain{boxes}.json"
            path.write_text(json.dumps(drawing))
            with Window(PROGRAM, path) as window:
                size = f"{len(drawing['constraints'])} constraints in one part"
                print(f"drag, {size}: server step {centiles(server_steps(window, 60))}")
                tab = browser_test.Tab(browser, window)
                print(f"drag, {size}: pointer to paint {centiles(browser_frames(tab, 60))}")
                browser.get("about:blank")
        entities = 2000 if QUICK else 20000
        path = pathlib.Path(folder) / "many.json"
        path.write_text(json.dumps({"name": "many", "units": {"length": "mm", "angle": "rad"}, "entities": [
            {"id": f"g{i}", "type": "circle", "centre": [3 * (i % 200), 3 * (i // 200)], "radius": 1} for i in range(entities)],
            "constraints": []}))
        with Window(PROGRAM, path) as window:
            start = time.perf_counter()
            browser.get(window.address)
            while not browser.execute_script("return Number(document.body.dataset.painted || 0) > 0 && window.holdfast"
                                             " && window.holdfast.drawing.entities.size > 0"):
                time.sleep(0.01)
            print(f"first picture of {entities} entities: {time.perf_counter() - start:.2f} s")
            frames = browser.execute_script("""
              const page = window.holdfast, times = [];
              return (async () => {
                for (let i = 0; i < 30; i += 1) {
                  const start = performance.now();
                  page.view.pan(3, 2);
                  page.moved();
                  page.painter.below.getImageData(0, 0, 1, 1);  // waits until it is drawn
                  times.push((performance.now() - start) / 1000);
                }
                return [times, performance.memory.usedJSHeapSize / 1e6];
              })();""")
            print(f"pan of {entities} entities: a picture in {centiles(frames[0])}; the page holds {frames[1]:.0f} MB")
        browser.quit()


if __name__ == "__main__":
    main()
