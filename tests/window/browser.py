"""A tab of a real browser, with the words for what a person does in it. Needs selenium."""
import contextlib
import pathlib
import shutil
import sys
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from program import check


def started(profile, *options):
    chosen = webdriver.ChromeOptions()
    chosen.binary_location = shutil.which("chromium") or shutil.which("chromium-browser")
    for option in ("--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync", "--window-size=1360,860", "--hide-scrollbars",
                   "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1", f"--user-data-dir={profile}", *options):
        chosen.add_argument(option)
    chosen.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    service = webdriver.chrome.service.Service(shutil.which("chromedriver"))
    return webdriver.Chrome(service=service, options=chosen)


@contextlib.contextmanager
def in_browser():
    """A browser and a folder that is gone afterwards. Ends with 77 where there is no chromium."""
    if not (shutil.which("chromedriver") and (shutil.which("chromium") or shutil.which("chromium-browser"))):
        print("skipped: there is no chromium with its driver; install chromium-driver")
        sys.exit(77)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = started(pathlib.Path(folder) / "profile")
        try:
            yield browser, folder
        finally:
            browser.quit()


class Page:
    """What is done with any page. Of a class of pages: the seconds that one waits for them."""

    PATIENCE = 8

    def run(self, script, *values):
        return self.browser.execute_script(script, *values)

    def wait(self, script, what, *values):
        patience = time.time() + self.PATIENCE
        while time.time() < patience:
            if self.run(script, *values):
                return
            time.sleep(0.03)
        check(False, what)

    def find(self, css):
        return self.browser.find_element(By.CSS_SELECTOR, css)

    def touch(self, kind, *places):
        """Fingers: "touchStart", "touchMove" to other places, "touchEnd" without any."""
        self.browser.execute_cdp_cmd("Input.dispatchTouchEvent", {
            "type": kind, "touchPoints": [{"x": x, "y": y, "id": i} for i, (x, y) in enumerate(places)]})

    def silent(self, what):
        said = [line["message"] for line in self.browser.get_log("browser") if line["level"] in ("SEVERE", "WARNING")
                and "willReadFrequently" not in line["message"]]  # we look at the canvas, the page never does
        check(not said, f"{what}: the console is silent: {said}")


class Tab(Page):
    """One tab, with the words for what a person does in it."""

    def __init__(self, browser, window, pictures, address=None):
        self.browser, self.window, self.pictures = browser, window, pictures
        browser.get(address or window.address)
        self.wait("return document.body.dataset.ready === 'yes' && window.holdfast.scene.freedom !== null", "the page is ready")
        if window:
            window.tab = self.name()

    def name(self):
        """What the tab calls itself to the server."""
        return self.run("return sessionStorage.getItem('holdfast-tab')")

    def text(self, css):
        return self.find(css).text

    def at(self, x, y):
        """Pixels from the middle of the canvas, as the pointer's driver counts."""
        return self.run("const v = window.holdfast.view, p = v.toScreen([arguments[0], arguments[1]]);"
                        "return [Math.round(p[0] - v.width / 2), Math.round(p[1] - v.height / 2)]", x, y)

    def middle(self, line, share=0.5):
        """A point of a line, by its share of the way from the end to the start."""
        return self.run("const e = window.holdfast.drawing.entities.get(arguments[0]), t = arguments[1];"
                        "return [e.end[0] + t * (e.start[0] - e.end[0]), e.end[1] + t * (e.start[1] - e.end[1])]", line, share)

    def pointer(self):
        return ActionChains(self.browser, duration=20)

    def hover(self, x, y):
        self.pointer().move_to_element_with_offset(self.find("#above"), *self.at(x, y)).perform()

    def press(self, x, y):
        self.pointer().move_to_element_with_offset(self.find("#above"), *self.at(x, y)).click_and_hold().perform()

    def pull_to(self, x, y):
        self.hover(x, y)

    def release(self):
        self.pointer().release().perform()

    def click(self, x, y):
        self.pointer().move_to_element_with_offset(self.find("#above"), *self.at(x, y)).click().perform()

    def double_click(self, x, y):
        self.pointer().move_to_element_with_offset(self.find("#above"), *self.at(x, y)).double_click().perform()

    def chosen(self):
        return sorted(self.run("return [...window.holdfast.scene.selected]"))

    def entity(self, name):
        """As the page knows it."""
        return self.run("return window.holdfast.drawing.entities.get(arguments[0])", name)

    def key(self, *keys):
        self.find("#above").send_keys(*keys)

    def type(self, edit):
        line = self.find("#edit")
        line.clear()
        line.send_keys(edit, Keys.ENTER)

    def steps(self):
        return int(self.text("#steps"))

    def after_edit(self, count):
        self.wait("return document.getElementById('steps').textContent === arguments[0]", f"edit {count} is done", str(count))
        self.wait("const p = window.holdfast; return p.isBusy === 0 && p.scene.freedom.number === p.number", "its freedom is told")

    def picture(self, name):
        self.run("return new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")
        self.browser.save_screenshot(str(self.pictures / f"{name}.png"))

    def inked(self):
        """The share of the canvas that is drawn on."""
        return self.run("const c = document.getElementById('drawing'), d = c.getContext('2d').getImageData(0, 0, c.width, c.height).data;"
                        "let n = 0; for (let i = 3; i < d.length; i += 4) n += d[i] > 150 ? 1 : 0; return n / (d.length / 4)")
