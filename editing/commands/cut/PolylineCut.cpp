#include "editing/commands/cut/PolylineCut.h"

#include <limits>

#include "geometry/Segments.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"

namespace holdfast::editing {

namespace {

Vec2 pointOf(const PolylineShape& polyline, CurveEnd end) {
    return end == CurveEnd::start ? polyline.vertices.front() : polyline.vertices.back();
}

void resize(PolylineShape& polyline, std::size_t count) {
    polyline.vertices.resize(count);
    polyline.bulges.resize(count);
    polyline.ids.resize(count);
}

template <class T>
void eraseLeading(std::vector<T>& list, std::size_t count) {
    list.erase(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count));
}

}  // namespace

FilletedSegment filletedSegment(const PolylineSide& polyline, CurveEnd end) {
    const std::size_t last = segmentCount(polyline.shape) - 1;
    if (!polyline.pick) {
        const std::size_t segment = end == CurveEnd::start ? 0 : last;
        return {segment, segmentSide(spokenSegment(polyline.name, segment), polyline.shape, segment, end)};
    }
    const double param = nearestOn(polyline.shape, *polyline.pick).param;
    const std::size_t segment = std::min(static_cast<std::size_t>(std::max(param, 0.0)), last);
    FilletSide side = segmentSide(spokenSegment(polyline.name, segment), polyline.shape, segment);
    side.pick = polyline.pick;
    return {segment, side};
}

CurveEnd endTowards(const PolylineShape& polyline, const Shape& curve) {
    const double fromStart = nearestOn(curve, polyline.vertices.front()).distance;
    return fromStart < nearestOn(curve, polyline.vertices.back()).distance ? CurveEnd::start : CurveEnd::end;
}

FacingEnds facingEnds(const PolylineShape& first, const PolylineShape& second) {
    FacingEnds nearest;
    double least = std::numeric_limits<double>::infinity();
    for (const CurveEnd a : {CurveEnd::end, CurveEnd::start})
        for (const CurveEnd b : {CurveEnd::start, CurveEnd::end})
            if (const double gap = distance(pointOf(first, a), pointOf(second, b)); gap < least) {
                least = gap;
                nearest = {a, b};
            }
    return nearest;
}

PolylineCut cutAt(const PolylineSide& polyline, std::size_t segment, const CutSegment& cut) {
    PolylineCut result{.segment = segment, .moved = cut.moved, .point = cut.point, .shape = polyline.shape};
    const bool cutsStart = cut.moved == CurveEnd::start;
    result.shape.bulges[segment] = cut.bulge;
    result.shape.vertices[cutsStart ? segment : segment + 1] = cut.point;
    if (cutsStart)
        result.leading = segment;
    else
        resize(result.shape, segment + 2);
    return result;
}

PolylineShape withoutLeading(PolylineShape polyline, std::size_t count) {
    eraseLeading(polyline.vertices, count);
    eraseLeading(polyline.bulges, count);
    eraseLeading(polyline.ids, count);
    return polyline;
}

}  // namespace holdfast::editing
