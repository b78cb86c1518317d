#include "editing/Commands.h"
#include "editing/commands/move/Aligning.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/TransformedConstraints.h"

namespace holdfast::editing {

namespace {

std::vector<std::string> resolved(const Scale& edit, const Drawing& drawing) {
    std::vector<std::string> names = requireSelection(drawing, edit.entities, "about");
    if (!(edit.factor.value > 0.0))
        throw RefusedWord({"a factor is above 0; mirror turns entities over", {}, edit.factor.column});
    if (edit.factor.value == 1.0)
        throw RefusedWord({"a factor of 1 changes nothing; give another one", {}, edit.factor.column});
    return names;
}

}  // namespace

void require(const Scale& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

/// Lengths among the scaled entities only measure while these are moved: neither the sizes before nor those afterwards
/// may hold them back on their way.
void perform(const Scale& edit, EditContext& context) {
    const std::vector<std::string> names = resolved(edit, context.drawing);
    const std::vector<Constraint> lengths = lengthsAmong(context.drawing, names);
    for (const Constraint& length : lengths)
        context.drawing.setDriving(length.id, false);
    alignBy(context, names, scaling(edit.about, edit.factor.value));
    for (const Constraint& length : lengths) {
        context.drawing.setMeasure(length.id, edit.factor.value * length.value.value());
        context.drawing.setDriving(length.id, length.driving);
    }
}

}  // namespace holdfast::editing
