#include "drag/CYxRotateReleaseConstraint.h"

#include "core/OnceList.h"
#include "core/OpenAs.h"
#include "drag/CurrentAxes.h"
#include "evaluation/EntityOpening.h"
#include "evaluation/EvaluationHeader.h"

#include <YxDbConstraints/YxDbAssocAction.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>

using namespace holdfast::module;

namespace {

YxGeMatrix3d trialRotation(const YxGePoint3d& basePoint) {
    YxGeMatrix3d rotation;
    // KEEP: 90.0 as it stands, although the angle is in radians (RotateBox.TurnsByNinetyRadians).
    rotation.setToRotation(90.0, currentZAxis(), basePoint);
    return rotation;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts pass it by value
bool CYxRotateReleaseConstraint::addDataToBoxEvalute(YxArray<YxDbObjectId> ids, YxGePoint3d basePoint,
                                                     YxArray<YxDbObjectId>& constrainedIds) {
    YxArray<YxDbEntity*> entities;  // closed again when they reach the header, which only keeps them as references
    for (const YxDbObjectId& id : ids) {
        const auto entity = openEntity(id, YxDb::kForRead);
        if (!entity || !LvEvaDataConverter::hasAssocConstraint(id))
            continue;
        appendGrowing(constrainedIds, id);
        appendGrowing(entities, entity.get());
    }
    if (constrainedIds.isEmpty())
        return false;
    AssocConstraintHeader* header = findHeader(findGroup(constrainedIds.first()));
    if (header == nullptr)
        return false;
    setEditKind(*header, EditKind::rotate);
    // KEEP: earlier base points stay in front (RotateBox.AppendsItsBasePointToThoseOfEarlierRotations).
    header->points.append(basePoint);
    header->editedObjectIds = constrainedIds;
    header->entitiesToDraw = entities;
    header->staticTransform = trialRotation(basePoint);
    header->boxFlag = false;
    header->boxMode = 1;
    return true;
}

void CYxRotateReleaseConstraint::analysisRotateBox(YxArray<YxDbObjectId> ids, YxGePoint3d basePoint,
                                                   bool& /*ignoredFlag*/, YxArray<YxDbObjectId>& constrainedIds,
                                                   bool& resultFlag) {
    resultFlag = false;
    if (ids.isEmpty() || !addDataToBoxEvalute(ids, basePoint, constrainedIds))
        return;
    // KEEP: the first given id, constrained or not (RotateAnalysis.EvaluatesTheGroupOfTheFirstGivenObject).
    const auto [group, header] = findHeaderOf(ids.first());
    if (header == nullptr)
        return;
    if (YxDbConstraintDataProviderLv::isSrvInit())
        header->dragActive = true;
    const auto action = openAs<YxDbAssocAction>(group, YxDb::kForWrite);
    if (!action)
        return;
    action->setStatus(kChangedAssocStatus, true, false);
    evaluateNetwork();
    header->rotateEvaluated = true;
}
