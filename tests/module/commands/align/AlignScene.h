#pragma once

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {

/// Two constrained lines and two free ones; what is handed over is never in the order of the ids.
inline constexpr const char* kAlignDrawing =
    "line b 0,0 4,0; line f1 20,0 21,0; line a 0,0 0,3; line f2 22,0 23,0; dependency a; dependency b";

inline void align(const FeedingScene& scene, std::initializer_list<const char*> objects,
                  const YxGeMatrix3d& transform) {
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids(objects));
    centre.updateCenterMat(transform);
    centre.addDataToWork();
}

}  // namespace holdfast::module
