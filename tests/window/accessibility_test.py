#!/usr/bin/env python3
"""The window's page by the rules of accessibility that a program can check: each of its states, light, dark and narrow.

usage: accessibility_test.py PROGRAM DRAWING.json AXE.js

Exit code 77 (skipped) where chromium, its driver or selenium is missing.
"""
import json
import pathlib
import subprocess
import sys

from dropping import answer, answers, drop, shows
from program import Window, check, copied, outcome

try:
    from browser import Keys, Tab, in_browser
except ImportError:
    print("skipped: selenium is not here; install python3-selenium")
    sys.exit(77)

PROGRAM, DRAWING, RULES = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2], pathlib.Path(sys.argv[3]).read_text()
RUN = """const done = arguments[arguments.length - 1];
axe.run(document, {resultTypes: ['violations', 'incomplete']}).then((told) => done({passes: told.passes.length,
  violations: told.violations.map((each) => [each.id, each.help, each.nodes.slice(0, 4).map((node) => [node.html.slice(0, 160), node.failureSummary])])}));"""


def judge(tab, what):
    if not tab.run("return typeof axe === 'object'"):
        tab.run(f"{RULES}\nwindow.axe = axe;")
    told = tab.browser.execute_async_script(RUN)
    check(told["passes"] >= 10, f"{what}: rules were tried: {told['passes']}")
    for rule, help_, nodes in told["violations"]:
        check(False, f"{what}: {rule}: {help_}: {json.dumps(nodes, indent=1)}")


TOO_MUCH = {"name": "too much", "units": {"length": "mm", "angle": "rad"},
            "entities": [{"id": "a", "type": "line", "start": [0, 0], "end": [40, 0]}],
            "constraints": [{"id": f"d{value}", "type": "distance", "refs": [{"entity": "a", "point": "whole"}], "value": value}
                            for value in (40.0, 45.0)]}


def states(tab, what):
    """One after the other, each judged."""
    judge(tab, f"{what}, at first")
    tab.hover(62, 0)
    judge(tab, f"{what}, something is pointed at")
    tab.click(62, 0)
    tab.key("x")
    judge(tab, f"{what}, a tool is taken")
    tab.key("r")
    judge(tab, f"{what}, a tool with a number")
    tab.key(Keys.ESCAPE)
    tab.key(Keys.ESCAPE)
    count = tab.steps()
    tab.type("erase top")
    tab.after_edit(count + 1)
    judge(tab, f"{what}, fates are told")
    tab.find("#by-fate [data-name='deleted']").click()
    judge(tab, f"{what}, the list is filtered")
    tab.type("fillet base left radius 900")
    tab.after_edit(count + 2)
    for head in ("history", "parameters", "constraints"):
        tab.find(f"#head-{head}").click()
        judge(tab, f"{what}, the list {head}")
    tab.find("#edit").send_keys("tr")
    judge(tab, f"{what}, words are offered")
    tab.find("#edit").clear()
    tab.find("#copies summary").click()
    judge(tab, f"{what}, the menu is open")
    tab.find("#copies summary").click()
    drop(tab, "much.json", json.dumps(TOO_MUCH).encode())
    answers(tab)
    judge(tab, f"{what}, something is asked")
    answer(tab, "Open much.json")
    shows(tab, "much.json")
    tab.run("document.getElementById('cover').hidden = false")
    judge(tab, f"{what}, a contradiction, and a file above it")
    tab.run("document.getElementById('cover').hidden = true")
    tab.type("constrain distance a")
    tab.wait("return window.holdfast.log.length > 0 && window.holdfast.isBusy === 0", "an edit is answered")
    tab.run("window.holdfast.openDimension('d40')")
    judge(tab, f"{what}, a dimension is edited")
    tab.key(Keys.ESCAPE)
    tab.find("#trouble [aria-label^='suppress ']").click()
    tab.wait("return document.querySelector('#list .off') !== null", "a constraint is switched off")
    judge(tab, f"{what}, a constraint is off")
    tab.key(Keys.CONTROL, "s")
    tab.wait("return document.querySelector('#save-as-dialog[open]') !== null", "a name is asked for")
    judge(tab, f"{what}, a name is asked for")
    tab.find("#save-as-name").send_keys(Keys.ESCAPE)
    tab.find("#back").click()
    shows(tab, "access.json")


def looks(browser, folder):
    path = copied(folder, DRAWING, "access.json")
    for name, dark, width in (("light", False, 1360), ("dark", True, 1360), ("narrow", False, 420)):
        features = [{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}, {"name": "prefers-reduced-motion", "value": "reduce"}]
        browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})
        browser.set_window_size(width, 860)
        with Window(PROGRAM, path) as window:
            states(Tab(browser, window, pathlib.Path(folder)), name)
            browser.get("about:blank")
        for kept in pathlib.Path(folder).glob("access.*.json"):
            kept.unlink()
    browser.set_window_size(1360, 860)
    page = pathlib.Path(folder) / "alone.html"
    subprocess.run([PROGRAM, "show", str(path), "-o", str(page)], check=True, capture_output=True)
    judge(Tab(browser, None, pathlib.Path(folder), page.as_uri()), "a page that stands alone")


def main():
    with in_browser() as (browser, folder):
        looks(browser, folder)
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
