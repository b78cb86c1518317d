"""Points that are pulled onto something, and sets of constraints that are too much."""
import json

from browser import Keys
from documents import ladder
from dropping import drop, shows
from program import check


def snapped(tab):
    return tab.run("const s = window.holdfast.scene.snap; return s && s.word")


def settled(tab):
    tab.wait("const h = window.holdfast.hands; return h.pull && h.latest.isSettled", "the last place is tried")


def pull(tab, start, *places):
    tab.press(*start)
    for place in places:
        tab.pull_to(*place)
        settled(tab)


def kinds_on(tab, entity):
    return tab.run("const d = window.holdfast.drawing; return d.constraintsOn(arguments[0]).map((id) => d.constraints.get(id)).map((c) =>"
                   "`${c.type} ${c.refs.map((ref) => `${ref.entity}.${ref.point}`).join(' ')}`)", entity)


def a_pulled_point_is_tied(tab, _folder):
    for text in ("draw line 100,10 110,20 as free", "draw circle 110,40 radius 5 as disc"):
        count = tab.steps()
        tab.type(text)
        tab.after_edit(count + 1)
    tab.key("f")
    tab.key(Keys.ESCAPE)
    end = tab.entity("chamfer")["start"]
    pull(tab, (100, 10), (60, 30), (end[0] + 0.4, end[1] + 0.3))
    check(snapped(tab) == "coincident free.start top.end", f"near an end it shows how it would be tied: {snapped(tab)}")
    check(tab.run("return window.holdfast.scene.trial.entities.map((e) => e.id)") == ["free"], "nothing else moves")
    tab.picture("pull-snap")
    tab.release()
    tab.after_edit(4)
    check(tab.entity("free")["start"] == end, f"it lies there: {tab.entity('free')} {end}")
    check("coincident free.start top.end" in kinds_on(tab, "free"), f"and is tied: {kinds_on(tab, 'free')}")
    texts = tab.run("return window.holdfast.log.slice(-2).map((each) => each.text)")
    check(texts[0].startswith("drag free.start by ") and texts[1] == "constrain coincident free.start top.end", f"in words: {texts}")
    tab.key(Keys.CONTROL, "z")
    tab.wait("return window.holdfast.drawing.entities.get('free').start[0] === 100", "one undo takes both back")
    check(kinds_on(tab, "free") == [], "the tie, too")
    top = tab.entity("top")
    middle = [(a + b) / 2 for a, b in zip(top["start"], top["end"])]
    for place, word in ((middle, "midpoint free.start top"), ((middle[0] + 12, middle[1] + 0.3), "point_on_curve free.start top"),
                        ((110.3, 40.2), "coincident free.start disc.centre")):
        count = tab.steps()
        pull(tab, (100, 10), (90, 30), place)
        check(snapped(tab) == word, f"{word}: {snapped(tab)}")
        tab.release()
        tab.after_edit(count + 2)
        check(any(kind.startswith(word.split()[0]) for kind in kinds_on(tab, "free")), f"{word}: {kinds_on(tab, 'free')}")
        tab.type("undo")
        tab.wait("return window.holdfast.drawing.entities.get('free').start[0] === 100 && window.holdfast.isBusy === 0", "an undo takes it back")
    count = tab.steps()
    tab.press(100, 10)
    tab.pull_to(60, 30)
    tab.pointer().key_down(Keys.CONTROL).move_to_element_with_offset(tab.find("#above"), *tab.at(end[0] + 0.4, end[1] + 0.3)).perform()
    settled(tab)
    check(snapped(tab) is None, f"with Ctrl it falls on nothing: {snapped(tab)}")
    tab.release()
    tab.pointer().key_up(Keys.CONTROL).perform()
    tab.after_edit(count + 1)
    check(kinds_on(tab, "free") == [] and tab.entity("free")["start"] != end, f"and is not tied: {kinds_on(tab, 'free')}")
    count = tab.steps()
    pull(tab, tab.entity("rib")["start"], (45, 2), (50, 0.3))
    check(snapped(tab) is None, f"what it is tied to already is nothing to be tied to: {snapped(tab)}")
    tab.key(Keys.ESCAPE)
    tab.release()
    check(tab.steps() == count, "escape lets go")
    what_is_held_back(tab)
    what_comes_into_view(tab)


def what_comes_into_view(tab):
    """While one pulls, too, it is something to fall on."""
    (x, y), to = tab.entity("free")["start"], tab.entity("left")["end"]
    check(abs(x - to[0]) + abs(y - to[1]) > 10, f"what it is pulled to is far off: {x}, {y} and {to}")
    tab.run("const [x, y] = arguments, p = window.holdfast; p.view.fit([x - 2, y - 2, x + 2, y + 2]); p.moved()", x, y)
    tab.press(x, y)
    tab.pull_to(x + 0.5, y + 0.5)
    settled(tab)
    tab.run("window.holdfast.fit()")
    tab.pull_to(to[0] + 0.4, to[1] + 0.3)
    settled(tab)
    check(snapped(tab) is not None, "what came into view while one pulls is fallen on")
    tab.key(Keys.ESCAPE)
    tab.release()


def what_is_held_back(tab):
    count = tab.steps()
    pull(tab, tab.entity("left")["start"], (30, 20), tab.entity("free")["end"])
    check(snapped(tab) is None, f"what is held back before it gets there is not tied: {snapped(tab)}")
    tab.release()
    tab.after_edit(count + 1)
    check(kinds_on(tab, "free") == [], f"nor when it is let go: {kinds_on(tab, 'free')}")


def a_large_drawing_follows_the_hand(tab, _folder):
    """While it moves all that follows is seen; when it rests, what becomes of the rest, too."""
    drop(tab, "ladder.json", json.dumps(ladder(80)).encode())
    shows(tab, "ladder.json")
    tab.run("const p = window.holdfast; p.view.fit([-20, -20, 100, 80]); p.moved()")
    tab.run("const l = window.holdfast.hands.latest, answer = l.answer; window.seen = [];"
            "l.answer = (result) => { window.seen.push(Boolean(result.isGlimpse)); answer(result); }")
    pull(tab, (0, 8), (-4, 11), (-6, 12.5))
    seen = tab.run("return window.seen")
    check(seen[0] and not seen[-1], f"glimpses first, and a whole trial when the hand rests: {seen}")
    trial = tab.run("const t = window.holdfast.scene.trial; return [t.isGlimpse || false, t.entities.length, t.change.entities]")
    check(not trial[0] and trial[1] == len(trial[2]) > 4, f"that tells the fates of all: {trial[:2]}")
    tab.picture("pull-large")
    shown = {each["id"]: each for each in trial[2]}
    tab.release()
    tab.after_edit(1)
    check(all(tab.entity(name)["start"] == each["start"] and tab.entity(name)["end"] == each["end"] for name, each in list(shown.items())[:20] + [("top0", shown["top0"])]),
          "what was seen is what is done")


def a_fast_hand_is_answered(tab, _folder):
    """As fast as a page can make a pointer move, for a second and a half."""
    tab.press(80, 0)
    tab.pull_to(84, 4)
    said = tab.run("""const canvas = document.getElementById('above'), box = canvas.getBoundingClientRect(), p = window.holdfast;
        let asked = 0, refused = [];
        const ask = p.hands.latest.ask;
        p.hands.latest.ask = async (text) => { asked += 1; try { return await ask(text); } catch (failure) { refused.push(failure.message); throw failure; } };
        return new Promise((done) => { const start = performance.now(), step = () => {
            const t = performance.now() - start, [x, y] = p.view.toScreen([84 + 3 * Math.sin(t / 90), 4 + 3 * Math.cos(t / 70)]);
            canvas.dispatchEvent(new PointerEvent('pointermove', {clientX: box.left + x, clientY: box.top + y, pointerId: 1, bubbles: true}));
            if (t < 1500) { const channel = new MessageChannel(); channel.port1.onmessage = step; channel.port2.postMessage(0); }
            else { p.hands.latest.ask = ask; done({asked, refused}); } }; step(); })""")
    check(said["refused"] == [] and 10 < said["asked"] < 400 * 1.5, f"a pull never asks too often: {said}")
    tab.key(Keys.ESCAPE)
    tab.release()


def refs(*places):
    return [{"entity": place.split(".")[0], "point": place.split(".")[1]} for place in places]


def two_fingers_zoom(tab, _folder):
    left, top, width, height = tab.run("const b = document.getElementById('above').getBoundingClientRect(); return [b.left, b.top, b.width, b.height]")
    x, y = left + width / 2, top + height / 2
    view = "return [window.holdfast.view.scale, ...window.holdfast.view.toScreen([40, 30])]"
    before = tab.run(view)
    tab.touch("touchStart", (x - 30, y), (x + 30, y))
    for far in (40, 50, 60):
        tab.touch("touchMove", (x - far + 5, y + 10), (x + far + 5, y + 10))
    tab.touch("touchEnd")
    after = tab.run(view)
    check(abs(after[0] / before[0] - 2) < 0.02, f"two fingers zoom: {before} {after}")
    moved = [(a - m) - 2 * (b - m) for a, b, m in zip(after[1:], before[1:], (width / 2, height / 2))]
    check(abs(moved[0] - 5) < 2 and abs(moved[1] - 10) < 2, f"and what lies between them goes with them: {moved}")
    check(tab.steps() == 0 and not tab.chosen(), "nothing else is done")


def too_much_is_mended(tab, _folder):
    lines = [{"id": name, "type": "line", "start": start, "end": end}
             for name, start, end in (("a", [0, 0], [40, 0]), ("b", [0, 20], [40, 20]), ("c", [0, 40], [40, 40]))]
    constraints = [{"id": "wide", "type": "distance", "refs": refs("a.whole"), "value": 40.0},
                   {"id": "wider", "type": "distance", "refs": refs("a.whole"), "value": 45.0},
                   {"id": "h1", "type": "horizontal", "refs": refs("b.whole")}, {"id": "h2", "type": "horizontal", "refs": refs("c.whole")},
                   {"id": "p", "type": "parallel", "refs": refs("b.whole", "c.whole")}]
    drawing = {"name": "too much", "units": {"length": "mm", "angle": "rad"}, "entities": lines, "constraints": constraints}
    drop(tab, "much.json", json.dumps(drawing).encode())
    shows(tab, "much.json")
    freedom = tab.window.ask("freedom")
    check(sorted(freedom["conflicts"][0]) == ["wide", "wider"] and len(freedom["redundant"]) == 1, f"it is too much: {freedom}")
    check("2 cannot hold together" in tab.text("#trouble") and "that others imply" in tab.text("#trouble"), tab.text("#trouble"))
    tab.find("#trouble [aria-label='show all: 2 constraints']").click()
    check(sorted(tab.run("return [...window.holdfast.scene.pinned.marks]")) == ["wide", "wider"]
          and tab.run("return [...window.holdfast.scene.pinned.entities]") == ["a"], "a set is shown")
    tab.hover(20, 10)
    check(tab.run("return window.holdfast.scene.pinned.marks.size") == 2, "until it is let go")
    tab.picture("too-much")
    tab.find("#trouble [aria-label='let go: 2 constraints']").click()
    check(tab.run("return window.holdfast.scene.pinned.marks.size") == 0, "by the same button")
    extra = freedom["redundant"][0]
    tab.find(f"#trouble [aria-label^='show parallel'], #trouble [aria-label$=' {extra}']").click()
    check(tab.run("return document.querySelector('#trouble').getBoundingClientRect().top") > 100, "what is pointed at in the list stays there")
    check(set(tab.chosen()) == {ref["entity"] for c in constraints if c["id"] == extra for ref in c["refs"]}, f"so is one alone: {tab.chosen()}")
    check(not tab.browser.find_elements("css selector", f"#trouble [aria-label^='measure '][aria-label*='{extra}']"), "no dimension, nothing to measure")
    tab.key(Keys.ESCAPE)
    tab.find("#trouble [aria-label^='suppress '][aria-label*=' wider:']").click()
    tab.after_edit(1)
    check(tab.run("return window.holdfast.log.at(-1).text") == "suppress wider" and tab.window.ask("freedom")["conflicts"] == [],
          "one can be switched off, and nothing contradicts")
    check("1 constraint switched off" in tab.text("#trouble") and "switched off" in tab.find("#list .off").text, f"which is told: {tab.text('#trouble')}")
    tab.picture("switched-off")
    tab.find("#trouble [aria-label^='unsuppress ']").click()
    tab.after_edit(2)
    check("says 45" in tab.text("#said") and "wide (distance a, 40)" in tab.text("#said"), f"it does not come back where it contradicts: {tab.text('#said')}")
    tab.find("#undo").click()
    tab.after_edit(3)
    tab.find("#trouble [aria-label^='measure '][aria-label*=' wider:']").click()
    tab.after_edit(4)
    check(tab.run("return window.holdfast.log.at(-1).text") == "set wider measured", "a dimension can be measured")
    check("cannot hold" not in tab.text("#trouble") and tab.window.ask("freedom")["conflicts"] == [], "then nothing contradicts it")
    tab.find(f"#trouble [aria-label^='delete '][aria-label$=' {extra}']").click()
    tab.after_edit(5)
    check(tab.run("return window.holdfast.log.at(-1).text") == f"delete {extra}" and tab.text("#trouble") == "", "and what is implied can go")
    row = next(row for row in tab.browser.find_elements("css selector", "#list .row") if row.get_attribute("title") == "h1")
    row.send_keys("s")
    tab.after_edit(6)
    check(tab.run("return window.holdfast.log.at(-1).text") == "suppress h1", "a key on its row does it, too")
    row = next(row for row in tab.browser.find_elements("css selector", "#list .row") if row.get_attribute("title") == "h1")
    row.send_keys("s")
    tab.after_edit(7)
    check(tab.run("return window.holdfast.log.at(-1).text") == "unsuppress h1" and tab.text("#trouble") == "", "and back")
