#pragma once

#include <functional>
#include <string>

#include "commands/extend/ConstraintExtendCmdCenter.h"
#include "host/model/entities/EntityAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast::module {

constexpr int kStartMoves = 1;
constexpr int kEndMoves = 2;

/// Extends entity a: the centre before, the change in place, the centre after. Returns how many it deleted.
inline int extendTo(Scene& scene, const YxGePoint3d& point, int end, const std::function<void()>& change = nullptr) {
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), point, end);
    const auto open = YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForWrite, false);
    if (change != nullptr)
        change();
    return centre.deleteConstraint(static_cast<YxDbEntity*>(open.get()));
}

/// What is left after entity a of the scene was extended.
inline std::string leftAfter(const std::string& text, const YxGePoint3d& point, int end) {
    TestScene scene(text);
    extendTo(scene, point, end);
    return scene.constraints();
}

}  // namespace holdfast::module
