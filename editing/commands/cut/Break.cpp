#include <algorithm>
#include <cmath>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "editing/Commands.h"
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

/// Where the curve is cut.
struct Cut {
    Shape shape;
    double firstParam = 0.0, lastParam = 0.0;
};

Cut resolved(const Break& edit, const Drawing& drawing, std::vector<std::string>* remarks = nullptr) {
    const std::string& name = edit.entity.value;
    requireEntity(drawing, edit.entity);
    refuseFixed(drawing, name);
    const Shape shape = drawing.shape(name);
    refuseNoCurve(name, shape, "broken");
    const double firstParam = ontoVertex(shape, paramOnCurve(shape, name, edit.from, remarks));
    return {shape, firstParam, edit.to ? ontoVertex(shape, paramOnCurve(shape, name, *edit.to, remarks)) : firstParam};
}

}  // namespace

void require(const Break& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Break& edit, EditContext& context) {
    const std::string& name = edit.entity.value;
    const Cut cut = resolved(edit, context.drawing, &context.remarks);
    if (const auto* polyline = std::get_if<PolylineShape>(&cut.shape); polyline == nullptr || !polyline->closed)
        return breakOpen(context, name, cut.firstParam, cut.lastParam);
    context.edited = {name};
    cutRing(context, name, cut.firstParam, cut.lastParam,
            [&](double first, double last) { breakOpen(context, name, first, last); });
}

}  // namespace holdfast::editing
