#!/usr/bin/env python3
"""What nobody would do on purpose: clicks, pulls, keys and tools in any order, the same ones for the same seed. After each
the engine says whether all constraints hold, and the page shows what the server has; in the end the log is run as a script.

usage: actions_test.py PROGRAM DRAWING.json [--actions N] [--seed N] [--pictures FOLDER]

Exit code 77 (skipped) where chromium, its driver or selenium is missing.
"""
import argparse
import pathlib
import random
import sys
import time

from program import Window, check, copied, failures, outcome

try:
    from browser import Keys, Tab, in_browser
    from chains import the_script_repeats
except ImportError:
    print("skipped: selenium is not here; install python3-selenium")
    sys.exit(77)

FEWEST, MOST = 6, 90  # entities: beyond, the drawing is begun anew

# Where the screen shows something: places to take hold of, and points on curves.
PLACES = """const p = window.holdfast, found = [];
for (const e of p.drawing.entities.values()) {
  const on = [e.start, e.end, e.centre, e.position, ...(e.vertices || []), ...(e.control || [])];
  if (e.start && e.end) on.push([e.start[0] * 0.6 + e.end[0] * 0.4, e.start[1] * 0.6 + e.end[1] * 0.4]);
  if (e.radius) on.push([e.centre[0] + e.radius * Math.cos(e.start_angle || 2), e.centre[1] + e.radius * Math.sin(e.start_angle || 2)]);
  for (const place of on) if (place) found.push(p.view.toScreen(place));
}
for (const each of p.painter.placed.slice(0, 40)) found.push([each.x, each.y]);
const {width, height} = p.view;
return {size: [width, height], places: found.filter(([x, y]) => x > 8 && y > 8 && x < width - 8 && y < height - 8)};"""

IDLE = """const p = window.holdfast, still = (latest) => !latest || latest.isSettled;
return p.number === arguments[0] && p.isBusy === 0 && still(p.hands.latest) && still(p.tool?.latest) && p.scene.freedom?.number === p.number"""

# What was asked last stands in the page, to be told when it is not answered.
RECORD = """const ask = window.fetch; window.asked = [];
window.fetch = (path, how) => { window.asked = [...window.asked.slice(-5), how?.body || path]; return ask(path, how); };"""

KEYS = "lcayoxberhdvfnpmtjw?+-"


class Hand:
    """Does one thing after the other."""

    def __init__(self, tab, seed):
        self.tab, self.random = tab, random.Random(seed)
        self.actions = [(self.pull, 8), (self.click, 8), (self.key, 6), (self.draw, 3), (self.constrain, 3), (self.double_click, 2),
                        (self.undo, 3), (self.redo, 2), (self.copy, 2), (self.nudge, 1), (self.press, 3), (self.wheel, 1),
                        (self.type, 2), (self.switch, 2), (self.erase, 1), (self.escape, 2)]

    def act(self):
        """What it did."""
        seen = self.tab.run(PLACES)
        self.size, self.places = seen["size"], seen["places"]
        act = self.random.choices([each[0] for each in self.actions], [each[1] for each in self.actions])[0]
        return f"{act.__name__} {act() or ''}"

    def place(self):
        """In pixels from the middle: mostly where something is, else anywhere."""
        w, h = self.size
        if self.places and self.random.random() < 0.8:
            x, y = self.random.choice(self.places)
        else:
            x, y = self.random.uniform(10, w - 10), self.random.uniform(10, h - 10)
        shake = self.random.choice((0, 0, 3, 12))
        x, y = x + self.random.uniform(-shake, shake), y + self.random.uniform(-shake, shake)
        return round(min(max(x, 6), w - 6) - w / 2), round(min(max(y, 6), h - 6) - h / 2)

    def chain(self, *places, pulls=False):
        chain, canvas = self.tab.pointer(), self.tab.find("#above")
        for i, place in enumerate(places):
            chain.move_to_element_with_offset(canvas, *place)
            if pulls and i == 0:
                chain.click_and_hold()
            elif not pulls:
                chain.click()
        if pulls:
            chain.release()
        chain.perform()

    def pull(self):
        places = [self.place() for _ in range(self.random.choice((2, 3)))]
        self.chain(*places, pulls=True)
        return places

    def click(self):
        places = [self.place() for _ in range(self.random.choice((1, 1, 2)))]
        shift = self.random.random() < 0.3
        if shift:
            self.tab.pointer().key_down(Keys.SHIFT).perform()
        self.chain(*places)
        if shift:
            self.tab.pointer().key_up(Keys.SHIFT).perform()
        return places, shift

    def double_click(self):
        place = self.place()
        self.tab.pointer().move_to_element_with_offset(self.tab.find("#above"), *place).double_click().perform()
        if self.tab.run("return document.getElementById('inline') !== null"):
            value = f"{self.random.uniform(5, 80):.1f}"
            self.tab.find("#inline").send_keys(Keys.CONTROL, "a")
            self.tab.find("#inline").send_keys(value, Keys.ENTER)
            return place, value
        return place

    def key(self):
        key = self.random.choice(KEYS)
        self.tab.key(key)
        return key

    def draw(self):
        key = self.random.choice("lcayo")
        self.tab.key(key)
        places = [self.place() for _ in range(self.random.choice((2, 3)))]
        self.chain(*places)
        self.tab.key(Keys.ENTER if self.random.random() < 0.5 else Keys.ESCAPE)
        return key, places

    def constrain(self):
        buttons = self.tab.browser.find_elements("css selector", "#rail button.kind")
        button = self.random.choice(buttons)
        button.click()
        places = [self.place() for _ in range(2)]
        self.chain(*places)
        return button.get_attribute("aria-label"), places

    def control(self, key, *more):
        self.tab.key(Keys.CONTROL, *more, key)
        return key

    def undo(self):
        return self.control("z")

    def redo(self):
        return self.control("z", Keys.SHIFT)

    def copy(self):
        keys = self.random.choice(("c", "x", "cv", "xv", "v", "d"))
        self.chain(self.place())
        for key in keys:
            self.control(key)
        place = self.place()
        self.chain(place)
        return keys, place

    def nudge(self):
        key = self.random.choice((Keys.ARROW_LEFT, Keys.ARROW_UP, Keys.ARROW_DOWN, Keys.ARROW_RIGHT))
        self.tab.key(Keys.SHIFT, key)

    def press(self):
        """A button or a row of the lists."""
        return self.tab.run("""const all = [...document.querySelectorAll('aside button, #undo, #redo, #fit')].filter((each) =>
            !each.disabled && each.checkVisibility());
            const one = all[Math.floor(arguments[0] * all.length)]; one.click(); return one.textContent.slice(0, 40);""", self.random.random())

    def wheel(self):
        self.tab.run("const c = document.getElementById('above'); c.dispatchEvent(new WheelEvent('wheel', {deltaY: arguments[0],"
                     "bubbles: true, cancelable: true, clientX: 500, clientY: 400}))", self.random.uniform(-200, 200))

    def type(self):
        ids = self.tab.run("return [...window.holdfast.drawing.entities.keys()]")
        name = self.random.choice(ids)
        edit = self.random.choice(("break {} at {},{}", "move {} by {},{}", "rotate {} about {},{} by 15", "scale {} about {},{} by 1.1",
                                   "trim {} at {},{} by top base", "drag {} by {},{}", "offset {} by 3", "undo", "parameter w = 4"))
        text = edit.format(name if name.isidentifier() else f'"{name}"', self.random.randint(-9, 60), self.random.randint(-9, 40))
        self.tab.type(text)
        return text

    def switch(self):
        """A constraint off, or on again."""
        found = self.tab.run("return [...window.holdfast.drawing.constraints.values()].map((c) => [c.id, c.active === false])")
        if not found:
            return "nothing"
        name, is_off = self.random.choice([each for each in found if each[1]] or found) if self.random.random() < 0.5 else self.random.choice(found)
        text = f"{'unsuppress' if is_off else 'suppress'} {name}"
        self.tab.type(text)
        return text

    def erase(self):
        self.chain(self.place())
        self.tab.key(Keys.DELETE)

    def escape(self):
        self.tab.key(Keys.ESCAPE)


def difference(known, drawing):
    return [(part, each) for part in known for each in known[part] + drawing[part] if (each in known[part]) != (each in drawing[part])][:4]


def judge(tab, what):
    """Whether all holds, and the page knows it."""
    patience = time.time() + 60
    while True:  # ties come after what was drawn, and a hand may have been faster than the page
        freedom = tab.window.ask("freedom")
        if tab.run(IDLE, freedom["number"]) or time.time() > patience:
            break
        time.sleep(0.02)
    check(time.time() <= patience, f"after {what} the page comes to rest")
    check("error" not in freedom and freedom["broken"] == [], f"after {what} all constraints hold: {freedom.get('error')} {freedom.get('broken')}")
    drawing = tab.window.ask("state")["drawing"]
    known = tab.run("const d = window.holdfast.drawing; return {entities: [...d.entities.values()], constraints: [...d.constraints.values()]}")
    same = all(sorted(known[part], key=lambda e: e["id"]) == sorted(drawing[part], key=lambda e: e["id"]) for part in known)
    check(same, f"after {what} the page shows the drawing: {difference(known, drawing) if not same else ''}")
    return len(drawing["entities"])


def any_action_leaves_a_sound_drawing(tab, count, seed):
    hand, slowest = Hand(tab, seed), (0, "")
    tab.run(RECORD)
    for number in range(count):
        did = f"{number}: {hand.act()}"
        start = time.time()
        before = len(failures)
        try:
            entities = judge(tab, did)
        except TimeoutError:
            check(False, f"after {did} the server answers: asked {tab.run('return window.asked')}")
        if len(failures) > before:
            return print("edits until then:", *(each["text"] for each in tab.run("return window.holdfast.log") if not each["error"]), sep="\n  ")
        slowest = max(slowest, (time.time() - start, f"{did}, {tab.run('return window.asked.at(-2)')}"))
        tab.silent(f"after {did}")
        if entities < FEWEST or entities > MOST:
            begin_anew(tab)
    return print(f"the slowest took {slowest[0]:.2f} s until the page was at rest: {slowest[1]}")


def begin_anew(tab):
    tab.key(Keys.ESCAPE)
    tab.window.do("discard")
    tab.wait("return window.holdfast.drawing.entities.size === arguments[0]", "the drawing begins anew",
             len(tab.window.ask("state")["drawing"]["entities"]))
    tab.key("f")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program", type=lambda path: str(pathlib.Path(path).resolve()))
    arguments.add_argument("drawing")
    arguments.add_argument("--actions", type=int, default=150)
    arguments.add_argument("--seed", type=int, default=1)
    arguments.add_argument("--pictures", type=pathlib.Path)
    asked = arguments.parse_args()
    with in_browser() as (browser, folder):
        with Window(asked.program, copied(folder, asked.drawing)) as window:
            tab = Tab(browser, window, asked.pictures or pathlib.Path(folder))
            any_action_leaves_a_sound_drawing(tab, asked.actions, asked.seed)
            tab.picture("actions")
            log = window.ask("state")["log"]
            check(len(log) > 0, "something was edited")
            the_script_repeats(tab, asked.program, asked.drawing, folder)
            browser.get("about:blank")
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
