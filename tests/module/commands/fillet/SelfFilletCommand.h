#pragma once

#include <string>

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// What FILLET does to segments f and g of one polyline, by their start vertices in travel order: `onFirst` and
/// `onSecond` are the arc's ends on them, `corner` is where they meet. `sharp`: a corner without an arc.
struct SelfFilletEdit {
    unsigned int first = 0;
    unsigned int second = 0;
    ConstraintFilletCmdCenter::PolylineTrimMode mode = ConstraintFilletCmdCenter::kNothing;
    bool sharp = false;
    YxGePoint2d onFirst{};
    YxGePoint2d onSecond{};
    YxGePoint2d corner{};
};

/// Polylines with a constraint on every segment and the coincidences at their corners.
inline const std::string kOpen =
    "polyline p 0,0#31 10,0#7 10,10#22 20,10#5 20,0#40; fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]; corners p";
inline const std::string kClosed =
    "polyline p 0,0#31 10,0#7 10,10#22 0,10#5 -5,5#40 closed; fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]; "
    "fixed p[5]; corners p";

/// Edits the polyline in place, which is open for write.
void filletVertices(YxDbPolyline& polyline, const SelfFilletEdit& edit);

/// The whole FILLET within polyline `name`. Answers what deleteConstraint answered.
template <class Centre>
int selfFillet(Scene& scene, const std::string& name, Centre& centre, const SelfFilletEdit& edit) {
    const YxSmartPtr<YxDbObject> open = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    if (open.isNull())
        return 0;
    auto& polyline = static_cast<YxDbPolyline&>(*open);
    centre.setSelfPolyLineDate(&polyline, edit.first, edit.second, edit.mode, edit.sharp);
    filletVertices(polyline, edit);
    centre.setSelfPolyLineConstraint(&polyline);
    return centre.deleteConstraint();
}

}  // namespace holdfast::module
