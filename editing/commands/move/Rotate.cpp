#include <cmath>

#include "document/Names.h"
#include "drag/CYxRotateReleaseConstraint.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/move/References.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "geometry/Angles.h"

namespace holdfast::editing {

namespace {

/// Has the evaluator try the rotation out. True when constrained entities take part in it.
bool tryRotation(const EditContext& context, const std::vector<std::string>& names, Vec2 base) {
    bool ignored = false, result = false;
    YxArray<YxDbObjectId> constrainedIds;
    CYxRotateReleaseConstraint::analysisRotateBox(idsOf(context, names), {base.x, base.y, 0.0}, ignored, constrainedIds,
                                                  result);
    return !constrainedIds.isEmpty();
}

std::string reasonOfTurn(const Constraint& constraint, double degrees) {
    const bool isLevel = constraint.type == ConstraintType::horizontal || constraint.type == ConstraintType::vertical;
    if (isLevel && constraint.refs.size() == 1)
        return spokenPlace(constraint.refs.front()) + " is no longer " + std::string(typeName(constraint.type));
    return "it does not hold after a turn by " + spoken(degrees) + " degrees";
}

/// What is tied to the turned entities follows. Constraints go that the user's angle makes false and that no other
/// entity's move can mend: a level line that is level no longer. The trial, at its own angle, has named the likeliest.
void followReleasing(const EditContext& context, double degrees) {
    for (const std::string& id : context.evaluator.againstPlaced(context.edited, context.evaluator.rotateReport()))
        context.drawing.removeConstraint(id);
    for (const Deletion& released : context.drawing.deletions())
        context.reasons.note(released.constraint.id, reasonOfTurn(released.constraint, degrees));
    markChanged(context);
    evaluate(context);
}

void rotateEntities(EditContext& context, const std::vector<std::string>& names, const Rotate& edit,
                    const PlaneTransform& turn) {
    context.edited = names;
    refuseMovingFixed(context, names, turn);
    const bool followed = tryRotation(context, constrainedFirst(context, names), edit.about);
    turnMeasures(context.drawing, names, turn);
    for (const std::string& name : names)
        moveEntity(context, name, turn);
    if (followed)
        followReleasing(context, edit.degrees);
}

}  // namespace

void require(const Rotate& edit, const Drawing& drawing) {
    requireThings(drawing, edit.entities, "about");
}

void perform(const Rotate& edit, EditContext& context) {
    const auto [names, references] = requireThings(context.drawing, edit.entities, "about");
    const PlaneTransform turn = rotation(edit.about, inRadians(std::remainder(edit.degrees, 360.0)));
    if (!names.empty())
        rotateEntities(context, names, edit, turn);
    moveReferences(context, references, turn);
}

}  // namespace holdfast::editing
