#include "editing/Commands.h"
#include "editing/commands/move/References.h"

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
    requireThings(drawing, edit.entities);
}

void perform(const Erase& edit, EditContext& context) {
    refuseConstraints(edit, context.drawing);
    const auto [names, references] = requireThings(context.drawing, edit.entities);
    for (const std::string& name : names)
        context.drawing.erase(name);
    for (const std::string& name : references)
        context.drawing.references().erase(name);
}

}  // namespace holdfast::editing
