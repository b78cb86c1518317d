#include "workbench/editing/FilletCurves.h"

#include "commands/fillet/ConstraintFilletCmdCenter.h"

namespace holdfast {

bool replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape) {
    if (side.shape.index() == shape.index())
        return false;
    context.drawing.add(shape, side.name);
    context.drawing.erase(side.name);
    return true;
}

// Entities that are replaced go first, as their constraints are not for the centre to judge.
void filletTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, double radius) {
    const CurveFillet fillet = filletCurves(a, b, radius);
    Drawing& drawing = context.drawing;
    context.edited = {a.name, b.name};
    const bool keepsA = !replaceOtherKind(context, a, fillet.first);
    const bool keepsB = !replaceOtherKind(context, b, fillet.second);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(keepsA ? &drawing.entity(a.name) : nullptr, keepsB ? &drawing.entity(b.name) : nullptr);
    if (keepsA)
        drawing.write(a.name, fillet.first);
    if (keepsB)
        drawing.write(b.name, fillet.second);
    if (fillet.arc)
        drawing.add(*fillet.arc);
    centre.deleteConstraint();
}

}  // namespace holdfast
