#include "commands/extend/ExtendedEnd.h"

#include "core/CurveEnds.h"
#include "core/SegmentFinder.h"
#include "core/SplineIndices.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbSpline.h>

namespace holdfast::module {
namespace {

struct ExtendedSegment {
    const YxDbAssocGeomDependency* dependency = nullptr;
    SegmentEnds ends;
};

bool liesAtEnd(SegmentEnds segment, unsigned int vertexCount, int code) {
    return (code == ExtendedEnd::kStart && segment.start == 0) ||
           (code == ExtendedEnd::kEnd && segment.end == static_cast<int>(vertexCount) - 1);
}

ExtendedSegment segmentAtEnd(const GroupSurvey& survey, const Dependencies& dependencies, const YxDbPolyline& polyline,
                             int code) {
    SegmentFinder finder(&polyline);
    for (const YxDbAssocGeomDependency* dependency : dependencies) {
        SegmentEnds ends;
        if (dependency == nullptr || !finder.find(dependency->objectId(), ends) ||
            !liesAtEnd(ends, polyline.numVerts(), code))
            continue;
        if (survey.geometryOn(dependency) != nullptr)
            return {.dependency = dependency, .ends = ends};
    }
    return {};
}

}  // namespace

Points ExtendedEnd::after(const YxGePoint3d& start, const YxGePoint3d& end) const {
    if (code == kStart)
        return endPair(newPoint, end);
    if (code == kEnd)
        return endPair(start, newPoint);
    return Points();
}

void judgeExtendedSegment(GroupSurvey& survey, const Dependencies& dependencies, const YxDbPolyline& polyline,
                          const ExtendedEnd& moved, Collected& collected) {
    const ExtendedSegment segment = segmentAtEnd(survey, dependencies, polyline, moved.code);
    if (segment.dependency == nullptr)
        return;
    const Points before = segmentEnds(polyline, static_cast<unsigned int>(segment.ends.start),
                                      static_cast<unsigned int>(segment.ends.end));
    judgeSegment(survey, segment.dependency, before, moved.after(before[0], before[1]), collected);
}

void judgeExtendedSpline(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& spline,
                         const ExtendedEnd& moved, Collected& collected) {
    const int extended = moved.code == ExtendedEnd::kEnd ? spline.numControlPoints() - 1 : 0;
    YxGePoint3d controlPoint;
    spline.getControlPointAt(extended, controlPoint);
    if (controlPoint.isEqualTo(moved.newPoint))
        return;
    YxArray<int> indices;
    collectWhere(survey, dependencies, collected, [&](const auto& dependency, const auto& constraint) {
        listControlPoints(survey, dependency, constraint, indices);
        return indices.contains(extended);
    });
}

}  // namespace holdfast::module
