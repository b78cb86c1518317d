"""The list of constraints, filtered by kind and by what the last edit did."""
from program import check


def rows(tab):
    return tab.run("return [...document.querySelectorAll('#list .row')].map((row) => row.title)")


def counts(tab, group):
    return tab.run("return Object.fromEntries([...document.querySelectorAll(`#${arguments[0]} button`)].map((b) =>"
                   "[b.dataset.name, Number(b.textContent.match(/\\d+/)[0])]))", group)


def press(tab, group, name):
    tab.find(f"#{group} [data-name='{name}']").click()


def lists_are_filtered(tab, _folder):
    drawing = tab.window.ask("state")["drawing"]
    kinds = {}
    for c in drawing["constraints"]:
        if c["type"] != "internal":
            kinds[c["type"]] = kinds.get(c["type"], 0) + 1
    check(counts(tab, "by-kind") == kinds, f"the kinds are counted: {counts(tab, 'by-kind')} {kinds}")
    check(not tab.find("#by-fate").is_displayed(), "before an edit there are no fates")
    press(tab, "by-kind", "coincident")
    check(len(rows(tab)) == kinds["coincident"], "a kind is shown alone")
    other = next(kind for kind in kinds if kind != "coincident")
    press(tab, "by-kind", other)
    check(len(rows(tab)) == kinds["coincident"] + kinds[other], "or with another one")
    press(tab, "by-kind", "coincident")
    press(tab, "by-kind", other)
    check(len(rows(tab)) == sum(kinds.values()), "or all of them")
    tab.type("erase top")
    tab.after_edit(1)
    told = counts(tab, "by-fate")
    gone = tab.run("return [...window.holdfast.scene.gone.keys()]")
    check(told["deleted"] == len(gone) > 0 and told["added"] == 0, f"fates are counted: {told} {gone}")
    check(sum(told.values()) == sum(kinds.values()), f"each constraint has one: {told}")
    press(tab, "by-fate", "deleted")
    check(sorted(rows(tab)) == sorted(gone), f"those that went are shown alone: {rows(tab)}")
    check(sum(counts(tab, "by-kind").values()) == len(gone), "and counted by kind")
    tab.picture("filtered")
    tab.pointer().move_to_element(tab.find("#list .row")).perform()
    check(tab.run("return [...window.holdfast.scene.hotMarks]") == rows(tab)[:1], "one that went lights up its sign")
    at = tab.run("const p = window.holdfast, m = p.painter.placed.find((each) => p.scene.gone.has(each.mark.id) && !each.mark.isSpot);"
                 "return m && [m.mark.id, m.x - p.view.width / 2, m.y - p.view.height / 2]")
    check(at, "signs of those that went are to be seen")
    if at:
        tab.pointer().move_to_element_with_offset(tab.find("#above"), round(at[1]), round(at[2])).perform()
        hot = tab.run("return [...document.querySelectorAll('#list .row.hot')].map((row) => row.title)")
        check(hot == [at[0]], f"and its sign lights up the row: {hot} {at}")
    press(tab, "by-fate", "kept")
    check(len(rows(tab)) == told["kept"] and not set(rows(tab)) & set(gone), "those that stayed are shown alone")
    tab.type("undo")
    tab.after_edit(2)
    check(counts(tab, "by-fate")["added"] == len(gone), "an undo brings them back")
    press(tab, "by-fate", "kept")
    tab.type("constrain radius hole1 5")
    tab.after_edit(3)
    size = tab.run("return [...window.holdfast.drawing.constraints.values()].find((c) => c.type === 'radius').id")
    tab.type(f"set {size} 6")
    tab.after_edit(4)
    told = counts(tab, "by-fate")
    check(told["changed"] == 1 and told["re-pointed"] == 0, f"what has another value is not re-pointed: {told}")
    press(tab, "by-fate", "changed")
    check(rows(tab) == [size], f"and shown alone: {rows(tab)}")
    press(tab, "by-fate", "changed")
