#include "editing/Commands.h"
#include "editing/commands/network/NamedConstraints.h"
#include "hosting/evaluator/Implied.h"

namespace holdfast::editing {

namespace {

Constraint resolved(const SetDriving& edit, const Drawing& drawing) {
    Constraint dimension = requireDimension(drawing, edit.dimension);
    if (dimension.driving == edit.driving)
        throw EditError(dimension.id + " is " + (edit.driving ? "driving" : "measured") + " already");
    return dimension;
}

/// One that only says what follows already could never be set.
void refuseImplied(const Drawing& drawing, const Constraint& dimension) {
    const Document part = surroundingsOf(drawing, dimension);
    const std::optional<std::vector<std::string>> by = implying(part, dimension.id);
    if (!by)
        return;
    if (by->empty())
        throw EditError(dimension.id + " stands between what may not move; it can only be measured");
    throw EditError("what " + dimension.id + " measures follows already from " + spokenConstraints(part, *by) +
                    "; it can only be measured, or delete one of them first");
}

}  // namespace

void require(const SetDriving& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetDriving& edit, EditContext& context) {
    const Constraint dimension = resolved(edit, context.drawing);
    context.drawing.setDriving(dimension.id, edit.driving);
    if (!dimension.formula.empty())
        context.drawing.setFormula(dimension.id, {});
    if (edit.driving)
        refuseImplied(context.drawing, dimension);
}

}  // namespace holdfast::editing
