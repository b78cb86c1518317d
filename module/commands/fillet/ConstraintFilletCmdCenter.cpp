#include "commands/fillet/ConstraintFilletCmdCenter.h"

#include "commands/fillet/FilletedCurve.h"
#include "core/DataProvider.h"
#include "core/OpenAs.h"
#include "core/PointCoincidence.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbSpline.h>

#include <memory>
#include <vector>

using holdfast::module::Collected;
using holdfast::module::GroupSurvey;
using holdfast::module::openAs;

namespace {

bool isPolyline(const YxDbEntity* entity) {
    return entity != nullptr && entity->isKindOf(YxDbPolyline::desc());
}

void freeClones(YxArray<YxDbEntity*>& clones) {
    for (YxDbEntity*& clone : clones) {
        delete clone;
        clone = nullptr;
    }
}

}  // namespace

ConstraintFilletCmdCenter::~ConstraintFilletCmdCenter() {
    freeClones(m_entityClones);
}

int ConstraintFilletCmdCenter::deleteConstraint() {
    setDeleteConstraint();
    const int count = LvEditDeleteConstraint::deleteConstraint();
    reset();
    return count;
}

void ConstraintFilletCmdCenter::setEntityInfo(const YxDbEntity* first, const YxDbEntity* second) {
    if (isPolyline(first) || isPolyline(second))
        return;
    m_splineConstraints.setLogicalLength(0);
    for (const YxDbEntity* entity : {first, second}) {
        if (entity == nullptr || !hasAssocConstraint(entity->objectId()))
            continue;
        if (!findGroup(entity->objectId()))
            return;
        m_entities.append(entity);
        keepClone(*entity);
        if (entity->isKindOf(YxDbSpline::desc()))
            setSplineInfo(entity);
    }
}

bool ConstraintFilletCmdCenter::findGroup(const YxDbObjectId& entityId) {
    if (m_groupId.isValid())
        return true;
    const YxDbConstraintDataProviderLv* provider = holdfast::module::runningDataProvider();
    if (provider == nullptr)
        return false;
    m_groupId = provider->getAssocCons2DGroup(entityId);
    return m_groupId.isValid();
}

void ConstraintFilletCmdCenter::keepClone(const YxDbEntity& entity) {
    std::unique_ptr<YxRxObject> copy(entity.clone());
    const bool isEntity = copy != nullptr && copy->isKindOf(YxDbEntity::desc());
    m_entityClones.append(isEntity ? static_cast<YxDbEntity*>(copy.get()) : nullptr);
    if (isEntity)
        (void)copy.release();  // the centre's now: reset() or the destructor frees it
}

void ConstraintFilletCmdCenter::setSplineInfo(const YxDbEntity* spline) {
    if (spline == nullptr || !spline->isKindOf(YxDbSpline::desc()))
        return;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId);
    if (group.isNull())
        return;
    YxArray<YxDbAssocGeomDependency*> dependencies;
    getGeomPersistentReactors(spline, dependencies);
    if (dependencies.isEmpty())
        return;
    GroupSurvey survey(*group);
    m_splineConstraints.append(
        holdfast::module::splineRecord(survey, dependencies, static_cast<const YxDbSpline&>(*spline)));
}

void ConstraintFilletCmdCenter::setDeleteConstraint() {
    if (m_entities.isEmpty() || m_entities.length() != m_entityClones.length())
        return;
    const YxDbConstraintDataProviderLv* provider = holdfast::module::runningDataProvider();
    if (provider == nullptr)
        return;
    const YxDbEntity* first = m_entities.first();
    m_groupId = provider->getAssocCons2DGroup(first != nullptr ? first->objectId() : YxDbObjectId());
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId);
    if (group.isNull())
        return;

    GroupSurvey survey(*group);
    std::vector<YxArray<YxDbAssocGeomDependency*>> dependencies(static_cast<std::size_t>(m_entities.length()));
    for (int k = 0; k < m_entities.length(); ++k) {
        auto& ofEntity = dependencies[static_cast<std::size_t>(k)];
        getGeomPersistentReactors(m_entityClones[k] != nullptr ? m_entities[k] : nullptr, ofEntity);
        survey.expect(ofEntity);
    }
    for (int k = 0; k < m_entities.length(); ++k)
        judgeEntity(survey, k, dependencies[static_cast<std::size_t>(k)]);
}

void ConstraintFilletCmdCenter::judgeEntity(GroupSurvey& survey, int index,
                                            const YxArray<YxDbAssocGeomDependency*>& dependencies) {
    if (dependencies.isEmpty())
        return;
    const YxDbEntity* after = m_entities[index];
    YxArray<YxGeomConstraint*> all;
    survey.addConstraintsOnEntity(after->objectId(), all);
    if (all.isEmpty())
        return;
    holdfast::module::judgeFilletedCurve({.survey = survey,
                                          .before = *m_entityClones[index],
                                          .after = *after,
                                          .dependencies = dependencies,
                                          .allConstraints = all,
                                          .splineRecords = m_splineConstraints,
                                          .collected = m_deleteConstraints});
}

// The interface takes the record by value.
void ConstraintFilletCmdCenter::judgeSplineDeleteConstraint(
    const YxDbAssoc2dConstraintGroup* group,
    SplineConstraint splineInfo,  // NOLINT(performance-unnecessary-value-param)
    const YxDbEntity* spline, const YxArray<YxGeomConstraint*>& constraints) {
    if (group != nullptr && spline != nullptr && !constraints.isEmpty())
        holdfast::module::judgeRecordedSpline(splineInfo, *spline, constraints, m_deleteConstraints);
}

void ConstraintFilletCmdCenter::deleteCoincidenceConstraint(YxDbAssoc2dConstraintGroup* group,
                                                            const YxDbAssocGeomDependency* dependency) {
    if (group == nullptr)
        return;
    GroupSurvey survey(*group);
    holdfast::module::deleteOnePointCoincidence(survey, *group, dependency, Collected(m_deleteConstraints));
}

void ConstraintFilletCmdCenter::reset() {
    m_firstVertexIndex = 0;
    m_secondVertexIndex = 0;
    m_selfFilletFlag = false;
    m_trimMode = kNothing;
    m_firstPolyInfos.setLogicalLength(0);
    m_secondPolyInfos.setLogicalLength(0);
    m_splineConstraints.setLogicalLength(0);
    m_entities.setLogicalLength(0);
    freeClones(m_entityClones);
    m_entityClones.setLogicalLength(0);
}
