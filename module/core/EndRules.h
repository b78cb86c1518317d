#pragma once

#include <YxDbConstraints/YxDbImplicitPointType.h>
#include <yxbase/YxArray.h>
#include <yxbase/YxGePoint3d.h>

class YxConstrainedGeometry;

namespace holdfast::module {

/// Which ends of a curve an edit moved, by the host's tolerance.
struct EndMoves {
    bool start = false;
    bool end = false;
};

/// The ends of a curve before and after an edit, each pair as start and end.
EndMoves endMoves(const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);
/// True when both are a start and an end, and nothing more.
bool areEndPairs(const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);

/// True when a constraint at this one point of a curve goes.
bool onePointGoes(YxDb::ImplicitPointType point, EndMoves moves);
/// True when a constraint between these two points of one arc or ellipse goes. A centre lets the other point decide;
/// without a centre the constraint ties two ends of the curve together, and any cut breaks it.
bool twoPointsGo(YxDb::ImplicitPointType first, YxDb::ImplicitPointType second, EndMoves moves);
/// The same for a list of geometries: false unless it holds exactly two implicit points.
bool twoPointsGo(const YxArray<YxConstrainedGeometry*>& points, EndMoves moves);

}  // namespace holdfast::module
