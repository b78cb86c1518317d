"""A drawing that is dropped on the page, or chosen with its button."""
import base64
import pathlib

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
