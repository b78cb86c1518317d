"""Chains of curves, copies that follow the pointer, and what wiggles."""
import pathlib
import subprocess

from browser import Keys
from program import check


def the_script_repeats(tab, program, drawing, folder):
    """What was done by hand, done again by `holdfast run`."""
    if tab.window.ask("state")["dropped"]:
        tab.window.do("back")
    place = pathlib.Path(folder) / "again"
    place.mkdir(exist_ok=True)
    script = tab.window.copy("edits.edit")
    name = script.splitlines()[0].removeprefix("open ")
    (place / name).write_bytes(pathlib.Path(drawing).read_bytes())
    (place / "again.edit").write_text(script + "save again.json\n")
    run = subprocess.run([pathlib.Path(program).resolve(), "run", "again.edit"], cwd=place, capture_output=True, text=True, timeout=120, check=False)
    check(run.returncode == 0, f"the edits are a script: {run.stderr}")
    check((place / "again.json").read_text() == tab.window.copy("drawing.json"), "it comes to the same, to the bit")


def chains_are_chosen(tab, _folder):
    tab.double_click(62, 0)
    chain = tab.chosen()
    check({"base", "right", "top", "left"} <= set(chain) and not {"hole1", "hole2", "rib"} & set(chain), f"a double click takes what is joined: {chain}")
    tab.picture("chain")
    tab.key(Keys.ESCAPE)
    check(tab.chosen() == [], "escape chooses nothing")
    tab.hover(*tab.middle("right"))
    tab.key("j")
    check(tab.chosen() == chain, f"so does a key: {tab.chosen()}")
    check(f"{len(chain)} entities joined" in tab.text("#said"), tab.text("#said"))


def copies_follow_the_pointer(tab, _folder):
    before = set(tab.run("return [...window.holdfast.drawing.entities.keys()]"))
    centre = tab.entity("hole1")["centre"]
    tab.click(centre[0], centre[1] + tab.entity("hole1")["radius"])
    check(tab.chosen() == ["hole1"], f"a hole is chosen: {tab.chosen()}")
    tab.hover(*centre)
    tab.key(Keys.CONTROL, "c")
    tab.key(Keys.CONTROL, "v")
    tab.hover(60, 30)
    check(tab.run("return window.holdfast.scene.sketch.map((e) => e.centre)") != [], "a copy follows the pointer")
    tab.picture("paste")
    check(tab.steps() == 0, "nothing is done yet")
    tab.click(60, 30)
    tab.after_edit(1)
    text = tab.run("return window.holdfast.log.at(-1).text")
    made = sorted(set(tab.run("return [...window.holdfast.drawing.entities.keys()]")) - before)
    check(text.startswith("copy hole1 by ") and len(made) == 1 and tab.chosen() == made, f"a click puts it down: {text} {made}")
    at = tab.entity(made[0])["centre"]
    check(abs(at[0] - 60) < 0.5 and abs(at[1] - 30) < 0.5, f"where the pointer is: {at}")
    check(tab.run("return window.holdfast.tool === null"), "then the pointer pulls again")
    tab.key(Keys.CONTROL, "v")
    end = tab.entity("base")["end"]
    tab.hover(end[0] + 0.3, end[1] + 0.3)
    check(tab.run("return window.holdfast.scene.snap.word") == "end", "it snaps to an end")
    tab.click(end[0] + 0.3, end[1] + 0.3)
    tab.after_edit(2)
    check(tab.entity(tab.chosen()[0])["centre"] == end, f"and lies there: {tab.entity(tab.chosen()[0])}")
    tab.key(Keys.CONTROL, "x")
    check("cut" in tab.text("#said") and tab.steps() == 2, f"what is cut stays until it is put down: {tab.text('#said')}")
    cut = tab.chosen()
    tab.key(Keys.CONTROL, "v")
    tab.click(40, 60)
    tab.after_edit(4)
    there = set(tab.run("return [...window.holdfast.drawing.entities.keys()]"))
    check(not set(cut) & there and len(there) == len(before) + 2, f"it goes then: {cut}")
    check(tab.run("return window.holdfast.log.at(-1).text") == f"erase {cut[0]}", "in the words of an edit")
    tab.key(Keys.CONTROL, "z")
    tab.wait("return window.holdfast.drawing.entities.has(arguments[0])", "an undo takes both back", cut[0])
    count = len(tab.window.ask("state")["drawing"]["entities"])
    check(count == len(before) + 2, f"at once: {count}")
    steps = tab.steps()
    tab.hover(*tab.middle("rib"))
    tab.key(Keys.ESCAPE)
    tab.hover(*tab.middle("rib", 0.4))
    tab.key(Keys.CONTROL, "d")
    tab.after_edit(steps + 1)
    check(tab.run("return window.holdfast.log.at(-1).text").startswith("copy rib by "), "a key copies what is pointed at beside it")
    tab.key(Keys.CONTROL, "v")
    tab.key(Keys.ESCAPE)
    check(tab.run("return window.holdfast.scene.sketch.length") == 0 and tab.steps() == steps + 1, "escape puts nothing down")


def what_is_free_wiggles(tab, _folder):
    before = tab.window.ask("state")
    tab.hover(*tab.middle("base", 0.2))
    check(tab.run("return window.holdfast.scene.freedom.entities.base.motions.length"), "base can move")
    tab.key("w")
    tab.wait("return window.holdfast.scene.wiggle.length > 0", "it wiggles")
    seen = tab.run("return new Promise((done) => { const seen = [], p = window.holdfast; const look = () => {"
                   "const e = p.scene.wiggle.find((each) => each.id === 'base'); if (!p.scene.wiggle.length && seen.length) return done(seen);"
                   "if (e) seen.push([...e.start, ...e.end]); requestAnimationFrame(look); }; look(); })")
    rest = tab.entity("base")
    ways = [abs(a - b) for place in seen for a, b in zip(place, rest["start"] + rest["end"])]
    check(len(seen) > 5 and max(ways) * tab.run("return window.holdfast.view.scale") > 5, f"to be seen: {len(seen)} {max(ways)}")
    check(tab.entity("base") == rest and tab.window.ask("state") == before, "and nothing has been done")
    tab.wait("return window.holdfast.scene.wiggle.length === 0 && window.holdfast.painter.lifted.size === 0", "it comes to rest")
    tab.key("w")
    tab.wait("return window.holdfast.scene.wiggle.length > 0", "it wiggles again")
    tab.run("return new Promise((done) => setTimeout(done, 180))")
    tab.picture("wiggle")
    tab.key(Keys.ESCAPE)
    check(tab.run("return window.holdfast.scene.wiggle.length") == 0, "escape ends it")
