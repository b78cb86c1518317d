"""Several tabs on one address: each with a drawing of its own, and one file between them."""
import os
import pathlib
import time

from browser import Keys, Tab
from dropping import answer, answers
from program import check


def another(tab):
    tab.browser.switch_to.new_window("tab")
    return Tab(tab.browser, tab.window, tab.pictures)


def to(tab, handle):
    """Back to a tab; the server is asked in its name."""
    tab.browser.switch_to.window(handle)
    tab.window.tab = tab.name()


def each_tab_edits_on_its_own(tab, folder):
    path, first = pathlib.Path(folder) / "fresh.json", tab.browser.current_window_handle
    tab.type("drag base.end by 5,0")
    tab.after_edit(1)
    moved = tab.entity("base")
    other = another(tab)
    second = tab.browser.current_window_handle
    check(other.entity("base")["end"] == [80, 0] and other.find("#undo").get_attribute("disabled"),
          "a second tab shows what the file holds, and has nothing to take back")
    other.type("draw circle 40,70 radius 5 as moon")
    other.after_edit(1)
    other.key(Keys.CONTROL, "s")
    other.wait("return document.getElementById('unsaved').hidden", "it saves")
    saved = path.read_text()
    to(tab, first)
    check(tab.entity("base") == moved and not tab.entity("moon") and tab.steps() == 1, "nothing of that is done in the first")
    tab.wait("return document.getElementById('notice').textContent.includes('nother tab has saved fresh.json')", "which is told that it was saved")
    tab.picture("tabs-told")
    tab.key(Keys.CONTROL, "s")
    asked = answers(tab)
    check(asked == ["Download this drawing instead", "Save over it", "Cancel"], f"a save that would write over that is asked about: {asked}")
    tab.picture("tabs-asks")
    answer(tab, "Cancel")
    tab.wait("return document.getElementById('said').textContent.startsWith('not saved')", "cancel saves nothing")
    check(path.read_text() == saved and tab.find("#unsaved").is_displayed(), "and leaves the file alone")
    tab.key(Keys.CONTROL, "s")
    answers(tab)
    answer(tab, "Save over it")
    tab.wait("return document.getElementById('unsaved').hidden", "what is wanted is done")
    check(path.read_text() == tab.window.copy("drawing.json") != saved, "the file holds it")
    to(other, second)
    other.wait("return document.querySelector('#notice button') !== null", "then the second tab is told")
    other.find("#notice button").click()
    other.wait("return !window.holdfast.drawing.entities.has('moon')", "and shows what the file holds, when that is wanted")
    check(other.entity("base") == moved, "which is what the first tab saved")
    other.type("draw circle 40,70 radius 5 as moon")
    other.after_edit(1)
    tab.browser.close()
    to(tab, first)


def kept_edits_are_opened_and_deleted(tab, folder):
    check(not tab.find("#kept").is_displayed(), "nothing is kept, and nothing says so")
    for name, text in (("aa", "draw circle 40,70 radius 5 as moon"), ("bb", "draw circle 10,70 radius 3 as star")):
        with tab.window.named(name):
            tab.window.ask("state")
            tab.window.do("edit", text)
    dropped = pathlib.Path(folder) / "fresh.dropped.json"
    dropped.write_text((pathlib.Path(folder) / "fresh.json").read_text())
    os.utime(dropped, (0, 0))
    tab.type("drag base.end by 5,0")
    tab.after_edit(1)
    time.sleep(11)  # so long a tab that says nothing counts as open
    tab.key(Keys.CONTROL, "s")
    tab.wait("return document.getElementById('kept').textContent === 'Kept (3)'", "what others have not saved is counted")
    tab.find("#kept").send_keys(Keys.ENTER)
    tab.wait("return document.querySelectorAll('#kept-dialog li').length === 3", "and listed")
    names = tab.run("return [...document.querySelectorAll('#kept-dialog li button')].map((each) => each.getAttribute('aria-label'))")
    check(len(names) == 6 and names[0].startswith("Open fresh.unsaved") and ", 1 edit, " in names[0] and names[1].startswith("Delete fresh"),
          f"each by its name, its edits and its time: {names}")
    check("of a drawing that was dropped here" in tab.text("#kept-dialog li:last-of-type"), "of one that was dropped, what it is of")
    check(tab.run("return document.activeElement.textContent") == "Open", "the keyboard is at the first one")
    tab.picture("kept")
    tab.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": "dark"}]})
    tab.browser.set_window_size(420, 860)
    tab.wait("return innerWidth < 500", "the window is narrow")
    tab.picture("kept-narrow")
    check(tab.run("return document.documentElement.scrollWidth <= innerWidth"), "a narrow window has room for the list")
    tab.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
    tab.browser.set_window_size(1360, 860)
    opened = "moon" if tab.run("return document.querySelector('#kept-dialog b').textContent") == "fresh.unsaved.json" else "star"
    tab.browser.switch_to.active_element.send_keys(Keys.ENTER)
    tab.wait("return window.holdfast.drawing.entities.has(arguments[0])", "it is opened with the keyboard", opened)
    check(tab.entity("base")["end"] == [80, 0] and tab.steps() == 1, "with the edits that were done there")
    tab.wait("return document.getElementById('kept').textContent === 'Kept (2)'", "one is less")
    tab.find("#kept").click()
    tab.wait("return document.querySelectorAll('#kept-dialog li').length === 2", "on the list")
    tab.find("#kept-dialog li button:last-of-type").click()
    tab.wait("return document.querySelector('#ask') !== null", "it is asked before one is deleted")
    answer(tab, "Delete it")
    tab.wait("return document.querySelectorAll('#kept-dialog li').length === 1", "and then it is gone")
    tab.find("#kept-dialog li button:last-of-type").click()
    tab.wait("return document.querySelector('#ask') !== null", "so is the next")
    answer(tab, "Delete it")
    tab.wait("return document.querySelector('#kept-dialog').textContent.includes('None are left')", "and then there are none")
    tab.browser.switch_to.active_element.send_keys(Keys.ESCAPE)
    tab.wait("return document.querySelector('dialog') === null && document.getElementById('kept').hidden", "no list, no button")
    check(len(list(pathlib.Path(folder).glob("fresh.unsaved*"))) == 1, "of the files, too")


def a_tab_that_is_loaded_again_goes_on(tab, folder):
    tab.type("drag base.end by 5,0")
    tab.after_edit(1)
    name, moved, first = tab.name(), tab.entity("base"), tab.browser.current_window_handle
    tab.browser.refresh()
    tab = Tab(tab.browser, tab.window, tab.pictures, tab.window.address)
    check(tab.name() == name and tab.entity("base") == moved, "a tab that is loaded again goes on with its drawing")
    tab.key(Keys.CONTROL, "z")
    tab.after_edit(2)
    check(tab.entity("base")["end"] == [80, 0], "and takes back what it had done")
    tab.key(Keys.CONTROL, Keys.SHIFT, "z")
    tab.after_edit(3)
    tab.run("window.open(location.href)")
    copy = next(handle for handle in tab.browser.window_handles if handle != first)
    tab.browser.switch_to.window(copy)
    tab.wait("return document.body.dataset.ready === 'yes'", "a copy of the tab is there")
    check(tab.name() != name and tab.entity("base")["end"] == [80, 0], "and has a drawing of its own")
    tab.browser.close()
    to(tab, first)
