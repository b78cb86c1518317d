#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "workbench/editing/FilletGeometry.h"
#include "workbench/editing/Verbs.h"
#include "workbench/geometry/Parameters.h"

namespace holdfast {

namespace {

FilletSide takeSide(EditText& text, const EditContext& context) {
    FilletSide side{takeEntity(text, context), {}};
    refuseFixed(context, side.name);
    side.shape = context.drawing.shape(side.name);
    if (std::holds_alternative<PointShape>(side.shape) || std::holds_alternative<TextShape>(side.shape))
        throw EditError(side.name + " is no curve; only curves can be filleted");
    if (std::holds_alternative<PolylineShape>(side.shape))
        throw EditError(side.name + " is a polyline, which cannot be filleted; choose single curves");
    return side;
}

double takeRadius(EditText& text) {
    text.expect("radius");
    const double radius = text.number("the radius");
    if (radius < 0.0)
        text.fail("a radius cannot be negative; give 0 for a sharp corner");
    return radius;
}

/// A ray that gets a second end, or a construction line that gets one, becomes an entity of another kind. The host
/// puts a new entity in its place; what held on the former one goes with it. True when that happened.
bool replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape) {
    if (side.shape.index() == shape.index())
        return false;
    context.drawing.add(shape, side.name);
    context.drawing.erase(side.name);
    return true;
}

/// The host's half of a fillet of two curves. Entities that are replaced go first, as their constraints are not for
/// the centre to judge.
void applyFillet(EditContext& context, const FilletSide& a, const FilletSide& b, const CurveFillet& fillet) {
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

void runFillet(EditText& text, EditContext& context) {
    FilletSide a = takeSide(text, context);
    FilletSide b = takeSide(text, context);
    const double radius = takeRadius(text);
    if (text.accept("at")) {
        a.pick = pointAt(a.shape, paramOnCurve(a.shape, a.name, text.point("a point on the first curve")));
        b.pick = pointAt(b.shape, paramOnCurve(b.shape, b.name, text.point("a point on the second curve")));
    }
    text.expectEnd();
    if (a.name == b.name)
        throw EditError(a.name + " cannot be filleted with itself; name two curves");
    applyFillet(context, a, b, filletCurves(a, b, radius));
}

}  // namespace

const EditVerb kFilletVerb{"fillet", "fillet ENTITY ENTITY radius R [at POINT POINT]", "fillet g1 g2 radius 2",
                           "joins two curves by an arc, or with radius 0 in a sharp corner", &runFillet};

}  // namespace holdfast
