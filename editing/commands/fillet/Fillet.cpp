#include "editing/Commands.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/fillet/FilletPolyline.h"
#include "editing/commands/fillet/KeptCorner.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

FilletSide sideOf(const Name& entity, const Drawing& drawing) {
    requireEntity(drawing, entity);
    refuseFixed(drawing, entity.value);
    FilletSide side{.name = entity.value, .shape = drawing.shape(entity.value)};
    refuseNoCurve(side.name, side.shape, "filleted");
    return side;
}

void requireRadius(const Sourced<double>& radius) {
    if (radius.value < 0.0)
        throw RefusedWord({"a radius cannot be negative; give 0 for a sharp corner", {}, radius.column});
}

const PolylineShape& polylineOf(const FilletSide& side) {
    const auto* polyline = std::get_if<PolylineShape>(&side.shape);
    if (polyline == nullptr)
        throw EditError(side.name + " is no polyline; only polylines have corners and segments to fillet");
    return *polyline;
}

PolylineSide openPolylineSide(const FilletSide& side) {
    const PolylineShape& polyline = polylineOf(side);
    if (polyline.closed)
        throw EditError(side.name +
                        " is closed and has no end to fillet; fillet one of its corners, or break it first");
    return {side.name, polyline, side.pick};
}

SegmentFillet resolved(const FilletCorner& edit, const Drawing& drawing) {
    const FilletSide side = sideOf(edit.polyline, drawing);
    const PolylineShape& polyline = polylineOf(side);
    requireRadius(edit.radius);
    return cornerFillet(side.name, polyline, edit.corner, edit.radius.value);
}

SegmentFillet resolved(const FilletSegments& edit, const Drawing& drawing) {
    const FilletSide side = sideOf(edit.polyline, drawing);
    const PolylineShape& polyline = polylineOf(side);
    requireRadius(edit.radius);
    return segmentFillet(side.name, polyline, edit.from, edit.to, edit.radius.value);
}

struct FilletSides {
    FilletSide first, second;
};

void refuseItself(const FilletSides& sides) {
    const bool isPolyline = std::holds_alternative<PolylineShape>(sides.first.shape);
    if (sides.first.name == sides.second.name)
        throw EditError(isPolyline ? "name two segments or a corner to fillet " + sides.first.name + " with itself"
                                   : sides.first.name + " cannot be filleted with itself; name two curves");
}

FilletSides resolved(const Fillet& edit, const Drawing& drawing, std::vector<std::string>* remarks = nullptr) {
    FilletSide a = sideOf(edit.first, drawing);
    FilletSide b = sideOf(edit.second, drawing);
    requireRadius(edit.radius);
    if (edit.picks) {
        a.pick = pickOn(a, edit.picks->first, remarks);
        b.pick = pickOn(b, edit.picks->second, remarks);
    }
    FilletSides sides{a, b};
    refuseItself(sides);
    return sides;
}

}  // namespace

void require(const Fillet& edit, const Drawing& drawing) {
    const FilletSides sides = resolved(edit, drawing);
    if (edit.keepCorner)
        cornerOf(sides.first, sides.second);
    for (const FilletSide* side : {&sides.first, &sides.second})
        if (std::holds_alternative<PolylineShape>(side->shape))
            openPolylineSide(*side);
}

void require(const FilletCorner& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void require(const FilletSegments& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Fillet& edit, EditContext& context) {
    const auto [a, b] = resolved(edit, context.drawing, &context.remarks);
    const std::optional<Vec2> corner = edit.keepCorner ? std::optional(cornerOf(a, b)) : std::nullopt;
    const double radius = edit.radius.value;
    const bool first = std::holds_alternative<PolylineShape>(a.shape);
    const bool second = std::holds_alternative<PolylineShape>(b.shape);
    if (first && second)
        filletPolylines(context, openPolylineSide(a), openPolylineSide(b), radius);
    else if (first || second)
        filletWithCurve(context, openPolylineSide(first ? a : b), first ? b : a, radius);
    else
        filletTwoCurves(context, a, b, radius);
    keepCorner(context, corner);
}

void perform(const FilletCorner& edit, EditContext& context) {
    const FilletSide side = sideOf(edit.polyline, context.drawing);
    const SegmentFillet fillet = resolved(edit, context.drawing);
    filletWithin(context, edit.polyline.value, fillet);
    if (edit.keepCorner)
        keepCorner(context, polylineOf(side).vertices.at(static_cast<std::size_t>(edit.corner)));
}

void perform(const FilletSegments& edit, EditContext& context) {
    filletWithin(context, edit.polyline.value, resolved(edit, context.drawing));
}

}  // namespace holdfast::editing
