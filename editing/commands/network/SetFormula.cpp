#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

Constraint resolved(const SetFormula& edit, const Drawing& drawing) {
    Constraint dimension = requireDriving(drawing, edit.dimension);
    dimension.formula = edit.formula.value;
    dimension.value = typedValue(drawing, itemOf(dimension), edit.formula).value;
    refuseImpossible(drawing, dimension);
    return dimension;
}

}  // namespace

void require(const SetFormula& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetFormula& edit, EditContext& context) {
    const Constraint dimension = resolved(edit, context.drawing);
    const OtherItems others{{dimension.id, itemOf(dimension)}};
    const Calculated next = calculated(context.drawing, others, edit.formula);
    context.drawing.setFormula(dimension.id, isPlainNumber(dimension.formula) ? "" : dimension.formula);
    if (!leadWith(context, dimension, next))
        throw EditError("the constraints do not let " + dimension.id + " be " +
                        spoken(spokenValue(dimension.type, *dimension.value)));
}

}  // namespace holdfast::editing
