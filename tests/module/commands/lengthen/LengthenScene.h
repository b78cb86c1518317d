#pragma once

#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {

/// Constrained curves of every kind that lengthens, none of them of use in the order of its id, and free ones.
inline constexpr const char* kLengthenDrawing =
    "polyline p 0,5 4,5 4,9; line b 0,0 4,0; arc k centre 20,0 radius 5 from 0 to 90; line free 60,0 61,0;"
    "ellipse e centre 40,0 major 4,0 ratio 0.5 from 0 to 90; line a 0,0 0,3; circle c centre 50,0 radius 2;"
    "dependency k; dependency a; dependency p[2]; dependency e; dependency b; dependency c";

inline bool record(ConstraintLengthenCmdCenter& centre, const FeedingScene& scene, const char* name) {
    return centre.addOriCurveInfo(scene.entity<YxDbCurve>(name), scene.id(name));
}

/// What the host's command does to a line between the two calls.
inline void setLine(const FeedingScene& scene, const char* name, const YxGePoint3d& start, const YxGePoint3d& end) {
    const auto opened = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    if (opened)
        EntityAccess::setLine(static_cast<YxDbLine&>(*opened), start, end);
}

}  // namespace holdfast::module
