#include "editing/Verbs.h"
#include "editing/commands/fillet/FilletCurves.h"
#include "editing/commands/fillet/FilletPolyline.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

FilletSide takeSide(EditText& text, const EditContext& context) {
    FilletSide side{.name = takeEntity(text, context), .shape = {}};
    refuseFixed(context, side.name);
    side.shape = context.drawing.shape(side.name);
    refuseNoCurve(side.name, side.shape, "filleted");
    return side;
}

double takeRadius(EditText& text) {
    text.expect("radius");
    const double radius = text.number("the radius");
    if (radius < 0.0)
        text.fail("a radius cannot be negative; give 0 for a sharp corner");
    return radius;
}

void takePicks(EditText& text, FilletSide& a, FilletSide& b) {
    if (!text.accept("at"))
        return;
    a.pick = pointAt(a.shape, paramOnCurve(a.shape, a.name, text.point("a point on the first curve")));
    b.pick = pointAt(b.shape, paramOnCurve(b.shape, b.name, text.point("a point on the second curve")));
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

void filletCorner(EditText& text, EditContext& context, const FilletSide& side) {
    const PolylineShape& polyline = polylineOf(side);
    const int corner = text.integer("the number of a corner, counted from 0");
    const double radius = takeRadius(text);
    text.expectEnd();
    filletWithin(context, side.name, cornerFillet(side.name, polyline, corner, radius));
}

void filletSegments(EditText& text, EditContext& context, const FilletSide& side) {
    const PolylineShape& polyline = polylineOf(side);
    const int from = text.integer("the number of the segment that the arc leaves, counted from 0");
    const int to = text.integer("the number of the segment to which the arc leads");
    const double radius = takeRadius(text);
    text.expectEnd();
    filletWithin(context, side.name, segmentFillet(side.name, polyline, from, to, radius));
}

void filletPair(EditContext& context, const FilletSide& a, const FilletSide& b, double radius) {
    const bool first = std::holds_alternative<PolylineShape>(a.shape);
    const bool second = std::holds_alternative<PolylineShape>(b.shape);
    if (a.name == b.name)
        throw EditError(first ? "name two segments or a corner to fillet " + a.name + " with itself"
                              : a.name + " cannot be filleted with itself; name two curves");
    if (first && second)
        filletPolylines(context, openPolylineSide(a), openPolylineSide(b), radius);
    else if (first || second)
        filletWithCurve(context, openPolylineSide(first ? a : b), first ? b : a, radius);
    else
        filletTwoCurves(context, a, b, radius);
}

void runFillet(EditText& text, EditContext& context) {
    FilletSide a = takeSide(text, context);
    if (text.accept("corner"))
        return filletCorner(text, context, a);
    if (text.accept("segments"))
        return filletSegments(text, context, a);
    FilletSide b = takeSide(text, context);
    const double radius = takeRadius(text);
    takePicks(text, a, b);
    text.expectEnd();
    filletPair(context, a, b, radius);
}

}  // namespace

const EditVerb kFilletVerb{
    "fillet",
    "fillet ENTITY ENTITY radius R [at POINT POINT] | fillet POLYLINE corner I radius R | fillet POLYLINE segments I "
    "J radius R",
    "fillet g1 g2 radius 2", "joins two curves or segments by an arc, or with radius 0 in a sharp corner", &runFillet};

}  // namespace holdfast::editing
