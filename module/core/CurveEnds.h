#pragma once

#include <yxbase/YxArray.h>
#include <yxbase/YxGePoint3d.h>

class YxDbCurve;
class YxDbLine;
class YxDbPolyline;

namespace holdfast::module {

// The start and end of a curve, as the rules take them. A point that cannot be read is the origin.

struct EndPoints {
    YxGePoint3d start;
    YxGePoint3d end;
};

EndPoints endPoints(const YxDbCurve& curve);

YxArray<YxGePoint3d> lineEnds(const YxDbLine& line);
YxArray<YxGePoint3d> curveEnds(const YxDbCurve& curve);
/// Two vertices of a polyline.
YxArray<YxGePoint3d> segmentEnds(const YxDbPolyline& polyline, unsigned int startIndex, unsigned int endIndex);
YxArray<YxGePoint3d> endPair(const YxGePoint3d& start, const YxGePoint3d& end);

YxGePoint3d vertexPoint(const YxDbPolyline& polyline, unsigned int index);

}  // namespace holdfast::module
