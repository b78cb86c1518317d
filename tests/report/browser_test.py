#!/usr/bin/env python3
"""Opens report pages in a real browser and does what a reader does.

usage: browser_test.py SAMPLES_PROGRAM FOLDER [DRAWING.json ...]

Exit code 77 (skipped) where no chromium is installed. The screenshots stay in FOLDER to be looked at.
"""
import html
import json
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

HERE = pathlib.Path(__file__).resolve().parent
failures = []


def check(holds, what):
    if not holds:
        failures.append(what)
        print("FAILED:", what)


def browser(*arguments, url):
    """Standard output of one headless run, and its console messages."""
    with tempfile.TemporaryDirectory() as profile:
        run = subprocess.run(
            [CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
             "--disable-component-update", "--disable-sync", "--hide-scrollbars", "--enable-logging=stderr",
             "--host-resolver-rules=MAP * ~NOTFOUND", "--user-data-dir=" + profile, *arguments, url.as_uri()],
            capture_output=True, timeout=100, check=False)
    console = [line for line in run.stderr.decode(errors="replace").splitlines() if "CONSOLE" in line]
    return run.stdout.decode(errors="replace"), console


def probed(page, width=1440):
    """What the probe found in a page."""
    copy = page.with_suffix(".probe.html")
    script = "<script>" + (HERE / "browser_probe.js").read_text() + "</script></body>"
    copy.write_text(page.read_text().replace("</body>", script))
    dom, console = browser("--dump-dom", f"--window-size={width},1000", url=copy)
    check(not console, f"{page.name}: the console is silent: {console}")
    result = re.search(r'<pre id="probe">(.*?)</pre>', dom, re.S)
    check(result, f"{page.name}: the probe ran to its end")
    return json.loads(html.unescape(result.group(1))) if result else None


def pixels(path):
    """Rows of (r, g, b) bytes of an 8-bit PNG without interlacing (PNG, second edition, section 9)."""
    data = path.read_bytes()
    width, height, depth, colour = struct.unpack(">IIBB", data[16:26])
    assert depth == 8 and colour in (2, 6)
    size = 3 if colour == 2 else 4
    packed, at = b"", 8
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IDAT":
            packed += data[at + 8:at + 8 + length]
        at += length + 12
    raw, stride = zlib.decompress(packed), width * size
    rows, above = [], bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        method, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for x in range(stride):
            left = line[x - size] if x >= size else 0
            corner = above[x - size] if x >= size else 0
            if method == 1:
                line[x] = (line[x] + left) & 255
            elif method == 2:
                line[x] = (line[x] + above[x]) & 255
            elif method == 3:
                line[x] = (line[x] + (left + above[x]) // 2) & 255
            elif method == 4:
                guess = left + above[x] - corner
                nearest = min((left, above[x], corner), key=lambda v: abs(guess - v))
                line[x] = (line[x] + nearest) & 255
        rows.append([tuple(line[x:x + 3]) for x in range(0, stride, size)])
        above = line
    return rows


def screenshot(page, name, *arguments):
    target = FOLDER / (name + ".png")
    target.unlink(missing_ok=True)
    browser(f"--screenshot={target}", "--window-size=900,700", *arguments, url=page)
    check(target.exists(), f"{name}: a screenshot")
    return pixels(target)


def brightness(rows):
    return sum(sum(pixel) for row in rows for pixel in row) / (3 * len(rows) * len(rows[0]))


def colours(rows):
    return {pixel for row in rows for pixel in row}


def is_red(pixel):
    return pixel[0] > 150 and pixel[1] < 90 and pixel[2] < 90


def check_interaction(page, deletions=True):
    found = probed(page)
    if found is None:
        return
    name = page.name
    check(not found["wide"], f"{name}: nothing sticks out sideways")
    check(found["texts"] > 0 or page.stem == "shapes", f"{name}: values are measured")
    check(not found["tooWide"], f"{name}: values fit on their plates: {found['tooWide']}")
    check(not found["plainWheelMoves"], f"{name}: the plain wheel scrolls the page")
    check(0.5 < found["zoomedWidth"] < 0.95, f"{name}: Ctrl and wheel zoom in")
    check(len(set(found["zoomed"])) == 1 and len(set(found["panned"])) == 1, f"{name}: pictures move together")
    check(found["zoomed"] != found["panned"], f"{name}: dragging pans")
    check(abs(found["signGrowth"] - 1) < 0.02, f"{name}: signs keep their size: {found['signGrowth']}")
    check(found["level"] == "16" and found["hiddenZoomedIn"] == 0, f"{name}: zooming in shows every sign")
    check(found["firstClustersShown"] == 0, f"{name}: counts make room for what they counted")
    check(found["backHome"], f"{name}: Escape shows all again")
    if deletions:
        check(found["pictures"] == 2 and found["loud"] > 0, f"{name}: before and after with their changes")
        check(found["rowHot"]["row"] and found["rowHot"]["marks"] and found["rowHot"]["entities"] and
              found["rowHot"]["focus"], f"{name}: a row lights up its mark and entities: {found['rowHot']}")
        check(found["cooled"] == 0, f"{name}: and they go out again")
        check(found["focusHot"] > 0 and found["focusCooled"] == 0, f"{name}: the keyboard's row lights up while it is there")
        check(found["markHot"]["rows"] >= 1 and found["markHot"]["tipShown"] and "deleted" in found["markHot"]["tip"],
              f"{name}: a mark lights up its row and tells its fate: {found['markHot']}")
        check(found["entityHot"] >= 1, f"{name}: an entity lights up in the pictures")
        check(found["pinned"]["row"] and found["pinned"]["inView"], f"{name}: a click brings a row's subject into view")
        check(found["unpinned"], f"{name}: Escape lets go of it")
        check(found["filtered"]["deleted"] == 0 and found["filtered"]["all"] > 0 and found["filtered"]["kept"] > 0,
              f"{name}: the filter hides one fate only: {found['filtered']}")
        check(found["unfiltered"] > 0, f"{name}: and shows it again")


def check_narrow(page):
    """Beside a CAD program a report gets half the screen."""
    for width in (800, 500):
        found = probed(page, width)
        if found is None:
            return
        check(not found["wide"], f"{page.name}, {width} wide: nothing sticks out sideways")
        check(found["placesShown"] and 0 not in found["placesShown"], f"{page.name}, {width} wide: rows tell their places")


def check_looks(page):
    light = screenshot(page, "plate-light")
    dark = screenshot(page, "plate-dark", "--force-dark-mode", "--blink-settings=preferredColorScheme=0")
    check(brightness(light) > 200, f"light paper: {brightness(light):.0f}")
    check(brightness(dark) < 60, f"dark paper: {brightness(dark):.0f}")
    for name, rows in (("light", light), ("dark", dark)):
        check(len(colours(rows)) > 100, f"{name}: the page is not blank")
    check(any(is_red(pixel) for pixel in colours(light)), "what was deleted is red")


def check_without_scripts(page):
    """The page's own policy, tightened, makes the browser refuse its script."""
    copy = page.with_suffix(".quiet.html")
    copy.write_text(page.read_text().replace("script-src 'unsafe-inline'", "script-src 'none'"))
    dom, _ = browser("--dump-dom", url=copy)
    check('class="live"' not in dom and 'class="tools"' not in dom, "the script was really kept from running")
    rows = screenshot(copy, "plate-no-script")
    check(len(colours(rows)) > 100, "without scripts the page is not blank")
    check(any(is_red(pixel) for pixel in colours(rows)), "without scripts the changes are marked")


def check_print(page):
    target = FOLDER / "plate.pdf"
    target.unlink(missing_ok=True)
    browser(f"--print-to-pdf={target}", "--no-pdf-header-footer", url=page)
    check(target.exists() and target.read_bytes().startswith(b"%PDF"), "the page prints")
    if target.exists():
        pages = len(re.findall(rb"/Type\s*/Page\b", target.read_bytes()))
        check(1 <= pages <= 3, f"a small report prints on few pages: {pages}")


CHROMIUM = shutil.which("chromium") or shutil.which("chromium-browser")
if CHROMIUM is None:
    print("SKIPPED: no chromium found; install Debian's package chromium to run the browser test")
    sys.exit(77)
FOLDER = pathlib.Path(sys.argv[2]).resolve()
subprocess.run([sys.argv[1], str(FOLDER), *sys.argv[3:]], check=True)
check_interaction(FOLDER / "plate.html")
check_interaction(FOLDER / "shapes.html", deletions=False)
for each in sys.argv[3:]:
    check_interaction(FOLDER / (pathlib.Path(each).stem + ".html"))
check_narrow(FOLDER / "plate.html")
check_looks(FOLDER / "plate.html")
check_without_scripts(FOLDER / "plate.html")
check_print(FOLDER / "plate.html")
print("failures:", len(failures), "; screenshots in", FOLDER)
sys.exit(1 if failures else 0)
