#pragma once

#include <memory>
#include <string>

#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// How curves a and b look after their FILLET; null: as before.
struct CurveFilletEdit {
    std::unique_ptr<YxDbEntity> first{};
    std::unique_ptr<YxDbEntity> second{};
};

/// Puts the data of an entity into one of the same class that is open for write.
void putInPlace(YxDbEntity& target, const YxDbEntity& data);

/// The whole FILLET of curves a and b, but for the arc. Answers what deleteConstraint answered.
template <class Centre>
int filletCurves(Scene& scene, Centre& centre, const CurveFilletEdit& edit) {
    const auto openFirst = YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForWrite, false);
    const auto openSecond = YxDbObjectIdImpl::openObject(scene.id("b"), YxDb::kForWrite, false);
    auto* first = static_cast<YxDbEntity*>(openFirst.get());
    auto* second = static_cast<YxDbEntity*>(openSecond.get());
    centre.setEntityInfo(first, second);
    if (first != nullptr && edit.first != nullptr)
        putInPlace(*first, *edit.first);
    if (second != nullptr && edit.second != nullptr)
        putInPlace(*second, *edit.second);
    return centre.deleteConstraint();
}

}  // namespace holdfast::module
