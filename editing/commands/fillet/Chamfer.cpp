#include "editing/Commands.h"
#include "editing/FarPlaces.h"
#include "editing/commands/fillet/ChamferGeometry.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/fillet/FilletPolyline.h"
#include "editing/commands/fillet/KeptCorner.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Tolerances.h"
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

struct ChamferSides {
    FilletSide a, b;
};

ChamferSides chamferSidesOf(const Chamfer& edit, const Drawing& drawing, std::vector<std::string>* remarks = nullptr) {
    ChamferSides sides{sideOf(edit.first, drawing), sideOf(edit.second, drawing)};
    auto& [a, b] = sides;
    if (a.name == b.name)
        throw EditError(std::holds_alternative<PolylineShape>(a.shape)
                            ? "name a corner to chamfer " + a.name + " with itself: chamfer " + a.name +
                                  " corner I by LENGTH"
                            : a.name + " cannot be chamfered with itself; name two curves");
    if (edit.picks) {
        a.pick = pickOn(a, edit.picks->first, remarks);
        b.pick = pickOn(b, edit.picks->second, remarks);
    }
    return sides;
}

/// What the two curves become; of a polyline the segment that is cut.
struct ResolvedChamfer {
    FilletSide a, b;
    CurveChamfer chamfer;
    std::optional<PolylineSide> polyline{};  ///< a is a segment of this one
    FilletedSegment segment{};
    std::optional<PolylineSide> otherPolyline{};  ///< and b of this one
    FilletedSegment otherSegment{};
};

PolylineSide polylineToChamfer(const FilletSide& side) {
    const auto& polyline = std::get<PolylineShape>(side.shape);
    if (polyline.closed)
        throw EditError(side.name +
                        " is closed and has no end to chamfer; chamfer one of its corners, or break it "
                        "first");
    return {side.name, polyline, side.pick};
}

FilletedSegment segmentToChamfer(const PolylineSide& polyline, CurveEnd end) {
    FilletedSegment segment = filletedSegment(polyline, end);
    segment.side.verb = "chamfer";
    return segment;
}

ResolvedChamfer chamferOfPolylines(FilletSide a, FilletSide b, const Lengths& by) {
    PolylineSide first = polylineToChamfer(a), second = polylineToChamfer(b);
    const FacingEnds ends = facingEnds(first.shape, second.shape);
    FilletedSegment segment = segmentToChamfer(first, ends.first), other = segmentToChamfer(second, ends.second);
    CurveChamfer chamfer = chamferCurves(segment.side, other.side, by.first, by.second);
    return {std::move(a),       std::move(b),      std::move(chamfer), std::move(first),
            std::move(segment), std::move(second), std::move(other)};
}

ResolvedChamfer resolved(const Chamfer& edit, const Drawing& drawing, std::vector<std::string>* remarks = nullptr) {
    auto [a, b] = chamferSidesOf(edit, drawing, remarks);
    Lengths by = requireLengths(edit.by);
    const bool isSecondPolyline = std::holds_alternative<PolylineShape>(b.shape);
    if (isSecondPolyline && std::holds_alternative<PolylineShape>(a.shape))
        return chamferOfPolylines(std::move(a), std::move(b), by);
    if (isSecondPolyline) {
        std::swap(a, b);
        std::swap(by.first, by.second);
    }
    if (!std::holds_alternative<PolylineShape>(a.shape)) {
        CurveChamfer chamfer = chamferCurves(a, b, by.first, by.second);
        return {std::move(a), std::move(b), std::move(chamfer)};
    }
    PolylineSide polyline = polylineToChamfer(a);
    FilletedSegment segment = segmentToChamfer(polyline, endTowards(polyline.shape, b.shape));
    CurveChamfer chamfer = chamferCurves(segment.side, b, by.first, by.second);
    return {std::move(a), std::move(b), std::move(chamfer), std::move(polyline), std::move(segment)};
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
    refuseFarCorner(context, {a.name, b.name}, a.shape, chamfer.first, chamfer.firstEnd);
    refuseFarCorner(context, {b.name, a.name}, b.shape, chamfer.second, chamfer.secondEnd);
    const auto [first, second, line] = leadTogether(context, a, chamfer.first, b, chamfer.second, chamfer.line);
    tie(context, {line, PlaceKind::start}, endOf(first, chamfer.firstEnd));
    tie(context, {line, PlaceKind::end}, endOf(second, chamfer.secondEnd));
}

void chamferWithPolyline(EditContext& context, const ResolvedChamfer& found) {
    const CurveChamfer& chamfer = found.chamfer;
    const auto [polyline, curve, line] = leadPolyline(
        context, *found.polyline, found.b,
        {found.segment, chamfer.first, chamfer.firstEnd, chamfer.second, chamfer.secondEnd, Shape(chamfer.line)},
        "chamfered");
    const double near = kSamePoint * context.drawing.extent();
    if (const auto end = endAt(polyline, context.drawing.shape(polyline), chamfer.line.start, near))
        tie(context, {line, PlaceKind::start}, *end);
    tie(context, {line, PlaceKind::end}, endOf(curve, chamfer.secondEnd));
}

}  // namespace

void require(const Chamfer& edit, const Drawing& drawing) {
    resolved(edit, drawing);
    if (edit.keepCorner) {
        const auto [a, b] = chamferSidesOf(edit, drawing);
        cornerOf(a, b);
    }
}

void require(const ChamferCorner& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Chamfer& edit, EditContext& context) {
    const ResolvedChamfer found = resolved(edit, context.drawing, &context.remarks);
    const std::optional<Vec2> corner = edit.keepCorner ? std::optional(cornerOf(found.a, found.b)) : std::nullopt;
    if (found.otherPolyline)
        chamferPolylines(context, *found.polyline, *found.otherPolyline,
                         {found.segment, found.otherSegment, found.chamfer});
    else if (found.polyline)
        chamferWithPolyline(context, found);
    else
        chamferTwoCurves(context, found.a, found.b, found.chamfer);
    keepCorner(context, corner);
}

void perform(const ChamferCorner& edit, EditContext& context) {
    const Shape polyline = context.drawing.shape(edit.polyline.value);
    filletWithin(context, edit.polyline.value, resolved(edit, context.drawing), "chamfered");
    if (edit.keepCorner)
        keepCorner(context, std::get<PolylineShape>(polyline).vertices.at(static_cast<std::size_t>(edit.corner)));
}

}  // namespace holdfast::editing
