#pragma once

#include <string>

#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// The end of one open polyline in a fillet with something else: segment `segment` (by its start vertex) ends or begins
/// at `point` from then on, and what lies behind or before it is cut away.
struct PolylineCutBack {
    unsigned int segment = 0;
    bool dropBefore = false;  ///< the filleted end is the start of what stays
    YxGePoint2d point{};
};

/// Moves the cut vertex to the point and removes what lies behind it; vertices that lie before it stay for now.
void cutBack(YxDbPolyline& polyline, const PolylineCutBack& cut);
/// Removes the vertices that a cut from the start left for the centre.
void removeLeading(YxDbPolyline& polyline, const PolylineCutBack& cut);

/// The first polyline from its filleted end, the second from there on: the first one's identifiers stay with its
/// vertices, the second one's become 0. Ends at one point become one vertex, else an arc lies between.
PolylineData joinedPolyline(PolylineData first, bool turnFirst, PolylineData second, bool turnSecond);

/// The whole FILLET of polyline `name` with another curve. Answers what deleteConstraint answered.
template <class Centre>
int filletWithCurve(Scene& scene, const std::string& name, Centre& centre, const PolylineCutBack& cut, bool turnRound) {
    const auto open = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    if (open.isNull())
        return 0;
    auto& polyline = static_cast<YxDbPolyline&>(*open);
    centre.setOnePolyLineDate(&polyline);
    cutBack(polyline, cut);
    centre.setOnePolyLineConstraint(&polyline, cut.dropBefore, cut.segment, {});
    removeLeading(polyline, cut);
    if (turnRound) {
        polyline.reverseCurve();
        centre.setReversePolyLineConstraint(&polyline);
    }
    return centre.deleteConstraint();
}

/// The whole FILLET of polylines q and r, which makes q of both; r stays, without its dependencies, for the host to
/// erase. Answers what deleteConstraint answered.
template <class Centre>
int filletTwoPolylines(Scene& scene, Centre& centre, const PolylineCutBack& firstCut,
                       const PolylineCutBack& secondCut) {
    const auto openFirst = YxDbObjectIdImpl::openObject(scene.id("q"), YxDb::kForWrite, false);
    const auto openSecond = YxDbObjectIdImpl::openObject(scene.id("r"), YxDb::kForWrite, false);
    if (openFirst.isNull() || openSecond.isNull())
        return 0;
    auto& first = static_cast<YxDbPolyline&>(*openFirst);
    auto& second = static_cast<YxDbPolyline&>(*openSecond);
    centre.setTwoPolyLineDate(&first, &second);
    cutBack(first, firstCut);
    cutBack(second, secondCut);
    centre.setFirstPolyLineConstraint(&first, firstCut.dropBefore, firstCut.segment, {});
    centre.setSecondPolyLineConstraint(&second, secondCut.dropBefore, secondCut.segment, {});
    removeLeading(first, firstCut);
    removeLeading(second, secondCut);
    centre.setTwoPolyLineCloneDate(&first, &second);
    EntityAccess::setPolyline(first, joinedPolyline(EntityAccess::polyline(first), firstCut.dropBefore,
                                                    EntityAccess::polyline(second), !secondCut.dropBefore));
    centre.setTwoPolyLineConstraint(&first, firstCut.dropBefore, &second, secondCut.dropBefore);
    return centre.deleteConstraint();
}

}  // namespace holdfast::module
