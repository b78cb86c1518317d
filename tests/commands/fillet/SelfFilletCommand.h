#pragma once

#include <string>

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "host/model/Scene.h"
#include "host/src/EntityAccess.h"

namespace holdfast {

/// What FILLET does to segments f and g of one polyline, by their start vertices in travel order: `onFirst` and
/// `onSecond` are the arc's ends on them, `corner` is where they meet. `sharp`: a corner without an arc.
struct SelfFilletEdit {
    unsigned int first = 0;
    unsigned int second = 0;
    ConstraintFilletCmdCenter::PolylineTrimMode mode = ConstraintFilletCmdCenter::kNothing;
    bool sharp = false;
    YxGePoint2d onFirst;
    YxGePoint2d onSecond;
    YxGePoint2d corner;
};

/// Edits the polyline in place, which is open for write.
void filletVertices(YxDbPolyline& polyline, const SelfFilletEdit& edit);

/// The whole FILLET within polyline `name`. Answers what deleteConstraint answered.
int selfFillet(Scene& scene, const std::string& name, ConstraintFilletCmdCenter& centre, const SelfFilletEdit& edit);

}  // namespace holdfast
