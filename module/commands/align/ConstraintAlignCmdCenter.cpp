#include "commands/align/ConstraintAlignCmdCenter.h"

#include "core/OnceList.h"
#include "evaluation/EntityOpening.h"
#include "evaluation/EvaluationHeader.h"

using namespace holdfast::module;

namespace {

bool keepsShapes(const YxGeMatrix3d& transform) {
    return transform.isUniScaledOrtho(YxGeContext::gTol) && !transform.isSingular(YxGeContext::gTol);
}

/// A copy of each entity as it stands goes to the header, under its id. An entity that cannot be copied has no entry.
void recordPreEditCopies(AssocConstraintHeader& header, const YxArray<YxDbObjectId>& ids) {
    header.preEditEntities.clear();
    for (const YxDbObjectId& id : ids) {
        const auto entity = openEntity(id, YxDb::kForRead);
        YxDbEntity* copy = entity ? copyOf(*entity) : nullptr;
        if (copy == nullptr)
            continue;
        header.adopt(copy);
        header.preEditEntities[id] = copy;
    }
}

}  // namespace

ConstraintAlignCmdCenter::~ConstraintAlignCmdCenter() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts pass it by value
void ConstraintAlignCmdCenter::seperateObjectes(YxArray<YxDbObjectId> objects) {
    for (const YxDbObjectId& id : objects)
        appendGrowing(LvEvaDataConverter::hasAssocConstraint(id) ? assocObjs : freeObjs, id);
}

void ConstraintAlignCmdCenter::updateCenterMat(YxGeMatrix3d transform) {
    centerMat.preMultBy(transform);
}

YxArray<YxDbObjectId> ConstraintAlignCmdCenter::getAssocObjs() const {
    return assocObjs;
}

// KEEP: last to first, again at each call (AlignFreeObjects.MoveFromTheLastToTheFirst).
void ConstraintAlignCmdCenter::moveFreeObjects() {
    for (int i = freeObjs.length() - 1; i >= 0; --i) {
        const auto entity = openEntity(freeObjs[i], YxDb::kForWrite);
        if (entity)
            entity->transformBy(centerMat);
    }
}

void ConstraintAlignCmdCenter::addDataToWork() {
    if (assocObjs.isEmpty() || !keepsShapes(centerMat))
        return;
    moveFreeObjects();
    const auto [group, header] = findHeaderOf(assocObjs.first());
    if (header == nullptr)
        return;
    setEditKind(*header, EditKind::align);
    header->editedObjectIds = assocObjs;
    if (!ensureConverter(*header, kAlignEditor))
        return;
    recordPreEditCopies(*header, assocObjs);
    header->converter->resetData();
    header->converter->setObjectIds(assocObjs);
    header->converter->setTransform(centerMat);
    header->converter->collectInfo();
    markChanged(group);
}
