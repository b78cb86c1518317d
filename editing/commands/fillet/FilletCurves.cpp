#include "editing/commands/fillet/FilletCurves.h"

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/FarPlaces.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

std::optional<Vec2> endOf(const Shape& shape, CurveEnd end) {
    return end == CurveEnd::start ? startPoint(shape) : endPoint(shape);
}

}  // namespace

void addFilletArc(EditContext& context, const ArcShape& arc, const std::string& first, const std::string& second) {
    context.drawing.add(arc, context.drawing.isConstruction(first) ? second : first);
}

std::string replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape) {
    const bool isOtherKind = side.shape.index() != shape.index();
    const std::string successor = isOtherKind ? context.drawing.add(shape, side.name) : side.name;
    context.reasons.noteEdited(side.name, side.verb + "ed", {successor});
    if (!isOtherKind)
        return side.name;
    context.drawing.erase(side.name);
    return successor;
}

// Entities that are replaced go first, as their constraints are not for the centre to judge.
void filletTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, double radius) {
    const CurveFillet fillet = filletCurves(a, b, radius);
    refuseFarMeeting(context, endOf(a.shape, fillet.firstEnd), endOf(fillet.first, fillet.firstEnd), a.name, b.name);
    refuseFarMeeting(context, endOf(b.shape, fillet.secondEnd), endOf(fillet.second, fillet.secondEnd), a.name, b.name);
    Drawing& drawing = context.drawing;
    context.edited = {a.name, b.name};
    const std::string nameA = replaceOtherKind(context, a, fillet.first);
    const std::string nameB = replaceOtherKind(context, b, fillet.second);
    const bool keepsA = nameA == a.name, keepsB = nameB == b.name;
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(keepsA ? &drawing.entity(a.name) : nullptr, keepsB ? &drawing.entity(b.name) : nullptr);
    if (keepsA)
        drawing.write(a.name, fillet.first);
    if (keepsB)
        drawing.write(b.name, fillet.second);
    if (fillet.arc)
        addFilletArc(context, *fillet.arc, nameA, nameB);
    deleteCollected(context, centre);
}

}  // namespace holdfast::editing
