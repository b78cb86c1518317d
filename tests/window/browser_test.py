#!/usr/bin/env python3
"""The window in a real browser: what a person does with it, and what is seen then.

usage: browser_test.py PROGRAM DRAWING.json FOLDER

Exit code 77 (skipped) where chromium, its driver or selenium is missing. Screenshots stay in FOLDER to be looked at.
"""
import json
import pathlib
import re
import subprocess
import sys
import time

from program import Window, check, copied, outcome

try:
    from browser import Keys, Tab, in_browser
except ImportError:
    print("skipped: selenium is not here; install python3-selenium")
    sys.exit(77)

import chains
import choices
import dropping
import pulling
import tabs

PROGRAM, DRAWING, PICTURES = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])


def the_drawing_is_there(tab):
    check(tab.text("#name") == "mounting bracket", "the drawing has its name")
    check(tab.inked() > 0.003, f"something is drawn: {tab.inked()}")
    check(tab.text("#count") == str(len(tab.window.ask("state")["drawing"]["constraints"])), "the constraints are counted")
    check("freedom" in tab.text("#state") or "defined" in tab.text("#state"), "and so is what is free")
    tab.picture("drawing")


def hovering_shows_who_belongs_together(tab):
    tab.hover(62, 0)
    check(tab.run("return [...window.holdfast.scene.hot]") == ["base"], "the entity under the pointer is bright")
    check(tab.find("#tip").is_displayed() and tab.text("#tip").startswith("base: line, length 80"), tab.text("#tip"))
    hot = tab.run("return [...document.querySelectorAll('.row.hot .on')].map((e) => e.textContent)")
    check(hot and all("base" in places for places in hot), f"and its constraints in the list: {hot}")
    tab.picture("hover")
    row = tab.find("#list .row")
    tab.pointer().move_to_element(row).perform()
    check(tab.run("return window.holdfast.scene.hotMarks.size") == 1, "a row of the list shows its mark")
    check(tab.run("return window.holdfast.scene.hot.size") >= 1, "and its entities")


def pulling_a_point_shows_who_follows(tab):
    before = tab.window.entity("base")
    tab.press(80, 0)
    tab.pull_to(84, 4)
    tab.pull_to(88, 6)
    tab.wait("return window.holdfast.scene.trial && window.holdfast.scene.trial.text.startsWith('drag ')", "the pull is tried")
    tab.wait("const t = window.holdfast.scene.trial; return t && !window.holdfast.hands.latest.isBusy", "the last place counts")
    moved = tab.run("return window.holdfast.scene.trial.entities.map((e) => e.id)")
    check("right" in moved or "base" in moved, f"others follow: {moved}")
    check(tab.window.entity("base") == before, "nothing is done yet")
    tab.picture("pull")
    tab.release()
    tab.after_edit(1)
    shown = tab.run("return window.holdfast.drawing.entities.get('base').end")
    check(shown == tab.window.entity("base")["end"] and shown != before["end"], f"it is done on release: {shown}")
    check(tab.text("#log li:last-child code").startswith("drag ") or tab.run("return window.holdfast.log[0].text").startswith("drag "),
          "the edit is in words")
    check(tab.find("#unsaved").is_displayed(), "and not saved yet")


def escape_lets_go(tab):
    count, before = tab.steps(), tab.window.ask("state")["drawing"]
    tab.press(15, 16)
    tab.pull_to(15, 19)
    tab.wait("return window.holdfast.scene.trial !== null", "the circle grows")
    tab.key(Keys.ESCAPE)
    tab.release()
    check(tab.steps() == count and tab.window.ask("state")["drawing"] == before, "escape leaves the drawing as it was")


def typed_edits_are_answered_in_words(tab):
    count = tab.steps()
    tab.type("fillet left top radius 400")
    tab.after_edit(count + 1)
    check(tab.find("#said").get_attribute("class") == "bad" and len(tab.text("#said")) > 20, "a refusal says why")
    check(tab.find("#edit").get_attribute("value").startswith("fillet"), "and leaves the words to be mended")
    tab.type("break rib at 40,20 to 40,30")
    tab.after_edit(count + 2)
    check(tab.find("#fates").is_displayed() and tab.text("#fates code").startswith("break rib"), "what it did is told")
    check(tab.find("#edit").get_attribute("value") == "", "the line is free again")
    tab.picture("fates")


def undo_and_redo_go_by_key(tab):
    count, broken = tab.steps(), tab.window.ask("state")["drawing"]
    tab.key(Keys.CONTROL, "z")
    tab.after_edit(count + 1)
    check(len(tab.window.ask("state")["drawing"]["entities"]) < len(broken["entities"]), "undo takes the edit back")
    tab.key(Keys.CONTROL, Keys.SHIFT, "z")
    tab.after_edit(count + 2)
    check(tab.window.ask("state")["drawing"] == broken, "redo does it again")
    known = tab.run("return [...window.holdfast.drawing.entities.values()]")
    check(sorted(known, key=lambda e: e["id"]) == sorted(broken["entities"], key=lambda e: e["id"]), "the page knows the drawing")


def the_keyboard_reaches_everything(tab):
    tab.key("n")
    first = tab.run("return [...window.holdfast.scene.hot][0]")
    check(tab.text("#said").startswith(f"{first}: "), "an entity is named when the keyboard comes to it")
    tab.key("n", Keys.ENTER)
    chosen = tab.run("return [...window.holdfast.scene.selected]")
    check(len(chosen) == 1 and chosen[0] != first, f"and can be chosen: {chosen}")
    check(tab.find("#selection").is_displayed(), "the list shows the constraints on it")
    tab.key("f")
    scale = tab.run("return window.holdfast.view.scale")
    tab.key("+")
    check(tab.run("return window.holdfast.view.scale") > scale, "plus zooms")
    tab.key("f")
    check(abs(tab.run("return window.holdfast.view.scale") / scale - 1) < 1e-9, "F shows all")
    tab.key("/")
    check(tab.run("return document.activeElement.id") == "edit", "a slash leads to the line")
    tab.find("#edit").send_keys("tr")
    check(tab.find("#offers").is_displayed() and "trim" in tab.text("#offers"), "which completes words")
    tab.find("#edit").send_keys(Keys.TAB)
    check(tab.find("#edit").get_attribute("value") == "trim " and "trim ENTITY" in tab.text("#help"), "and shows what follows")
    tab.find("#edit").send_keys(Keys.BACKSPACE * 5, Keys.ESCAPE)
    tab.key(Keys.ESCAPE)
    check(not tab.run("return window.holdfast.scene.selected.size"), "escape chooses nothing")
    unnamed = tab.run("return [...document.querySelectorAll('button, input, a, canvas[tabindex], select, summary')].filter((e) =>"
                      "!(e.textContent.trim() || e.getAttribute('aria-label') || e.labels?.length)).map((e) => e.outerHTML)")
    check(not unnamed, f"everything has a name: {unnamed}")


def a_box_chooses(tab):
    tab.press(-6, 46)
    tab.pull_to(30, -6)
    tab.release()
    chosen = tab.run("return [...window.holdfast.scene.selected]")
    check("left" in chosen and "hole1" in chosen and "base" not in chosen, f"what lies in a box is chosen: {chosen}")
    tab.key(Keys.ESCAPE)


def the_wheel_zooms_about_the_pointer(tab):
    tab.key("f")
    at = tab.run("return window.holdfast.view.toScreen([65, 12])")
    tab.run("document.getElementById('above').dispatchEvent(new WheelEvent('wheel', {deltaY: -300, bubbles: true, cancelable: true,"
            "clientX: arguments[0] + document.getElementById('above').getBoundingClientRect().left,"
            "clientY: arguments[1] + document.getElementById('above').getBoundingClientRect().top}))", *at)
    now = tab.run("return window.holdfast.view.toScreen([65, 12])")
    check(max(abs(a - b) for a, b in zip(at, now)) < 2, "what is under the pointer stays there")
    tab.key("f")


def a_dimension_is_edited_where_it_stands(tab):
    count = tab.steps()
    tab.type("constrain distance left as height")
    tab.after_edit(count + 1)
    found = tab.run("const p = window.holdfast, m = p.painter.placed.find((e) => p.kinds.get(p.drawing.constraints.get(e.mark.id)?.type)"
                    "?.isDimension); return m && [m.mark.id, m.x - p.view.width / 2, m.y - p.view.height / 2]")
    check(found, "a dimension is to be seen")
    if not found:
        return
    count = tab.steps()
    name, x, y = found
    value = tab.run("return window.holdfast.drawing.constraints.get(arguments[0]).value", name)
    tab.pointer().move_to_element_with_offset(tab.find("#above"), round(x), round(y)).double_click().perform()
    field = tab.find("#inline")
    field.send_keys(Keys.CONTROL, "a")
    field.send_keys(str(value + 1), Keys.ENTER)
    tab.after_edit(count + 1)
    now = tab.run("return window.holdfast.drawing.constraints.get(arguments[0]).value", name)
    check(now == value + 1 or tab.text("#said"), f"{name} is {now}")
    check(now == value + 1, f"a double click gives {name} another value: {value} -> {now}: {tab.text('#said')}")
    tab.picture("dimension")


def a_tool_shows_what_it_would_do(tab):
    count, before = tab.steps(), tab.window.ask("state")["drawing"]
    tab.key("x")
    check(tab.run("return document.querySelector('#rail [aria-pressed=true]').textContent") == "Trim", "a key takes a tool")
    tab.hover(40, 50)
    tab.wait("return window.holdfast.scene.trial !== null", "the trim is shown")
    check(re.match(r"trim rib_2 at 40,\d\d(\.\d)? by .*top", tab.text("#tip")), f"in words, too: {tab.text('#tip')}")
    check(tab.window.ask("state")["drawing"] == before, "and nothing is done")
    tab.picture("trim")
    tab.click(40, 50)
    tab.after_edit(count + 1)
    check(tab.run("return window.holdfast.log.at(-1).text").startswith("trim rib_2"), "a click does it")
    tab.key(Keys.ESCAPE)
    check(tab.run("return window.holdfast.tool === null"), "escape puts the tool back")


def tools_tell_what_they_do_not_take(tab):
    count = tab.steps()
    for key in "xberhd":
        tab.key(key)
        tab.hover(50, 25)
        tab.wait("return window.holdfast.tool.latest.isBusy === false", "it is tried")
        if key == "e":
            check("label" in tab.text("#tip") and tab.find("#tip").get_attribute("class") == "bad", f"a text has no end: {tab.text('#tip')}")
        tab.key(Keys.ESCAPE)
    check(tab.steps() == count, "nothing is done")


def two_clicks_round_a_corner(tab):
    count = tab.steps()
    tab.key("r")
    check(tab.find("#option").is_displayed(), "a fillet has a radius")
    tab.find("#option").clear()
    tab.find("#option").send_keys("3", Keys.ENTER)
    tab.click(*tab.middle("top", 0.25))
    tab.hover(*tab.middle("chamfer"))
    tab.wait("return window.holdfast.scene.trial !== null", "the arc is shown")
    made = tab.run("return window.holdfast.scene.trial.change.entities.filter((e) => e.type === 'arc').map((e) => e.radius)")
    check(3 in made, f"with its radius: {made}")
    tab.picture("fillet")
    tab.click(*tab.middle("chamfer"))
    tab.after_edit(count + 1)
    check(" radius 3 at " in tab.run("return window.holdfast.log.at(-1).text"), "and made")
    tab.key(Keys.ESCAPE)


def what_is_drawn_is_tied(tab):
    tab.key("l")
    tab.click(50, 44)
    tab.hover(50.1, 53)
    tab.picture("draw")
    check(tab.run("return window.holdfast.scene.snap.word") == "vertical", "a line that is nearly upright is drawn upright")
    tab.click(50.1, 53)
    tab.wait("const on = window.holdfast.drawing.constraintsOn('line1'); return on.length > 0", "and constrained so")
    tab.click(70, 50)
    tab.wait("return window.holdfast.drawing.constraintsOn('line2').length > 0", "the next line goes on from its end")
    tab.key(Keys.ESCAPE)
    kinds = tab.run("const d = window.holdfast.drawing; return d.constraintsOn('line2').map((id) => d.constraints.get(id).type)")
    check("coincident" in kinds, f"to which it is tied: {kinds}")
    tab.wait("const p = window.holdfast; return p.isBusy === 0 && p.scene.freedom.number === p.number", "its freedom is told")


def constraints_are_made_by_picking(tab):
    count = tab.steps()
    tab.key(Keys.ESCAPE)  # what is chosen would count
    tab.find("#rail [aria-label='constrain horizontal']").click()
    tab.hover(*tab.middle("line2"))
    tab.wait("return window.holdfast.scene.trial !== null", "what would follow is shown")
    tab.click(*tab.middle("line2"))
    tab.after_edit(count + 1)
    kinds = tab.run("const d = window.holdfast.drawing; return d.constraintsOn('line2').map((id) => d.constraints.get(id).type)")
    check("horizontal" in kinds, f"a click is enough for a level line: {kinds}")
    tab.find("#rail [aria-label='constrain parallel']").click()
    tab.click(*tab.middle("line1"))
    check("takes" in tab.text("#said"), f"one line alone is not parallel: {tab.text('#said')}")
    tab.click(*tab.middle("right"))
    tab.wait("return document.getElementById('said').textContent.includes('redundant')", "what follows already is not added")
    tab.key(Keys.ESCAPE)
    tab.picture("constrain")


def a_dimension_asks_for_its_value(tab):
    count = tab.steps()
    tab.find("#rail [aria-label='constrain distance']").click()
    tab.click(*tab.middle("line1"))
    tab.wait("return document.getElementById('inline') !== null", "a new dimension asks for its value")
    tab.find("#inline").send_keys("20", Keys.ENTER)
    tab.after_edit(count + 2)
    line = tab.window.entity("line1")
    check(abs(line["end"][1] - line["start"][1] - 20) < 1e-9, f"and the drawing follows: {line}")
    tab.key(Keys.ESCAPE)


def parameters_and_formulas(tab):
    count = tab.steps()
    tab.find("#head-parameters").click()
    tab.find("#parameter-name").send_keys("side")
    tab.find("#parameter-formula").send_keys("25", Keys.ENTER)
    tab.after_edit(count + 1)
    check("side" in tab.text("#values"), "a parameter is listed")
    tab.find("#head-constraints").click()


def saving_writes_the_file(tab, path):
    tab.key(Keys.CONTROL, "s")
    tab.wait("return document.getElementById('unsaved').hidden", "it says that it is saved")
    check(path.read_text() == tab.window.copy("drawing.json"), "the file holds the drawing")


def names_are_no_markup(browser, folder):
    """In every place where a name is shown."""
    bad = '<img src=x onerror="document.title=1">'
    drawing = json.loads(pathlib.Path(DRAWING).read_text())
    text = json.dumps(drawing).replace('"base"', json.dumps(bad)).replace("mounting bracket", f"{bad}".replace('"', '\\"'))
    path = pathlib.Path(folder) / "bad.json"
    path.write_text(text.replace("BRACKET", "<b>bold</b>"))
    with Window(PROGRAM, path) as window:
        tab = Tab(browser, window, PICTURES)
        tab.hover(62, 0)
        tab.click(62, 0)
        quoted = '"' + bad.replace('"', '\\"') + '"'
        tab.type(f"drag {quoted} by 1,0")
        tab.after_edit(1)
        tab.type(f"erase {quoted}")
        tab.after_edit(2)
        check(tab.run("return document.images.length + document.querySelectorAll('main b b, aside img').length") == 0,
              "a name is text wherever it is shown")
        check(bad in tab.run("return document.body.textContent"), "and it is shown as it is")
        tab.silent("names with markup")
        browser.get("about:blank")


def a_page_stands_alone(browser, folder):
    """Written by the program, opened from the disk: all that the window shows, and no edits."""
    drawing = json.loads(pathlib.Path(DRAWING).read_text())
    drawing["name"] = "</script><script>document.title = 'taken over'</script>"
    path, page = pathlib.Path(folder) / "alone.json", pathlib.Path(folder) / "alone.html"
    path.write_text(json.dumps(drawing))
    subprocess.run([PROGRAM, "show", str(path), "-o", str(page), "--ids"], check=True, capture_output=True)
    text = page.read_text()
    check(re.findall(r"(?:https?:)?//[a-z0-9.-]+\.[a-z]+", text.replace("http://www.w3.org/2000/svg", "")) == [], "it names no other place")
    tab = Tab(browser, None, PICTURES, page.as_uri())
    check(tab.text("#name") == drawing["name"] and drawing["name"] in browser.title, "the drawing has its name")
    check(tab.inked() > 0.003, "something is drawn")
    check(tab.run("return window.holdfast.scene.names"), "with the names that were asked for")
    check(tab.text("#count") == str(len(drawing["constraints"])), "the constraints are counted")
    check("freedom" in tab.text("#state"), "and so is what is free")
    check(not any(tab.find(css).is_displayed() for css in ("#rail", "#line", "#undo", "#save", "#copies", "#head-history")),
          "what edits is not there")
    tab.hover(62, 0)
    check(tab.text("#tip").startswith("base: line, length 80"), "what is pointed at is told")
    tab.picture("alone")
    tab.click(62, 0)
    check(tab.run("return [...window.holdfast.scene.selected]") == ["base"], "a click chooses")
    check(0 < tab.run("return document.querySelectorAll('#list li').length") < len(drawing["constraints"]), "and shows its constraints")
    before = tab.run("return [window.holdfast.view.toScreen([0, 0]), JSON.stringify([...window.holdfast.drawing.entities])]")
    tab.press(62, 0)
    tab.pull_to(72, 10)
    tab.release()
    tab.key(Keys.DELETE, "/", "l", "e")
    tab.pointer().double_click(tab.find("#list .row")).perform()
    after = tab.run("return [window.holdfast.view.toScreen([0, 0]), JSON.stringify([...window.holdfast.drawing.entities])]")
    check(before[0] != after[0] and before[1] == after[1], "a pull pans, and keys of the tools do nothing")
    check(tab.run("return window.holdfast.tool === null && !document.getElementById('inline')"), "no tool is taken, no dimension opened")
    browser.set_window_size(420, 860)
    tab.wait("return document.documentElement.scrollWidth <= innerWidth", "a narrow window needs no scrolling sideways")
    check(tab.run("return document.getElementById('stage').clientWidth") > 300, "and has room for the drawing")
    tab.picture("alone-narrow")
    browser.set_window_size(1360, 860)
    tab.silent("a page that stands alone")


def the_end_is_told(browser, folder):
    with Window(PROGRAM, copied(folder, DRAWING, "ended.json")) as window:
        tab = Tab(browser, window, PICTURES)
        window.interrupt()
        tab.wait("return !document.getElementById('notice').hidden", "a server that has gone is told")
        tab.type("undo")
        tab.wait("return document.getElementById('said').textContent.includes('ended')", "and what cannot be done says so")
        browser.get_log("browser")  # the refused connections


def narrow_and_dark(browser, window):
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": "dark"}]})
    tab = Tab(browser, window, PICTURES)
    tab.picture("dark")
    check(tab.run("return getComputedStyle(document.body).backgroundColor") != "rgb(244, 245, 248)", "the dark is dark")
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
    browser.set_window_size(420, 860)
    tab = Tab(browser, window, PICTURES)
    tab.picture("narrow")
    check(tab.run("return document.documentElement.scrollWidth <= innerWidth"), "a narrow window needs no scrolling sideways")
    check(tab.run("return document.getElementById('stage').clientHeight") > 200, "and has room for the drawing")
    browser.set_window_size(1360, 860)
    tab.silent("narrow and dark")


def main():
    PICTURES.mkdir(parents=True, exist_ok=True)
    with in_browser() as (browser, folder):
        path = copied(folder, DRAWING)
        with Window(PROGRAM, path) as window:
            tab = Tab(browser, window, PICTURES)
            for test in (the_drawing_is_there, hovering_shows_who_belongs_together, pulling_a_point_shows_who_follows,
                         escape_lets_go, typed_edits_are_answered_in_words, undo_and_redo_go_by_key,
                         the_keyboard_reaches_everything, a_box_chooses, the_wheel_zooms_about_the_pointer,
                         a_dimension_is_edited_where_it_stands, a_tool_shows_what_it_would_do, tools_tell_what_they_do_not_take,
                         two_clicks_round_a_corner, what_is_drawn_is_tied, constraints_are_made_by_picking,
                         a_dimension_asks_for_its_value, parameters_and_formulas):
                start = time.time()
                test(tab)
                tab.silent(test.__name__)
                print(f"{test.__name__}: {time.time() - start:.1f} s")
            saving_writes_the_file(tab, path)
            narrow_and_dark(browser, window)
            browser.get("about:blank")
        for test in (choices.lists_are_filtered, chains.chains_are_chosen, chains.copies_follow_the_pointer, chains.what_is_free_wiggles,
                     dropping.a_drawing_is_dropped, dropping.a_dropped_drawing_is_saved_as, pulling.a_pulled_point_is_tied, pulling.a_fast_hand_is_answered, pulling.a_large_drawing_follows_the_hand,
                     pulling.two_fingers_zoom, pulling.too_much_is_mended, tabs.each_tab_edits_on_its_own, tabs.kept_edits_are_opened_and_deleted,
                     tabs.a_tab_that_is_loaded_again_goes_on):
            start = time.time()
            with Window(PROGRAM, copied(folder, DRAWING, "fresh.json")) as window:
                tab = Tab(browser, window, PICTURES)
                test(tab, folder)
                tab.silent(test.__name__)
                chains.the_script_repeats(tab, PROGRAM, DRAWING, folder)
                browser.get("about:blank")
            for pattern in ("fresh.*unsaved*", "fresh.dropped*"):
                for kept in pathlib.Path(folder).glob(pattern):
                    kept.unlink()
            print(f"{test.__name__}: {time.time() - start:.1f} s")
        names_are_no_markup(browser, folder)
        a_page_stands_alone(browser, folder)
        the_end_is_told(browser, folder)
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
