#!/usr/bin/env python3
"""The window's server without a browser: whom it answers, what it keeps, how it ends.

usage: server_test.py PROGRAM DRAWING.json
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import urllib.request

from documents import document, ladder
from program import Window, check, copied, outcome

PROGRAM, DRAWING = sys.argv[1:3]
EDIT = json.dumps({"text": "drag base.end by 1,0"}).encode()
EXAMPLES = pathlib.Path(DRAWING).parent.parent


def who_is_answered(window):
    word, port = window.word, window.port
    check(window.status() == 200, "the page is there")
    for path in ("/", "/window.js", f"/{word[:-1]}x/", f"/{word[:-1]}/", f"/{word}", "/" + "0" * 32 + "/ask/state"):
        check(window.status(path) == 404, f"nothing is found without the word: {path}")
    for host in ("evil.example", f"evil.example:{port}", "127.0.0.1", f"127.0.0.1.evil.example:{port}", "", None,
                 f"127.0.0.1:{port + 1}"):
        check(window.status(Host=host) in (403, 400, 0), f"a name of somebody's that leads here is refused: {host!r}")
    check(window.status(Host=f"localhost:{port}") == 200, "the page may call this machine by its name")
    for origin in ("http://evil.example", "null", f"https://127.0.0.1:{port}", f"http://127.0.0.1:{port}.evil.example"):
        check(window.status(Origin=origin) == 403, f"another page is refused: {origin}")
        check(window.status(f"/{word}/do/edit", "POST", EDIT, Origin=origin) == 403, f"and may not edit: {origin}")
    twice = f"GET /{word}/ HTTP/1.1\r\nHost: 127.0.0.1:{port}\r\nHost: evil.example\r\nConnection: close\r\n\r\n"
    check(window.raw(twice.encode()) in (400, 403), "two names are none")


def what_is_answered(window):
    word = window.word
    do = f"/{word}/do/edit"
    check(window.status(do, "POST", EDIT, Origin=None) == 403, "who edits says where it comes from")
    check(window.status(do, "POST", EDIT, Content_Type="text/plain") == 415, "a form of another page is no edit")
    check(window.status(do, "POST", EDIT, Content_Encoding="gzip") == 415, "nothing is unpacked")
    check(window.status(do, "POST", EDIT, Sec_Fetch_Site="cross-site") == 403, "a browser that tells on the asker is heard")
    check(window.status(do, "POST", b"", Content_Length="2000000") == 413, "what is too long is not read")
    for body in (b"", b"{", b"[]", b"7", b'{"text": 7}', b'{"text": "undo", "more": 1}', b'{"txt": "undo"}', b"\xff\xfe",
                 b"[" * 100000, b'{"text": "\xc3\x28"}'):
        check(window.status(do, "POST", body) == 400, f"what is no message is refused: {body[:20]!r}")
    for method in ("PUT", "DELETE", "PATCH", "OPTIONS"):
        check(window.status(method=method) == 405, f"there is nothing to {method}")
    for path in ("../../etc/passwd", "..%2f..%2fetc%2fpasswd", "%2e%2e/%2e%2e/etc/passwd", "copy/../../etc/passwd",
                 "copy//etc/passwd", "window.js%00.html", "copy/drawing.json/../x", "ask/", "do/edit"):
        check(window.status(f"/{word}/{path}") in (400, 404), f"no file but those of the page: {path}")
    check(window.raw(b"\x16\x03\x01\x02\x00\x01\x00\x01") in (0, 400), "noise is answered by silence")
    check(window.raw(b"GET " + b"/" * 100000 + b" HTTP/1.1\r\n\r\n") in (0, 400, 403, 414), "an endless address is none")
    check(window.entity("base")["end"] == [80.0, 0.0], "none of this has touched the drawing")


def what_may_be_dropped(window):
    drop = f"/{window.word}/do/drop?name=a.json"
    octets = {"Content_Type": "application/octet-stream"}
    check(window.status(drop, "POST", b"{}") == 415, "a file is none that a form could send")
    check(window.status(f"/{window.word}/do/edit", "POST", EDIT, **octets) == 415, "and an edit is no file")
    check(window.status(drop, "POST", b"{}", Origin=None, **octets) == 403, "who drops says where it comes from")
    check(window.status(drop, "POST", b"", Content_Length=str((64 << 20) + 1), **octets) == 413, "what is too large is not read")
    check(window.status(drop, "POST", b"0\r\n\r\n", Content_Length=None, Transfer_Encoding="chunked", **octets) == 411,
          "nor what does not say how large it is")
    check(window.status(drop, "GET") == 404, "nothing is got from there")
    for name, content, words in (("a.json", b"{", "line 1"), ("a.json", b"", "a.json"), ("a.dxf", b"\0\1\2", "a.dxf"), ("a.svg", b"<svg", "a.svg"),
                                 ("a.FCStd", b"PK\3\4", "a.FCStd"), ("a.slvs", b"nothing", "a.slvs"), ("a.step", b"ISO", "ends in .step"),
                                 ("a", b"{}", "without an ending"), ("", b"{}", "without an ending"), ("none.FCStd", document(), "without a sketch"),
                                 ("../../etc/passwd", b"", "passwd: found"), ("/etc/passwd.json", b"", "passwd.json")):
        told = window.drop(name, content)
        check(not told["done"] and words in told["error"] and "/etc" not in told["error"], f"what is no drawing is told: {name}: {told}")
    state = window.ask("state")
    check(not state["dropped"] and state["file"] == "bracket.json", "none of this has changed what is shown")


def haste_is_refused(window):
    answered, refused, told, seconds = window.flood(3000, ["a"])
    check(answered + refused == 3000 and answered <= 400 * (1 + seconds) + 1, f"so many a second are answered: {answered} in {seconds:.2f} s")
    check(refused > 0 or 3000 / seconds < 450, f"and no more, however fast one asks: {refused} in {seconds:.2f} s")
    check(not refused or "too many requests in a second" in told, f"in words: {told}")
    check(window.flood(1, ["b"])[0] == 1, "another tab is answered meanwhile")
    time.sleep(1.1)
    check(window.flood(300, ["a"])[0] == 300, "and so is that one, a second later")
    check(window.entity("base")["end"] == [80.0, 0.0], "the drawing is as it was")


def what_the_page_may_do(window):
    with urllib.request.urlopen(window.address, timeout=10) as answer:
        policy, page = answer.headers["Content-Security-Policy"], answer.read().decode()
        check(answer.headers["X-Content-Type-Options"] == "nosniff", "types are what they are said to be")
        check("Set-Cookie" not in answer.headers, "there are no cookies")
    check("default-src 'none'" in policy and "unsafe" not in policy and "frame-ancestors 'none'" in policy, policy)
    check(not re.search(r"\son\w+=|style=|javascript:|https?://", page), "the page has nothing written in that could run")


def nobody_waits_for_packing(window):
    for path in ("window.js", "ask/state", "ask/freedom", "copy/drawing.json"):
        request = urllib.request.Request(window.address + path, headers={"Accept-Encoding": "gzip, deflate, br, zstd"})
        with urllib.request.urlopen(request, timeout=30) as answer:
            check(answer.headers["Content-Encoding"] is None and len(answer.read()) == int(answer.headers["Content-Length"]) > 0,
                  f"the way to this machine's own browser is short: {path} comes as it is")


def moved(result):
    return {each["id"]: each for each in result["change"]["entities"]}


def a_large_drawing_is_pulled(folder):
    path = pathlib.Path(folder) / "ladder.json"
    path.write_text(json.dumps(ladder(80)))
    with Window(PROGRAM, path) as window:
        for edit in ("drag bottom40.end by 3,-2", "drag side20 by -1.25,0.5", "drag top0.end by -2.5,1"):
            pulled, tried = window.do("pull", edit), window.do("try", edit)
            check(pulled["done"] and pulled["isGlimpse"] and not tried.get("isGlimpse"), f"a hand that pulls gets a glimpse: {edit}")
            check(moved(pulled) == moved(tried) and moved(pulled), f"of all that moves, to the bit: {edit}")
            values = [{each["id"]: each["value"] for each in result["change"]["constraints"]} for result in (pulled, tried)]
            check(values[1].items() <= values[0].items(), f"and of what is measured: {values}")
        check([each["id"] for each in pulled["entities"]] == ["top0"], f"with what is held: {pulled['entities']}")
        for edit in ("drag top0.end by -2.5,1", "drag side20 by -1.25,0.5"):
            everywhere, nowhere = moved(window.do("pull", edit)), moved(window.do("pull", edit, seen=[-900, -900, -800, -800]))
            some = moved(window.do("pull", edit, seen=[-5, -5, 40, 40]))
            check(set(nowhere) <= set(some) <= set(everywhere) and len(nowhere) < len(everywhere), f"what is not seen is not told: {edit}: {len(nowhere)}, {len(some)}, {len(everywhere)}")
            check(all(everywhere[name] == entity for name, entity in some.items()), f"the rest is the same: {edit}")
        for seen in ([1, 2, 3], ["a", 0, 1, 2], None, "all"):
            body = json.dumps({"text": "drag top0.end by -2.5,1", "seen": seen}).encode()
            check(window.status(f"/{window.word}/do/pull", "POST", body) == 400, f"no part of a drawing: {seen}")
        refused = window.do("pull", "drag nothing.end by 1,2")
        check(not refused["done"] and refused["error"] == window.do("try", "drag nothing.end by 1,2")["error"], f"what cannot be is refused: {refused}")
        before = moved(window.do("pull", "drag top0.end by -2.5,1"))
        check(moved(window.do("edit", "drag top0.end by -2.5,1")) == before, "what was seen is what is done")
        again = moved(window.do("pull", "drag top0.end by -2.5,1"))
        check(again and again != before, "a pull begins where the drawing is by then")


def edits(window):
    done = window.do("edit", "fillet top left radius 400")
    check(not done["done"] and len(done["error"]) > 20, "a refused edit says why")
    tried = window.do("try", "drag base.end by 5,0")
    check(tried["done"] and tried["change"]["entities"], f"a try tells what would be: {tried['error']}")
    check(window.entity("base")["end"] == [80.0, 0.0], "and does nothing")
    pulled = window.do("pull", "drag base.end by 5,0")
    check({**pulled, "seconds": 0} == {**tried, "seconds": 0}, "of a small drawing a hand that pulls sees all")
    done = window.do("edit", "drag base.end by 5,0")
    check(done["change"] == tried["change"], "what was shown is what is done")
    check(window.ask("state")["unsaved"], "it is not saved yet")
    check(window.do("edit", "undo")["done"] and window.entity("base")["end"] == [80.0, 0.0], "undo takes it back")
    check(window.do("edit", "redo")["done"] and window.ask("state")["canRedo"] is False, "redo does it again")
    drawn = window.do("edit", "draw line -50,-50 -20,-49 as added")
    tie = window.do("follow", "constrain horizontal added")
    check(drawn["done"] and tie["done"], f"what was drawn is tied: {tie['error']}")
    again = window.do("follow", "constrain horizontal added")
    texts = [edit["text"] for edit in window.ask("state")["log"]]
    check(not again["done"] and texts.count("constrain horizontal added") == 1, "a tie that holds already leaves no trace")
    window.do("edit", "undo")
    state = window.ask("state")
    check(all(e["id"] != "added" for e in state["drawing"]["entities"]), "a tie is taken back with what was drawn")
    check(window.do("edit", "redo")["done"] and window.entity("added")["end"][1] == window.entity("added")["start"][1]
          and not window.ask("state")["canRedo"], "and both are done again")
    window.do("edit", "undo")
    met = window.do("edit", "constrain perpendicular axis right.end")
    check(met["done"] and window.ask("freedom")["broken"] == [], f"an end that is upright on a line lies on it: {window.ask('freedom')['broken']}")
    window.do("edit", "undo")
    freedom = window.ask("freedom")
    check(freedom["freedom"] >= 0 and "base" in freedom["entities"], "each entity's freedom is told")


def the_script_does_the_same(window, folder):
    script = pathlib.Path(folder) / "again.edit"
    script.write_text(window.copy("edits.edit") + "save again.json\n")
    run = subprocess.run([PROGRAM, "run", str(script)], capture_output=True, text=True, timeout=60, check=False)
    check(run.returncode == 0, f"the edits are a script: {run.stderr}")
    check((pathlib.Path(folder) / "again.json").read_text() == window.copy("drawing.json"), "with the same result to the bit")
    check(window.copy("picture.svg").startswith("<svg") and "<html" in window.copy("report.html")[:200], "there are pictures")
    check(window.copy("picture.pdf").startswith(b"%PDF-"), "and one to print")
    check("ENTITIES" in window.copy("drawing.dxf"), "and other forms")


def saving(folder):
    path = copied(folder, DRAWING, "saved.json")
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        check(window.do("save")["done"], "a drawing can be saved")
        check(path.read_text() == window.copy("drawing.json"), "the file holds it then")
        check(not window.ask("state")["unsaved"], "and nothing is left to save")
        path.write_text(path.read_text() + "\n")
        window.do("edit", "drag base.end by 5,0")
        refused = window.do("save")
        check(not refused["done"] and "somebody else" in refused["error"], "a file that others have written is not lost")
        check(refused["asks"] and not window.do("save")["done"], "however often one asks")
        check(window.do("save", "over")["done"] and path.read_text() == window.copy("drawing.json"), "unless that is wanted")
        said, code = window.interrupt()
        check(code == 0 and "kept" not in said, "an end after that says nothing")
    check(sorted(p.name for p in pathlib.Path(folder).glob("saved*")) == ["saved.json"], "nothing lies beside it")


def reading_only(folder):
    path = copied(folder, DRAWING, "read.json")
    before = path.read_bytes()
    with Window(PROGRAM, path, "--read-only") as window:
        window.do("edit", "drag base.end by 5,0")
        check(not window.do("save")["done"], "a drawing that is only read is not saved")
        window.interrupt()
    check(path.read_bytes() == before and len(list(pathlib.Path(folder).glob("read*"))) == 1, "nothing was written")


def an_interrupt_loses_nothing(folder):
    path = copied(folder, DRAWING, "kept.json")
    before = path.read_bytes()
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        after = window.copy("drawing.json")
        said, code = window.interrupt()
        check(code == 0 and "kept.unsaved.json" in said, f"an interrupt says where the work is: {said}")
    check(path.read_bytes() == before, "the drawing is as it was")
    with Window(PROGRAM, path) as window:
        state = window.ask("state")
        check(state["takenUp"] and window.copy("drawing.json") == after, "the next window goes on with it")
        window.do("discard")
        check(window.entity("base")["end"] == [80.0, 0.0], "unless it is not wanted")
        window.interrupt()
    check(not list(pathlib.Path(folder).glob("kept.unsaved*")), "then it is gone")


def a_crash_loses_nothing(folder):
    path = copied(folder, DRAWING, "crashed.json")
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        after = window.copy("drawing.json")
        kept, patience = path.with_suffix(".unsaved.json"), time.time() + 5
        while not kept.exists() and time.time() < patience:
            time.sleep(0.05)
        window.process.kill()
    with Window(PROGRAM, path) as window:
        check(window.copy("drawing.json") == after, "a crash loses nothing that is older than a second")


def tabs_have_sessions_of_their_own(folder):
    path = copied(folder, DRAWING, "tabs.json")
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        own = window.entity("base")
        with window.named("b"):
            check(window.entity("base")["end"] == [80.0, 0.0] and not window.do("edit", "undo")["done"],
                  "a second tab shows what the file holds, and takes back nothing of the first one's")
            window.do("edit", "draw circle 40,70 radius 5 as moon")
        check(window.entity("base") == own and not window.entity("moon"), "nor is the second one's seen in the first")
        check(window.do("save")["done"], "one tab saves")
        with window.named("b"):
            check("another tab has saved tabs.json" in window.ask("behind")["behind"], "of which the other one hears")
            refused, first = window.do("save"), path.read_text()
            check(not refused["done"] and refused["asks"] and "another tab" in refused["error"], f"and does not write over it: {refused}")
            check(path.read_text() == first, "what was saved stays")
            check(window.do("save", "over")["done"] and "moon" in path.read_text(), "unless that is wanted")
        check("another tab has saved" in window.do("save")["error"], "then it is the first one's turn to be asked")
        with window.named("c"):
            check(window.entity("moon") and not window.ask("state")["behind"], "a third tab shows what the file holds by then")
        window.do("discard")
        check(window.entity("moon") and not window.ask("behind")["behind"], "and so does one that goes back to the file")
        for tab in ("d", "e", "f", "0", "1"):
            check(window.status(f"/{window.word}/ask/state?tab={tab}") == 200, "there is room for eight")
        check(window.status(f"/{window.word}/ask/state?tab=2") == 503, "and no more")
        check(window.status(f"/{window.word}/ask/state?tab=../x") == 400, "no tab calls itself so")
        window.interrupt()


def kept_edits_are_listed(folder):
    path = copied(folder, DRAWING, "list.json")
    listed = lambda window: {each["name"]: each for each in window.ask("kept")}
    with Window(PROGRAM, path) as window:
        check(window.ask("kept") == [], "nothing is kept")
        window.do("edit", "drag base.end by 5,0")
        window.do("edit", "draw circle 40,70 radius 5 as moon")
        own = listed(window)["list.unsaved.json"]
        check(own["isOurs"] and own["edits"] == 2 and abs(own["time"] / 1000 - time.time()) < 60, f"what a tab has done: {own}")
        with window.named("b"):
            other = listed(window)["list.unsaved.json"]
            check(other["isOpen"] and not other["isOurs"], f"another one sees it, too: {other}")
            for what in ("kept", "forget"):
                check("another tab works on" in window.do(what, "list.unsaved.json")["error"], f"and leaves it alone: {what}")
            window.do("edit", "draw circle 10,70 radius 3 as star")
            for name in ("../list.json", "list.json", "", "/etc/passwd", "list.unsaved-9.json"):
                for what in ("kept", "forget"):
                    check("no kept edits" in window.do(what, name)["error"] and path.exists(), f"no other file can be named: {name}")
        window.interrupt()
    with Window(PROGRAM, path) as window:
        shown = listed(window)
        check(window.entity("moon") and shown["list.unsaved.json"]["isOurs"], "the next window goes on with one of them")
        other = shown["list.unsaved-2.json"]
        check(not other["isOurs"] and not other["isOpen"] and other["differs"] == 1 and "edits" not in other, f"and lists the other: {other}")
        check(window.do("kept", "list.unsaved-2.json")["done"], "which can be shown")
        check(window.entity("star") and not window.entity("moon"), "with what was done there")
        check(not listed(window)["list.unsaved.json"]["isOurs"], "what was shown before waits")
        check(window.do("forget", "list.unsaved-2.json")["error"] != "", "what is shown is not deleted")
        check(window.do("forget", "list.unsaved.json")["done"], "the other may be")
        check(list(listed(window)) == ["list.unsaved-2.json"] and not (path.parent / "list.unsaved.json").exists(), "and is gone")
        window.do("edit", "draw circle 10,90 radius 3 as sun")
        check(window.do("save")["done"] and listed(window) == {}, "what is saved is not kept")
        check("star" in path.read_text() and "sun" in path.read_text(), "in the file")
        window.interrupt()
    (path.parent / "list.unsaved-3.json").write_text(path.read_text().replace("sun", "dawn"))
    (path.parent / "list.dropped.json").write_text(pathlib.Path(DRAWING).read_text())
    (path.parent / "list.unsaved-4.json").write_text("{ broken")
    os.utime(path, (time.time() + 5, time.time() + 5))
    with Window(PROGRAM, path) as window:
        shown = listed(window)
        check(set(shown) == {"list.unsaved-3.json", "list.dropped.json", "list.unsaved-4.json"}, f"older ones are listed, too: {set(shown)}")
        check(shown["list.unsaved-3.json"]["differs"] == 2, f"an entity is gone and one has come: {shown['list.unsaved-3.json']}")
        check(window.do("kept", "list.unsaved-3.json")["done"] and window.entity("dawn"), "from before the file was written, too")
        check(window.do("kept", "list.unsaved-4.json")["error"] and window.entity("dawn"), "what cannot be read is told")
        check(window.do("kept", "list.dropped.json")["done"] and not window.entity("dawn") and window.ask("state")["dropped"],
              "edits of another drawing are shown as that")
        window.interrupt()
    for kept in path.parent.glob("list.*.json"):
        kept.unlink()


def each_tab_is_recovered(folder):
    path = copied(folder, DRAWING, "both.json")
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        first = window.copy("drawing.json")
        with window.named("b"):
            window.do("edit", "draw circle 40,70 radius 5 as moon")
            second = window.copy("drawing.json")
        patience = time.time() + 5
        while len(list(path.parent.glob("both.unsaved*.json"))) < 2 and time.time() < patience:
            time.sleep(0.05)
        window.process.kill()
    with Window(PROGRAM, path) as window:
        check(window.copy("drawing.json") == first, "after a crash the first tab goes on with what the first one did")
        with window.named("b"):
            check(window.copy("drawing.json") == second and window.ask("state")["takenUp"], "and the second with the second's")
        with window.named("c"):
            check(not window.entity("moon") and window.entity("base")["end"] == [80.0, 0.0], "and the third with what the file holds")
        window.do("save")
        with window.named("b"):
            window.do("edit", "draw line -50,-50 -20,-49 as late")
        said, _ = window.interrupt()
        check("both.unsaved-2.json" in said and "both.unsaved.json" not in said, f"the end says whose edits are left: {said}")
    with Window(PROGRAM, path) as window:
        check(window.copy("drawing.json") == first == path.read_text() and not window.ask("state")["takenUp"],
              "what was saved is shown, not what began before")
        window.do("edit", "drag base.end by 5,0")
        said, _ = window.interrupt()
    left = path.parent / "both.unsaved-2.json"
    check("moon" in left.read_text() and "late" in left.read_text(), "which nobody writes over")
    check("both.unsaved-2.json holds edits from before both.json was written last" in said, f"and which is told: {said}")


def nobody_waits_for_a_slow_disk(folder):
    path = copied(folder, DRAWING, "slow.json")
    with Window(PROGRAM, path) as window:
        slow = path.with_suffix(".unsaved.json")
        os.mkfifo(slow)  # who writes there waits for somebody who reads
        window.do("edit", "drag base.end by 5,0")
        time.sleep(0.6)
        start = time.time()
        try:
            done = window.do("edit", "drag base.end by 1,0", patience=5)["done"]
        except TimeoutError:
            done = False
        check(done, f"an edit is done while what was edited before is being kept: {time.time() - start:.1f} s")
        check("base" in slow.read_text(), "which goes on meanwhile")
        slow.unlink(missing_ok=True)
        after, patience = window.copy("drawing.json"), time.time() + 5
        while (not slow.exists() or slow.read_text() != after) and time.time() < patience:
            time.sleep(0.05)
        check(slow.exists() and slow.read_text() == after, "and what was edited meanwhile is kept then")
        window.interrupt()


def dropped_drawings(folder):
    path = copied(folder, DRAWING, "under.json")
    with Window(PROGRAM, path) as window:
        window.do("edit", "drag base.end by 5,0")
        before = window.copy("drawing.json")
        plate = (EXAMPLES / "drawings" / "acrylic-case-top.dxf").read_bytes()
        told = window.drop("../a plate\n.dxf", plate)
        state = window.ask("state")
        check(told["done"] and state["dropped"] and state["file"] == "a plate_.dxf" and state["own"] == "under.json",
              f"a drawing that was dropped is shown under its own name: {told} {state['file']}")
        check(len(state["drawing"]["entities"]) > 10 and state["log"] == [] and not state["unsaved"] and not state["takesSaves"],
              "with a log of its own")
        check(path.with_suffix(".unsaved.json").exists(), "edits of the drawing before are kept")
        check(not window.do("save")["done"] and path.read_bytes() == pathlib.Path(DRAWING).read_bytes(), "it is not saved over that")
        window.do("edit", "draw line 0,0 5,5 as added")
        check(window.copy("edits.edit").startswith("open a plate_.dxf\ndraw line 0,0 5,5"), "its edits are a script")
        check(window.do("back")["done"] and window.copy("drawing.json") == before and window.ask("state")["canUndo"],
              "the drawing before comes back as it was left")
        check(not window.do("back")["done"], "once")
        kept = path.parent / "under.dropped.json"
        check(any(e["id"] == "added" for e in json.loads(kept.read_text())["entities"]), "edits of the dropped one are kept beside it")
        told = window.drop("two.FCStd", document(Sketch=10, Sketch001=20))
        check(not told["done"] and [s["name"] for s in told["sketches"]] == ["Sketch", "Sketch001"], f"one of several sketches is to be chosen: {told}")
        told = window.drop("two.FCStd", document(Sketch=10, Sketch001=20), sketch="Sketch001")
        check(told["done"] and window.entity("g0")["end"] == [20.0, 0.0] and window.ask("state")["file"] == "two.FCStd#Sketch001", f"and is shown: {told}")
        window.do("edit", "draw line 0,0 5,5 as second")
        for name in ("formats/hinge.slvs", "pictures/sensor-cover.svg", "drawings/mounting-bracket.json"):
            told = window.drop(name, (EXAMPLES / name).read_bytes())
            check(told["done"] and window.ask("state")["file"] == name.split("/")[1], f"{name} is shown: {told}")
        kept = path.parent / "under.dropped-2.json"
        check(any(e["id"] == "second" for e in json.loads(kept.read_text())["entities"]), "what is kept is not written over")
        said, code = window.interrupt()
        check(code == 0 and all(name in said for name in ("under.unsaved.json", "under.dropped.json", "under.dropped-2.json"))
              and said.count("kept in") == 3, f"an end says where it all is: {said}")
    with Window(PROGRAM, path) as window:
        check(window.copy("drawing.json") == before, "the next window goes on with the drawing that was opened")
        window.interrupt()
    files = sorted(p.name for p in pathlib.Path(folder).glob("under*"))
    with Window(PROGRAM, path, "--read-only") as window:
        check(window.drop("plate.dxf", plate)["done"], "a window for reading only shows what is dropped")
        window.do("edit", "draw line 0,0 5,5 as added")
        window.drop("plate.dxf", plate)
        window.interrupt()
    check(sorted(p.name for p in pathlib.Path(folder).glob("under*")) == files, "and writes nothing")


def saved_under_another_name(folder):
    path = copied(folder, DRAWING, "as.json")
    with Window(PROGRAM, path) as window:
        check(window.ask("state")["forms"] == [".json", ".dxf", ".slvs", ".svg", ".pdf"], "a drawing can be had in other forms")
        bytes_, notes = window.save_as(".json")
        check(bytes_.decode() == window.copy("drawing.json") and notes == [], "as it is")
        window.do("edit", "drag base.end by 5,0")
        window.save_as(".json")
        check(window.ask("state")["unsaved"], "a copy of it is not its file")
        _, notes = window.save_as(".dxf")
        check(any("constraints were left out" in note for note in notes), f"what another form does not hold is told: {notes}")
        for form in (".fcstd", ".txt", "", "/etc/passwd", "../x.json"):
            told = window.save_as(form)
            check(told is None, f"there is no other form: {form} {told}")
        plate = (EXAMPLES / "drawings" / "acrylic-case-top.dxf").read_bytes()
        window.drop("plate.dxf", plate)
        check(window.ask("state")["forms"][0] == ".dxf" and window.save_as(".dxf") == (plate, []), "a dropped file comes back byte for byte")
        window.do("edit", f"move {window.ask('state')['drawing']['entities'][0]['id']} by 1,0")
        check(window.ask("state")["unsaved"] and not window.do("save")["done"], "what is done to it is not saved over it")
        changed, notes = window.save_as(".dxf")
        same = len(set(plate.splitlines()) & set(changed.splitlines())) / len(set(plate.splitlines()))
        check(changed != plate and same > 0.9, f"an edit changes the record of what it moved, and leaves the rest: {same} {notes}")
        check(notes or not window.ask("state")["unsaved"], "whoever has the file has saved it")
        hinge = (EXAMPLES / "formats" / "hinge.slvs").read_bytes()
        window.drop("hinge.slvs", hinge)
        entities = window.ask("state")["drawing"]["entities"]
        written, _ = window.save_as(".slvs")
        window.drop("again.slvs", written)
        check(len(window.ask("state")["drawing"]["entities"]) == len(entities), "a sketch goes out in the form that it came in")
        window.drop("two.FCStd", document(Sketch=10, Sketch001=20), sketch="Sketch001")
        window.do("edit", "draw line 0,5 5,9 as added")
        archive, _ = window.save_as(".fcstd")
        window.drop("two.FCStd", archive, sketch="Sketch")
        check(window.entity("g0")["end"] == [10.0, 0.0], "a document comes back with its other sketches")
        window.drop("two.FCStd", archive, sketch="Sketch001")
        check(len([e for e in window.ask("state")["drawing"]["entities"] if e["type"] == "line" and not e.get("fixed")]) == 2,
              "and with what was drawn in this one")
        window.drop("one.FCStd", document(Sketch=10))
        check(window.save_as(".fcstd")[0][:2] == b"PK", "also when there was none to choose")
        window.interrupt()
    check(path.read_bytes() == pathlib.Path(DRAWING).read_bytes(), "none of this is written where the drawing came from")
    opened = pathlib.Path(folder) / "opened.dxf"
    opened.write_bytes(plate)
    with Window(PROGRAM, opened) as window:
        check(window.save_as(".dxf") == (plate, []), "a file that was opened goes out as it came in, too")
        window.interrupt()


def blocks_are_drawn(folder):
    drawing = pathlib.Path(DRAWING).parent.parent / "commands" / "plate-with-screws.dxf"
    path = copied(folder, drawing, "blocks.dxf")
    with Window(PROGRAM, path) as window:
        part = window.entity("insert:1/g0")
        check(part["block"] == "insert:1" and part["fixed"] and part["start"] == [22.0, 60.0], f"a part is drawn: {part}")
        moved = window.do("edit", "move insert:1 by 5,0")["change"]
        check(not moved["erased"] and [e for e in moved["entities"] if e["id"] == "insert:1/g0"][0]["start"] == [27.0, 60.0],
              f"it moves with its reference: {moved}")
        exploded = window.do("edit", "explode insert:1")["change"]
        found = [e for e in exploded["entities"] if e["id"] == "insert:1/g0"]
        check(len(found) == 1 and "block" not in found[0] and "insert:1/g0" not in exploded["erased"],
              f"it becomes an entity: {exploded}")
        back = window.do("edit", "undo")["change"]
        check(not back["erased"] and "block" in window.entity("insert:1/g0"), f"and a part again: {back}")
        erased = window.do("edit", "erase insert:0")["change"]["erased"]
        check(len(erased) == 8 and "insert:0[1,1]/g1" in erased, f"all parts go with their reference: {erased}")
        said, _ = window.interrupt()
        check("what was done to block references is not kept" in said, f"what cannot be kept is told: {said}")
    with Window(PROGRAM, path) as window:
        check(window.ask("state")["takenUp"] and window.entity("insert:0/g0"), "references are there again")
        window.do("discard")
        window.interrupt()


def the_end(folder):
    path = copied(folder, DRAWING, "end.json")
    with Window(PROGRAM, path, linger=0.5) as window:
        time.sleep(1.2)
        check(window.process.poll() is None, "it waits for its first tab as long as that takes")
        with urllib.request.urlopen(f"{window.address}news", timeout=10) as news:
            check(news.readline().startswith(b"data: "), "a tab hears news")
            check(window.process.poll() is None, "it goes on while a tab is there")
        patience = time.time() + 10
        while window.process.poll() is None and time.time() < patience:
            time.sleep(0.1)
        check(window.process.poll() == 0, "it ends when the last tab has gone")


def arguments(folder):
    def run(*words):
        return subprocess.run([PROGRAM, "open", *words], capture_output=True, text=True, timeout=20, check=False)
    told = run("--help").stdout
    check("Exit codes: 0 done" in told and "holdfast open examples/drawings/mounting-bracket.json" in told, "there is help")
    missing = run(str(pathlib.Path(folder) / "none.json"))
    check(missing.returncode == 2 and "none.json" in missing.stderr, "a missing drawing is named")
    path = copied(folder, DRAWING, "port.json")
    with Window(PROGRAM, path) as window:
        taken = run(str(path), "--no-browser", "--port", str(window.port))
        check(taken.returncode == 2 and "is taken" in taken.stderr, f"a port that is taken is told: {taken.stderr}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        with Window(PROGRAM, copied(folder, DRAWING)) as window:
            who_is_answered(window)
            what_is_answered(window)
            what_may_be_dropped(window)
            haste_is_refused(window)
            what_the_page_may_do(window)
            nobody_waits_for_packing(window)
            edits(window)
            the_script_does_the_same(window, folder)
        for test in (a_large_drawing_is_pulled, saving, reading_only, an_interrupt_loses_nothing, a_crash_loses_nothing, tabs_have_sessions_of_their_own,
                     kept_edits_are_listed, each_tab_is_recovered, nobody_waits_for_a_slow_disk,
                     dropped_drawings, saved_under_another_name, blocks_are_drawn, the_end, arguments):
            test(folder)
    return outcome()


if __name__ == "__main__":
    sys.exit(main())
