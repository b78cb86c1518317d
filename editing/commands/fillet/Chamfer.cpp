#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/fillet/ChamferGeometry.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/fillet/FilletPolyline.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

/// Along the first curve and along the second.
struct Lengths {
    double first = 0.0, second = 0.0;
};

Lengths requireLengths(const ChamferLengths& lengths) {
    const Sourced<double> second = lengths.second.value_or(lengths.first);
    for (const Sourced<double>& length : {lengths.first, second})
        if (!(length.value > 0.0))
            throw RefusedWord(
                {"a chamfer takes a length above 0; fillet with radius 0 makes a sharp corner", {}, length.column});
    return {lengths.first.value, second.value};
}

FilletSide sideOf(const Name& entity, const Drawing& drawing) {
    requireEntity(drawing, entity);
    refuseFixed(drawing, entity.value);
    FilletSide side{.name = entity.value, .shape = drawing.shape(entity.value), .verb = "chamfer"};
    refuseNoCurve(side.name, side.shape, "chamfered");
    return side;
}

FilletSide curveSide(const Name& entity, const Drawing& drawing) {
    FilletSide side = sideOf(entity, drawing);
    if (std::holds_alternative<PolylineShape>(side.shape))
        throw EditError(side.name + " is a polyline; name one of its corners (chamfer " + side.name +
                        " corner I by LENGTH), or explode it first");
    return side;
}

struct ResolvedChamfer {
    FilletSide a, b;
    CurveChamfer chamfer;
};

ResolvedChamfer resolved(const Chamfer& edit, const Drawing& drawing) {
    FilletSide a = curveSide(edit.first, drawing);
    FilletSide b = curveSide(edit.second, drawing);
    const Lengths by = requireLengths(edit.by);
    if (a.name == b.name)
        throw EditError(a.name + " cannot be chamfered with itself; name two curves");
    if (edit.picks) {
        a.pick = pickOn(a, edit.picks->first);
        b.pick = pickOn(b, edit.picks->second);
    }
    CurveChamfer chamfer = chamferCurves(a, b, by.first, by.second);
    return {std::move(a), std::move(b), std::move(chamfer)};
}

SegmentFillet resolved(const ChamferCorner& edit, const Drawing& drawing) {
    const FilletSide side = sideOf(edit.polyline, drawing);
    const auto* polyline = std::get_if<PolylineShape>(&side.shape);
    if (polyline == nullptr)
        throw EditError(side.name + " is no polyline; name the two curves whose corner is to be chamfered");
    const Lengths by = requireLengths(edit.by);
    return cornerChamfer(side.name, *polyline, edit.corner, by.first, by.second);
}

void tie(const EditContext& context, const Place& a, const Place& b) {
    context.drawing.addConstraint({.type = ConstraintType::coincident, .refs = {a, b}});
}

Place endOf(const std::string& name, CurveEnd end) {
    return {name, end == CurveEnd::start ? PlaceKind::start : PlaceKind::end};
}

/// The module judges what the cuts made false as it does for a fillet without an arc.
void chamferTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, const CurveChamfer& chamfer) {
    const auto [first, second, line] = leadTogether(context, a, chamfer.first, b, chamfer.second, chamfer.line);
    tie(context, {line, PlaceKind::start}, endOf(first, chamfer.firstEnd));
    tie(context, {line, PlaceKind::end}, endOf(second, chamfer.secondEnd));
}

}  // namespace

void require(const Chamfer& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void require(const ChamferCorner& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Chamfer& edit, EditContext& context) {
    const auto [a, b, chamfer] = resolved(edit, context.drawing);
    chamferTwoCurves(context, a, b, chamfer);
}

void perform(const ChamferCorner& edit, EditContext& context) {
    filletWithin(context, edit.polyline.value, resolved(edit, context.drawing), "chamfered");
}

}  // namespace holdfast::editing
