#include "editing/Commands.h"
#include "editing/commands/move/Moving.h"

namespace holdfast::editing {

namespace {

/// Constraints are deleted.
void refuseConstraints(const Erase& edit, const Drawing& drawing) {
    for (const Name& name : edit.entities)
        if (drawing.id(name.value).isNull() &&
            (!drawing.constraintCalled(name.value).empty() || drawing.hasParameter(name.value)))
            throw RefusedWord({name.value + " is " +
                                   (drawing.hasParameter(name.value) ? "a parameter" : "a constraint") +
                                   ", not an entity; \"delete\" takes it",
                               {},
                               name.column});
}

}  // namespace

void require(const Erase& edit, const Drawing& drawing) {
    refuseConstraints(edit, drawing);
    requireSelection(drawing, edit.entities);
}

void perform(const Erase& edit, EditContext& context) {
    refuseConstraints(edit, context.drawing);
    for (const std::string& name : requireSelection(context.drawing, edit.entities))
        context.drawing.erase(name);
}

}  // namespace holdfast::editing
