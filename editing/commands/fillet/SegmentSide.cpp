#include "editing/commands/fillet/SegmentSide.h"

#include "editing/text/EditText.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

namespace {

/// What the module takes for a vertex of its own: less than this part of a segment is nothing.
constexpr double kLeastPart = 1e-6;

bool runsAgainst(const PolylineShape& polyline, std::size_t segment) {
    return polyline.bulges[segment] < 0.0;
}

CurveEnd other(CurveEnd end) {
    return end == CurveEnd::start ? CurveEnd::end : CurveEnd::start;
}

/// From an end of the segment to the one of its curve, or back.
CurveEnd translated(const PolylineShape& polyline, std::size_t segment, CurveEnd end) {
    return runsAgainst(polyline, segment) ? other(end) : end;
}

}  // namespace

std::string spokenSegment(const std::string& polyline, std::size_t segment) {
    return "segment " + std::to_string(segment) + " of " + polyline;
}

FilletSide segmentSide(const std::string& spoken, const PolylineShape& polyline, std::size_t segment) {
    return {.name = spoken, .shape = segmentCurve(polyline, segment)};
}

FilletSide segmentSide(const std::string& spoken, const PolylineShape& polyline, std::size_t segment, CurveEnd moves) {
    FilletSide side = segmentSide(spoken, polyline, segment);
    side.moves = translated(polyline, segment, moves);
    return side;
}

CutSegment cutSegment(const std::string& spoken, const PolylineShape& polyline, std::size_t segment, const Shape& curve,
                      CurveEnd movedEnd) {
    if (lengthOf(curve) <= kLeastPart * lengthOf(segmentCurve(polyline, segment)))
        throw EditError("the fillet would leave nothing of " + spoken + "; choose a smaller radius");
    CutSegment cut{.moved = translated(polyline, segment, movedEnd),
                   .point = (movedEnd == CurveEnd::start ? startPoint(curve) : endPoint(curve)).value()};
    if (const auto* arc = std::get_if<ArcShape>(&curve))
        cut.bulge = (runsAgainst(polyline, segment) ? -1.0 : 1.0) * bulgeOfAngle(arc->endAngle - arc->startAngle);
    return cut;
}

double bulgeFrom(const ArcShape& arc, Vec2 start) {
    const bool runsOn = distance(*startPoint(arc), start) < distance(*endPoint(arc), start);
    return (runsOn ? 1.0 : -1.0) * bulgeOfAngle(arc.endAngle - arc.startAngle);
}

}  // namespace holdfast::editing
