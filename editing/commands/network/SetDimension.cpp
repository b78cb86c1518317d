#include "editing/Commands.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

Constraint resolved(const SetDimension& edit, const Drawing& drawing) {
    Constraint dimension = requireDimension(drawing, edit.dimension);
    if (!dimension.driving)
        throw EditError(dimension.id + " is measured and follows the drawing; say \"set " + dimension.id +
                        " driving\" first");
    dimension.value = keptValue(dimension.type, edit.value);
    if (const std::optional<Fault> fault = faultOn(drawing, dimension))
        throw EditError(dimension.id + " cannot be " + fault->found + "; give " + fault->expected);
    return dimension;
}

}  // namespace

void require(const SetDimension& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetDimension& edit, EditContext& context) {
    const Constraint dimension = resolved(edit, context.drawing);
    if (!context.evaluator.lead({{dimension.id, *dimension.value}}))
        throw EditError("the constraints do not let " + dimension.id + " be " + spoken(edit.value));
}

}  // namespace holdfast::editing
