#include "core/EndRules.h"

#include <YxDbConstraints/YxConstrainedGeometry.h>

namespace holdfast::module {
namespace {

const YxConstrainedImplicitPoint* asImplicitPoint(const YxConstrainedGeometry* geometry) {
    if (geometry == nullptr || !geometry->isKindOf(YxConstrainedImplicitPoint::desc()))
        return nullptr;
    return static_cast<const YxConstrainedImplicitPoint*>(geometry);
}

}  // namespace

EndMoves endMoves(const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after) {
    return {.start = !before[0].isEqualTo(after[0]), .end = !before[1].isEqualTo(after[1])};
}

bool areEndPairs(const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after) {
    return before.length() == 2 && after.length() == 2;
}

bool onePointGoes(YxDb::ImplicitPointType point, EndMoves moves) {
    switch (point) {
        case YxDb::kStartImplicit:
            return moves.start;
        case YxDb::kEndImplicit:
            return moves.end;
        default:
            return point == YxDb::kMidImplicit;
    }
}

bool twoPointsGo(YxDb::ImplicitPointType first, YxDb::ImplicitPointType second, EndMoves moves) {
    const auto either = [=](YxDb::ImplicitPointType type) { return first == type || second == type; };
    if (!either(YxDb::kCenterImplicit))
        return true;
    if (either(YxDb::kStartImplicit))
        return moves.start;
    return either(YxDb::kEndImplicit) && moves.end;
}

bool twoPointsGo(const YxArray<YxConstrainedGeometry*>& points, EndMoves moves) {
    if (points.length() != 2)
        return false;
    const YxConstrainedImplicitPoint* first = asImplicitPoint(points.first());
    const YxConstrainedImplicitPoint* second = asImplicitPoint(points.last());
    return first != nullptr && second != nullptr && twoPointsGo(first->pointType(), second->pointType(), moves);
}

}  // namespace holdfast::module
