#!/usr/bin/env python3
"""A report in a real browser: stepping through its edits, pointing, and what is seen then.

usage: steps_test.py PROGRAM DRAWING.json FOLDER

Exit code 77 (skipped) where chromium, its driver or selenium is missing. Screenshots stay in FOLDER to be looked at.
"""
import json
import pathlib
import subprocess
import sys

from program import Window, check, copied, outcome
from report_page_test import plates

try:
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys

    from browser import Page, in_browser
except ImportError:
    print("skipped: selenium is not here; install python3-selenium")
    sys.exit(77)

PROGRAM, DRAWING, PICTURES = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
EDITS = ["fillet base left radius 6", "drag hole1 by 5,2", "erase rib", "undo", "parameter width = 70", "constrain distance base.start base.end = width",
         "trim axis at 50,14 by rib"]
LAST = len(EDITS)


class Report(Page):
    """One page, with the words for what a reader does in it."""

    PATIENCE = 15

    def __init__(self, browser, page):
        self.browser = browser
        browser.get(page.as_uri())
        self.wait("return document.body.dataset.ready === 'yes' && Number(document.body.dataset.painted) > 0", "the page is ready")

    def canvas(self, pane):
        return self.browser.find_elements(By.CSS_SELECTOR, ".moving .stage canvas:last-child")[pane]

    def step(self):
        return self.run("return document.body.dataset.step")

    def key(self, *keys):
        self.canvas(1).send_keys(*keys)

    def button(self, name):
        button = self.find(f".step-bar [aria-label^='{name}']")
        self.run("arguments[0].scrollIntoView({ block: 'center', behavior: 'instant' })", button)
        button.click()

    def choose(self, number):
        """From the list of edits, counted from 0."""
        button = self.browser.find_elements(By.CSS_SELECTOR, ".edits .go")[number]
        self.run("arguments[0].scrollIntoView({ block: 'center', behavior: 'instant' })", button)
        button.click()

    def point_at(self, pane, x, y):
        """At pixels of a picture."""
        width, height = self.run("return [holdfast.view.width, holdfast.view.height]")
        ActionChains(self.browser, duration=20).move_to_element_with_offset(self.canvas(pane), round(x - width / 2), round(y - height / 2)).perform()

    def on_screen(self, x, y):
        return self.run("return holdfast.view.toScreen([arguments[0], arguments[1]])", x, y)

    def mark(self, pane, constraint):
        return self.run("const m = holdfast.panes[arguments[0]].painter.placed.find((each) => each.mark.id === arguments[1]);"
                        "return m && [m.x, m.y]", pane, constraint)

    def drawing(self, pane):
        """As a drawing file has it, but for what only the page knows."""
        return self.run("const d = holdfast.panes[arguments[0]].drawing;"
                        "return [Object.fromEntries(d.entities), [...d.constraints.keys()].sort()]", pane)

    def still(self):
        self.run("return new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")

    def picture(self, name):
        self.still()
        self.browser.save_screenshot(str(PICTURES / f"{name}.png"))



def report_on(folder, *edits, drawing=DRAWING, name="report"):
    page = pathlib.Path(folder) / f"{name}.html"
    subprocess.run([PROGRAM, "edit", str(drawing), *edits, "--report", str(page)], check=True, capture_output=True)
    return page


def states(folder):
    """The drawing before the edits and after each, as the program itself makes them."""
    all_of_them = [json.loads(pathlib.Path(DRAWING).read_text())]
    for count in range(1, LAST + 1):
        path = pathlib.Path(folder) / "state.json"
        subprocess.run([PROGRAM, "edit", DRAWING, *EDITS[:count], "-o", str(path)], check=True, capture_output=True)
        all_of_them.append(json.loads(path.read_text()))
    return all_of_them


def check_state(report, pane, state, what):
    entities, constraints = report.drawing(pane)
    expected = {entity["id"]: entity for entity in state["entities"]}
    check(set(entities) == set(expected), f"{what}: the same entities: {sorted(set(entities) ^ set(expected))}")
    check(constraints == sorted(c["id"] for c in state["constraints"]), f"{what}: the same constraints")
    for name, entity in expected.items():
        for field in ("start", "end", "centre", "radius"):
            wanted, found = entity.get(field), entities.get(name, {}).get(field)
            check(found == wanted, f"{what}: {field} of {name} is {found}, not {wanted}")


def check_step(report, expected, place, how):
    check(report.step() == str(place), f"{how}: {report.step()} is shown, not {place}")
    what = f"{how} to edit {place}"
    check_state(report, 0, expected[place - 1], f"before, {what}")
    check_state(report, 1, expected[place], f"after, {what}")
    check(report.find(".step-bar .which").text == f"Edit {place} of {LAST}: {EDITS[place - 1]}", f"{what}: it is named")
    check(report.find(".edits .current code").text == EDITS[place - 1], f"{what}: and found in the list of edits")
    disabled = [button.get_attribute("aria-label") for button in report.browser.find_elements(By.CSS_SELECTOR, ".steppers :disabled")]
    ends = {1: ["First edit (Home)", "Previous edit (,)"], LAST: ["Next edit (.)", "Last edit (End)"]}
    check(disabled == ends.get(place, []), f"{what}: buttons that lead nowhere are off: {disabled}")


def all_edits_come_first(report, expected):
    check(report.step() == "all", "at first all edits are shown")
    check_state(report, 0, expected[0], "before all edits")
    check_state(report, 1, expected[LAST], "after all edits")
    check(not report.find(".told").is_displayed(), "the page's own tables tell of them")
    report.picture("report")


def keys_step_forwards_and_backwards(report, expected):
    for place in range(1, LAST + 1):
        report.key(".")
        check_step(report, expected, place, "forwards by key")
        report.picture(f"report-step-{place}")
    report.key(".")
    check(report.step() == str(LAST), "behind the last there is nothing")
    for place in range(LAST - 1, 0, -1):
        report.key(",")
        check_step(report, expected, place, "backwards by key")
    report.key(Keys.END)
    check_step(report, expected, LAST, "by End")
    report.key(Keys.HOME)
    check_step(report, expected, 1, "by Home")
    report.key("a")
    all_edits_come_first(report, expected)
    report.find("body").send_keys(Keys.END)
    report.wait("return scrollY > 100", "away from the pictures End scrolls")
    check(report.step() == "all", "and does not step")
    report.wait("const y = scrollY; return new Promise((done) => setTimeout(() => done(scrollY === y), 200))", "it comes to rest")


def buttons_step_too(report, expected):
    for name, place in (("Last", LAST), ("Previous", LAST - 1), ("First", 1), ("Next", 2)):
        report.button(name)
        check_step(report, expected, place, f"by the button {name}")
    report.find(".steppers button:nth-child(4)").send_keys(Keys.ARROW_RIGHT)
    check_step(report, expected, 3, "by an arrow key on the buttons")
    report.choose(4)
    check_step(report, expected, 5, "from the list of edits")
    report.button("All")
    all_edits_come_first(report, expected)


def a_step_tells_its_fates(report):
    report.button("First")
    rows = {row.find_element(By.CSS_SELECTOR, ".id").text: row.text for row in report.browser.find_elements(By.CSS_SELECTOR, ".told tr")}
    check("deleted" in rows.get("c0", "") and "the start of base moved from (0, 0) to (6, 0)" in rows.get("c0", ""), f"of constraints: {rows}")
    check("length 80 → 74" in rows.get("base", "") and "created" in rows.get("base_2", ""), f"of entities: {rows}")
    report.button("Next")
    check("Every constraint was kept." in report.find(".told").text and "hole2" in report.find(".told").text, "what follows is told")
    report.choose(4)
    check("width" in report.find(".told .prow.added").text and "70" in report.find(".told .prow.added").text, "and of parameters")


def what_belongs_together_lights_up(report):
    report.button("First")
    row = report.find(".told tr[data-c=c0]")
    ActionChains(report.browser, duration=20).move_to_element(row).perform()
    check(report.run("return holdfast.panes.map((p) => [[...p.scene.hotMarks], [...p.scene.hot]])") == [[["c0"], ["base"]]] * 2,
          "a row lights up its constraint in both pictures")
    place = report.mark(0, "c0")
    check(place, "what was deleted has its mark in the picture before")
    report.run("scrollTo(0, 200)")
    report.point_at(0, *place)
    hot = report.run("return [...document.querySelectorAll('.row.hot')].map((row) => row.dataset.c)")
    check(hot == ["c0", "c0"], f"a mark lights up its rows, of the edit and of all: {hot}")
    tip = report.find("#tip").text
    check(tip.startswith("fixed: base.start (c0)") and "deleted: the start of base moved" in tip, f"and tells: {tip}")
    report.picture("report-hover")
    report.point_at(1, *report.on_screen(62, 0))
    tip = report.find("#tip").text
    check(tip.startswith("base: line, length 74") and "free" in tip and "edited: moved by up to 6 mm" in tip, f"an entity tells: {tip}")
    check(report.run("return [...document.querySelectorAll('.erow.hot')].length") == 2, "and lights up its rows")
    row.click()
    pinned = report.run("return [holdfast.view.scale, holdfast.view.toScreen([0, 0]), holdfast.view.width, holdfast.isFitted]")
    check(not pinned[3] and 0 <= pinned[1][0] <= pinned[2], f"a click on a row brings it into view: {pinned}")
    report.point_at(1, 5, 5)
    check(report.run("return [...holdfast.panes[0].scene.hotMarks]") == ["c0"], "it stays bright")
    report.key(Keys.ESCAPE)
    check(report.run("return holdfast.isFitted && holdfast.panes[0].scene.hot.size === 0"), "until Escape lets go")
    report.key("n")
    first = report.run("return [...holdfast.panes[1].scene.hot]")
    report.key("n")
    report.key("p")
    check(len(first) == 1 and report.run("return [...holdfast.panes[1].scene.hot]") == first, "N and P step through entities")
    check(report.find(".which").text.startswith(f"{first[0]}: "), "and say which")
    report.key(Keys.ESCAPE)


def the_view_moves(report):
    def place():
        return report.run("return [holdfast.view.x, holdfast.view.y, holdfast.view.scale]")
    home = place()
    report.run("scrollTo(0, 200)")
    chain = ActionChains(report.browser, duration=20).move_to_element(report.canvas(0)).click_and_hold()
    chain.move_by_offset(60, 30).release().perform()
    panned = place()
    check(panned[2] == home[2] and panned[0] < home[0] and panned[1] > home[1], "dragging pans")
    report.key(Keys.ARROW_LEFT)
    check(place()[0] < panned[0], "so do arrow keys")
    report.key("+")
    check(abs(place()[2] - 1.5 * home[2]) < 1e-9, "plus zooms")
    report.button("Zoom out")
    check(abs(place()[2] - home[2]) < 1e-9, "and a button back")
    report.button("Show all")
    check(place() == home, "and all is shown again")


def two_fingers_zoom(report):
    report.button("Show all")
    canvas = report.canvas(1)
    report.run("arguments[0].scrollIntoView({ block: 'center', behavior: 'instant' })", canvas)
    left, top, width, height = report.run("const b = arguments[0].getBoundingClientRect(); return [b.left, b.top, b.width, b.height]", canvas)
    x, y = left + width / 2, top + height / 2
    view = "return [holdfast.view.scale, ...holdfast.view.toScreen([40, 30]), scrollY]"
    before = report.run(view)
    report.touch("touchStart", (x - 30, y), (x + 30, y))
    for far in (40, 50, 60):
        report.touch("touchMove", (x - far, y), (x + far, y))
    report.touch("touchEnd")
    after = report.run(view)
    check(abs(after[0] / before[0] - 2) < 0.02, f"two fingers that go apart zoom: {before} {after}")
    check(all(abs((a - m) - 2 * (b - m)) < 2 for a, b, m in zip(after[1:3], before[1:3], (width / 2, height / 2))), "what lies between them stays there")
    report.touch("touchStart", (x - 60, y), (x + 60, y))
    for far in (50, 40, 30):
        report.touch("touchMove", (x - far + 20, y + 40), (x + far + 20, y + 40))
    report.touch("touchEnd")
    back = report.run(view)
    check(abs(back[0] / before[0] - 1) < 0.02 and abs(back[1] - before[1] - 20) < 2 and abs(back[2] - before[2] - 40) < 2, f"together they pan, too: {before} {back}")
    check(back[3] == before[3], "and the page stays where it is")
    report.button("Show all")


def looks_are_chosen(report):
    def inks():
        return report.run("const p = holdfast.panes[1]; return [...p.drawing.entities.values()].map((e) => p.painter.styleOf(e, p.scene).split(' ')[0])")
    report.button("First")
    check(set(inks()) == {"ink", "edited", "added"}, f"entities have the colours of their fates: {set(inks())}")
    report.key("d")
    check("free" in inks() and "edited" not in inks(), f"or of their freedom: {set(inks())}")
    check(report.find(".freedoms").is_displayed(), "which are explained")
    report.picture("report-freedom")
    report.button("Colour")
    check(set(inks()) == {"ink", "edited", "added"}, "and back")
    report.key("t", "m")
    check(report.run("return holdfast.panes.map((p) => [p.scene.names, p.scene.marks])") == [[True, False]] * 2, "names and signs on request")
    report.key("t", "m")
    report.run("document.getElementById('show-deleted').click()")
    report.still()
    check(report.mark(0, "c0") is None and report.mark(0, "c2"), "what the boxes hide has no mark")
    report.run("document.getElementById('show-deleted').click()")
    report.still()
    check(report.mark(0, "c0"), "until they show it again")


def paper_and_readers_without_scripts_get_the_still_pictures(browser, page):
    report = Report(browser, page)
    check(not report.find(".still").is_displayed(), "the view takes their place")
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": "print"})
    check(report.find(".still").is_displayed() and not report.find(".step-bar").is_displayed(), "but not on paper")
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": ""})
    report.silent("printing")
    quiet = page.with_name("quiet.html")
    quiet.write_text(page.read_text().replace("script-src 'unsafe-inline'", "script-src 'none'"))
    browser.get(quiet.as_uri())
    check(len([svg for svg in browser.find_elements(By.CSS_SELECTOR, ".still, .panes svg.picture") if svg.is_displayed()]) == 2,
          "without scripts they are there")
    check(not browser.find_elements(By.CSS_SELECTOR, ".step-bar"), "and no buttons that do nothing")
    check("the start of base moved" in browser.find_element(By.ID, "constraints").text, "and the tables")
    browser.save_screenshot(str(PICTURES / "report-quiet.png"))
    browser.get_log("browser")  # that the script was refused


def dark_and_narrow(browser, page):
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": "dark"}]})
    report = Report(browser, page)
    report.button("First")
    report.picture("report-dark")
    check(report.run("return holdfast.panes[0].painter.colours.card") == "#12161e", "the dark is dark")
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
    for width in (800, 420):
        browser.set_window_size(width, 1100)
        report.wait("return document.documentElement.scrollWidth <= innerWidth", f"{width} wide: nothing sticks out sideways")
        check(report.run("const v = holdfast.view, b = holdfast.home; return v.toScreen([b[0], b[1]])[0] >= 0 && v.toScreen([b[2], b[3]])[0] <= v.width"),
              f"{width} wide: all of the drawing is seen")
        report.picture(f"report-{width}")
    browser.set_window_size(1360, 1100)
    report.silent("dark and narrow")


def one_edit_needs_no_buttons(browser, folder):
    report = Report(browser, report_on(folder, EDITS[0], name="one"))
    check(report.step() == "1" and not report.find(".steppers").is_displayed(), "one edit is shown at once")
    check(not report.find(".told").is_displayed(), "and told once, by the tables")
    report.key(",", ".", Keys.HOME, "a")
    check(report.step() == "1", "keys lead nowhere")
    report.silent("one edit")


def refusals_are_steps(browser, folder):
    page = pathlib.Path(folder) / "window.html"
    with Window(PROGRAM, copied(folder, DRAWING, "refused.json")) as window:
        window.do("edit", EDITS[0])
        window.do("edit", "erase nothing")
        window.do("edit", "undo")
        page.write_text(window.copy("report.html"))
    report = Report(browser, page)
    report.key(".", ".")
    check("Refused: " in report.find(".told").text and "nothing" in report.find(".told").text, "a refusal is told")
    before, after = report.drawing(0), report.drawing(1)
    check(before == after and "base_2" in before[0], "and has changed nothing")
    report.key(".")
    check(report.drawing(1)[0].keys() == {e["id"] for e in json.loads(pathlib.Path(DRAWING).read_text())["entities"]}, "an undo is a step, too")
    report.silent("refusals")


def what_lines_mean_is_told(browser, folder):
    report = Report(browser, report_on(folder, "drag hole1 by 5,2", "undo", "erase rib", name="lines"))
    lines = [span.text for span in browser.find_elements(By.CSS_SELECTOR, ".legend > span") if span.find_elements(By.CSS_SELECTOR, ".swatch")]
    check(sorted(lines) == ["construction", "edited", "erased", "followed", "where it was"], f"those of edits on the way, too: {lines}")
    report.silent("what lines mean")


def names_are_no_markup(browser, folder):
    bad = "<img src=x onerror=document.title='taken'>"
    drawing = json.loads(pathlib.Path(DRAWING).read_text())
    for entity in drawing["entities"]:
        entity["id"] = bad if entity["id"] == "rib" else entity["id"]
    for constraint in drawing["constraints"]:
        constraint["name"] = bad
        for ref in constraint["refs"]:
            ref["entity"] = bad if ref["entity"] == "rib" else ref["entity"]
    path = pathlib.Path(folder) / "bad.json"
    path.write_text(json.dumps(drawing))
    report = Report(browser, report_on(folder, f'drag "{bad}" by 1,0', f'erase "{bad}"', drawing=path, name="bad"))
    report.key(".", ".", "t")
    row = report.run("return [...document.querySelectorAll('.told .erow')].find((row) => row.textContent.includes('onerror'))")
    check(row, "the name is shown")
    ActionChains(browser, duration=20).move_to_element(row).perform()
    check(report.run("return [...holdfast.panes[0].scene.hot]") == [bad], "its row lights it up")
    report.key("n")
    check(report.run("return document.images.length") == 0 and "taken" not in browser.title, "a name is text wherever it is shown")
    report.silent("names with markup")


def a_large_drawing_opens(browser, folder):
    path = pathlib.Path(folder) / "plates.json"
    path.write_text(json.dumps(plates(600)))
    more = [f"drag g{number}.centre by 1,0" for number in range(4, 179, 5)]  # too many states to look for freedom in each
    report = Report(browser, report_on(folder, "drag g1.end by 1,1", "erase g8", *more, drawing=path, name="plates"))
    check(report.run("return holdfast.panes.map((p) => p.drawing.entities.size)") == [3000, 2999], "all of it is there")
    report.key(".")
    check(report.run("return holdfast.panes.map((p) => p.drawing.entities.size)") == [3000, 3000], "before and after each edit")
    report.still()
    check(not report.run("return holdfast.panes[1].painter.placed.length"), "signs of what was kept do not cover it")
    report.button("Next")
    report.still()
    marked = report.run("return [...new Set(holdfast.panes[0].painter.placed.map((each) => each.mark.id))].sort()")
    check(marked == ["c10", "c11"], f"but signs of what was not: {marked}")
    report.button("Zoom in")
    report.wait("return holdfast.panes[1].painter.placed.length > 50", "and a closer look shows them")
    report.picture("report-large")
    report.key(Keys.END, ",", "d")
    check(report.find("[aria-label^='Colour']").get_attribute("disabled") and report.run("return holdfast.panes.every((p) => p.scene.fateInks)"),
          "where freedom was not looked for there are no colours of it")
    report.key("a", "d")
    check(report.run("return holdfast.panes.every((p) => !p.scene.fateInks && p.scene.freedom.freedom > 4000)"), "before and after all edits it is told")
    check(report.run("return performance.getEntriesByType('resource').length") == 0, "nothing was fetched")
    report.silent("a large drawing")


def a_page_alone_of_a_large_drawing_opens(browser, folder):
    path, page = pathlib.Path(folder) / "plates.json", pathlib.Path(folder) / "alone.html"
    path.write_text(json.dumps(plates(600)))
    subprocess.run([PROGRAM, "show", str(path), "-o", str(page)], check=True, capture_output=True)
    size = page.stat().st_size / 3000
    check(size < 200, f"it is packed: {size:.0f} bytes for an entity with its constraints")
    report = Report(browser, page)
    check(report.run("return [holdfast.drawing.entities.size, holdfast.drawing.constraints.size]") == [3000, 4800], "all of it is there")
    report.wait("return holdfast.scene.freedom && holdfast.scene.freedom.freedom === 4200", "with what is free")
    report.silent("a page alone of a large drawing")


def main():
    PICTURES.mkdir(parents=True, exist_ok=True)
    with in_browser() as (browser, folder):
        browser.set_window_size(1360, 1100)
        page, expected = report_on(folder, *EDITS), states(folder)
        report = Report(browser, page)
        all_edits_come_first(report, expected)
        keys_step_forwards_and_backwards(report, expected)
        buttons_step_too(report, expected)
        for test in (a_step_tells_its_fates, what_belongs_together_lights_up, the_view_moves, two_fingers_zoom, looks_are_chosen):
            test(report)
            report.silent(test.__name__)
        paper_and_readers_without_scripts_get_the_still_pictures(browser, page)
        dark_and_narrow(browser, page)
        for test in (one_edit_needs_no_buttons, refusals_are_steps, what_lines_mean_is_told, names_are_no_markup, a_large_drawing_opens,
                     a_page_alone_of_a_large_drawing_opens):
            test(browser, folder)
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
