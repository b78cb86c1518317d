#include "core/CurveEnds.h"

#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbPolyline.h>

namespace holdfast::module {

EndPoints endPoints(const YxDbCurve& curve) {
    EndPoints ends;
    curve.getStartPoint(ends.start);
    curve.getEndPoint(ends.end);
    return ends;
}

YxArray<YxGePoint3d> lineEnds(const YxDbLine& line) {
    return endPair(line.startPoint(), line.endPoint());
}

YxArray<YxGePoint3d> curveEnds(const YxDbCurve& curve) {
    const EndPoints ends = endPoints(curve);
    return endPair(ends.start, ends.end);
}

YxArray<YxGePoint3d> segmentEnds(const YxDbPolyline& polyline, unsigned int startIndex, unsigned int endIndex) {
    return endPair(vertexPoint(polyline, startIndex), vertexPoint(polyline, endIndex));
}

YxArray<YxGePoint3d> endPair(const YxGePoint3d& start, const YxGePoint3d& end) {
    YxArray<YxGePoint3d> points(2);
    points.append(start);
    points.append(end);
    return points;
}

YxGePoint3d vertexPoint(const YxDbPolyline& polyline, unsigned int index) {
    YxGePoint3d point;
    polyline.getPointAt(index, point);
    return point;
}

}  // namespace holdfast::module
