#include <algorithm>
#include <cmath>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "editing/Verbs.h"
#include "editing/commands/cut/Cutting.h"
#include "editing/commands/cut/RingCutting.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

/// At a single vertex the centre would take the segment behind it for one that goes. A cut that begins in the middle of
/// the segment before it and ends at the vertex leaves both segments to the pieces on which they are.
double toldStart(const Shape& shape, double firstParam, double lastParam) {
    const bool isAtVertex = std::holds_alternative<PolylineShape>(shape) && firstParam == std::floor(firstParam);
    return isAtVertex && firstParam == lastParam ? firstParam - 0.5 : firstParam;
}

void breakOpen(EditContext& context, const std::string& name, double firstParam, double lastParam) {
    const Shape shape = context.drawing.shape(name);
    const CutPieces pieces = cutOut(shape, name, firstParam, lastParam);
    const double told = toldStart(shape, firstParam, lastParam);
    const CutCurve curve(context, name, told, lastParam);
    // The centre orders two parameters itself, but at the cost of their last digits.
    const auto [low, high] = std::minmax(told, lastParam);
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(&curve.entity(), curve.pointAt(low), curve.pointAt(high));
    applyCut(context, name, pieces, centre);
}

void runBreak(EditText& text, EditContext& context) {
    const std::string name = takeEntity(text, context);
    text.expect("at");
    const Vec2 from = text.point("the first break point");
    const Vec2 to = text.accept("to") ? text.point("the second break point") : from;
    text.expectEnd();
    refuseFixed(context, name);
    const Shape shape = context.drawing.shape(name);
    refuseNoCurve(name, shape, "broken");
    const double firstParam = ontoVertex(shape, paramOnCurve(shape, name, from));
    const double lastParam = ontoVertex(shape, paramOnCurve(shape, name, to));
    if (const auto* polyline = std::get_if<PolylineShape>(&shape); polyline == nullptr || !polyline->closed)
        return breakOpen(context, name, firstParam, lastParam);
    context.edited = {name};
    cutRing(context, name, firstParam, lastParam,
            [&](double first, double last) { breakOpen(context, name, first, last); });
}

}  // namespace

const EditVerb kBreakVerb{
    "break", "break ENTITY at POINT [to POINT]", "break g3 at 4,0 to 6,0",
    "cuts a curve in two, or takes a part out of it, of a closed one that from the first point on", &runBreak};

}  // namespace holdfast::editing
