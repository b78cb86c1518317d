#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

Constraint resolved(const SetDimension& edit, const Drawing& drawing) {
    Constraint dimension = requireDriving(drawing, edit.dimension);
    dimension.value = keptValue(dimension.type, edit.value);
    dimension.formula.clear();
    refuseImpossible(drawing, dimension);
    return dimension;
}

}  // namespace

void require(const SetDimension& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetDimension& edit, EditContext& context) {
    const Constraint dimension = resolved(edit, context.drawing);
    if (!context.drawing.constraint(dimension.id)->formula.empty())
        context.drawing.setFormula(dimension.id, {});
    if (!leadWith(context, dimension, calculated(context.drawing, {{dimension.id, itemOf(dimension)}})))
        throw EditError("the constraints do not let " + dimension.id + " be " + spoken(edit.value));
}

}  // namespace holdfast::editing
