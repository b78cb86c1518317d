#include <array>
#include <cmath>
#include <numbers>

#include "drag/CYxRotateReleaseConstraint.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/FixedPlaces.h"
#include "editing/Verbs.h"
#include "editing/commands/move/MirroredConstraints.h"
#include "editing/commands/move/Moving.h"

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

/// What is tied to the turned entities follows. Constraints go that the user's angle makes false and that no other
/// entity's move can mend: a level line that is level no longer. The trial, at its own angle, has named the likeliest.
void followReleasing(const EditContext& context) {
    for (const std::string& id : context.evaluator.againstPlaced(context.edited, context.evaluator.rotateReport()))
        context.drawing.removeConstraint(id);
    markChanged(context);
    evaluate(context);
}

void runRotate(EditText& text, EditContext& context) {
    static constexpr std::array<std::string_view, 1> ends{"about"};
    const std::vector<std::string> names = takeSelection(text, context, ends);
    text.expect("about");
    const Vec2 base = text.point("the point to turn about");
    text.expect("by");
    const double degrees = text.number("the angle in degrees, counter-clockwise");
    text.expectEnd();
    context.edited = names;
    const PlaneTransform turn = rotation(base, std::remainder(degrees, 360.0) * (std::numbers::pi / 180.0));
    refuseMovingFixed(context, names, turn);
    const bool followed = tryRotation(context, constrainedFirst(context, names), base);
    turnMeasures(context.drawing, names, turn);
    for (const std::string& name : names)
        moveEntity(context, name, turn);
    if (followed)
        followReleasing(context);
}

}  // namespace

const EditVerb kRotateVerb{"rotate", "rotate ENTITY... about POINT by DEGREES", "rotate g1 g2 about 0,0 by 30",
                           "turns entities about a point, counter-clockwise for a positive angle", &runRotate};

}  // namespace holdfast::editing
