#include "editing/commands/fillet/FilletCurves.h"

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/FarPlaces.h"

namespace holdfast::editing {

std::string addBetween(EditContext& context, const Shape& shape, const std::string& first, const std::string& second) {
    return context.drawing.add(shape, context.drawing.isConstruction(first) ? second : first);
}

std::string replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape) {
    const bool isOtherKind = side.shape.index() != shape.index();
    std::string successor = isOtherKind ? context.drawing.add(shape, side.name) : side.name;
    context.reasons.noteEdited(side.name, side.verb + "ed", {successor});
    if (!isOtherKind)
        return side.name;
    context.drawing.erase(side.name);
    return successor;
}

// Entities that are replaced go first, as their constraints are not for the centre to judge.
LedTogether leadTogether(EditContext& context, const FilletSide& a, const Shape& first, const FilletSide& b,
                         const Shape& second, const std::optional<Shape>& between) {
    Drawing& drawing = context.drawing;
    context.edited = {a.name, b.name};
    LedTogether names{replaceOtherKind(context, a, first), replaceOtherKind(context, b, second), {}};
    const bool keepsA = names.first == a.name, keepsB = names.second == b.name;
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(keepsA ? &drawing.entity(a.name) : nullptr, keepsB ? &drawing.entity(b.name) : nullptr);
    if (keepsA)
        drawing.write(a.name, first);
    if (keepsB)
        drawing.write(b.name, second);
    if (between)
        names.between = addBetween(context, *between, names.first, names.second);
    deleteCollected(context, centre);
    return names;
}

void filletTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, double radius) {
    const CurveFillet fillet = filletCurves(a, b, radius);
    refuseFarCorner(context, {a.name, b.name}, a.shape, fillet.first, fillet.firstEnd);
    refuseFarCorner(context, {a.name, b.name}, b.shape, fillet.second, fillet.secondEnd);
    leadTogether(context, a, fillet.first, b, fillet.second, fillet.arc);
}

}  // namespace holdfast::editing
