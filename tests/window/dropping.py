"""A drawing that is dropped on the page, or chosen with its button."""
import base64
import pathlib
import time

from browser import Keys
from documents import document
from program import check

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent.parent / "examples"

DROP = """const bytes = Uint8Array.from(atob(arguments[1]), (sign) => sign.charCodeAt(0)), data = new DataTransfer();
data.items.add(new File([bytes], arguments[0]));
for (const name of ['dragover', 'drop'])
  document.body.dispatchEvent(new DragEvent(name, {dataTransfer: data, bubbles: true, cancelable: true}));"""


def drop(tab, name, content):
    tab.run(DROP, name, base64.b64encode(content).decode())


def shows(tab, file):
    tab.wait("return window.holdfast.file === arguments[0] && window.holdfast.scene.freedom !== null", f"{file} is shown", file)


def answers(tab):
    tab.wait("return document.querySelector('dialog[open]') !== null", "the page asks")
    return [button.text for button in tab.browser.find_elements("css selector", "dialog button")]


def answer(tab, word):
    for button in tab.browser.find_elements("css selector", "dialog button"):
        if word in button.text:
            return button.click()
    return check(False, f"there is an answer {word}")


def a_drawing_is_dropped(tab, folder):
    plate = (EXAMPLES / "drawings" / "acrylic-case-top.dxf").read_bytes()
    drop(tab, "plate.dxf", plate)
    shows(tab, "plate.dxf")
    check(tab.inked() > 0.003 and tab.find("#back").text == "Back to fresh.json", "a drawing that was dropped is drawn")
    check(not tab.find("#save").is_displayed() and not tab.find("#unsaved").is_displayed(), "nothing is to be saved")
    tab.picture("dropped")
    drop(tab, "broken.json", b'{"unit": ')
    tab.wait("return document.getElementById('said').className === 'bad'", "what cannot be read is told")
    check("broken.json" in tab.text("#said") and tab.run("return window.holdfast.file") == "plate.dxf", tab.text("#said"))
    drop(tab, "shape.step", b"ISO-10303-21;")
    tab.wait("return document.getElementById('said').textContent.includes('shape.step')", "and what no drawing's name has")
    tab.find("#back").click()
    shows(tab, "fresh.json")
    tab.type("drag base.end by 5,0")
    tab.after_edit(1)
    moved = tab.entity("base")
    drop(tab, "two.FCStd", document(Sketch=10, Sketch001=20))
    asked = answers(tab)
    check("fresh.json are not saved" in tab.text("dialog p") and asked == ["Save, then open two.FCStd", "Open two.FCStd", "Cancel"],
          f"unsaved edits are asked about: {asked}")
    tab.picture("dropped-asks")
    answer(tab, "Cancel")
    check(tab.run("return window.holdfast.file") == "fresh.json" and tab.entity("base") == moved, "cancel leaves all as it is")
    drop(tab, "two.FCStd", document(Sketch=10, Sketch001=20))
    answers(tab)
    answer(tab, "Open two.FCStd")
    tab.wait("return document.querySelector('dialog[open] p')?.textContent.includes('2 sketches')", "of several sketches one is chosen")
    answer(tab, "Sketch001")
    shows(tab, "two.FCStd#Sketch001")
    check(tab.entity("g0")["end"] == [20, 0], "it is the one that was chosen")
    chosen = pathlib.Path(folder) / "chosen.svg"
    chosen.write_bytes((EXAMPLES / "pictures" / "sensor-cover.svg").read_bytes())
    tab.find("#chooser").send_keys(str(chosen))
    shows(tab, "chosen.svg")
    tab.find("#back").click()
    shows(tab, "fresh.json")
    check(tab.entity("base") == moved and tab.find("#unsaved").is_displayed(), "the first drawing is as it was left")


def a_dropped_drawing_is_saved_as(tab, folder):
    downloads = pathlib.Path(folder) / "downloads"
    downloads.mkdir(exist_ok=True)
    tab.browser.execute_cdp_cmd("Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": str(downloads)})
    drop(tab, "two.FCStd", document(Sketch=10))
    shows(tab, "two.FCStd")
    tab.type("drag g0.end by 5,0")
    tab.after_edit(1)
    tab.key(Keys.CONTROL, "s")
    tab.wait("return document.querySelector('dialog[open] input') !== null", "where there is no file to save into it is asked for a name")
    check(tab.find("#save-as-name").get_attribute("value") == "two", "its own is offered")
    options = [option.text for option in tab.browser.find_elements("css selector", "#save-as-form option")]
    check(options[0].startswith(".FCStd") and "as it came" in options[0] and len(options) == 6, f"and the form that it came in: {options}")
    tab.picture("save-as")
    tab.find("#save-as-name").clear()
    tab.find("#save-as-name").send_keys("longer", Keys.ENTER)
    tab.wait("return document.getElementById('said').textContent.startsWith('longer.FCStd was downloaded')", "the browser keeps it")
    saved, patience = downloads / "longer.FCStd", time.time() + 8
    while not saved.exists() and time.time() < patience:
        time.sleep(0.05)
    check(not tab.find("#unsaved").is_displayed(), "then it is saved")
    drop(tab, "again.FCStd", saved.read_bytes())
    shows(tab, "again.FCStd")
    check(tab.entity("g0")["end"] == [15, 0], "and is what was seen")
    tab.find("#save-as").click()
    tab.wait("return document.querySelector('dialog[open] select') !== null", "a button asks, too")
    tab.find("#save-as-form").send_keys(".svg")
    tab.find("#save-as-name").send_keys(Keys.ESCAPE)
    tab.wait("return document.querySelector('dialog') === null", "escape leaves it")
    check(len(list(downloads.iterdir())) == 1, "and nothing is downloaded")
    tab.find("#back").click()
    shows(tab, "fresh.json")
