#include "commands/extend/ConstraintExtendCmdCenter.h"

#include "commands/extend/ExtendedEnd.h"
#include "core/CurveEnds.h"
#include "core/DataProvider.h"
#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>

#include <memory>

using holdfast::module::Collected;
using holdfast::module::ExtendedEnd;
using holdfast::module::GroupSurvey;
using holdfast::module::openAs;
using holdfast::module::Points;

namespace {

/// What one extension is about.
struct Extension {
    GroupSurvey& survey;
    const holdfast::module::Dependencies& dependencies;
    ExtendedEnd moved;
    YxArray<YxGeomConstraint*>& collected;
};

template <class T>
const T* as(const YxDbEntity* entity) {
    return entity != nullptr && entity->isKindOf(T::desc()) ? static_cast<const T*>(entity) : nullptr;
}

void extendLine(const Extension& edit, const YxDbEntity& entity) {
    const Points before = holdfast::module::lineEnds(static_cast<const YxDbLine&>(entity));
    Collected collected(edit.collected);
    holdfast::module::judgeLine(edit.survey, edit.dependencies, before, edit.moved.after(before[0], before[1]),
                                collected);
}

void extendPolyline(const Extension& edit, const YxDbEntity& entity) {
    Collected collected(edit.collected);
    holdfast::module::judgeExtendedSegment(edit.survey, edit.dependencies, static_cast<const YxDbPolyline&>(entity),
                                           edit.moved, collected);
}

void extendRay(const Extension& edit, const YxDbEntity& entity) {
    Collected collected(edit.collected);
    const YxGePoint3d base = static_cast<const YxDbRay&>(entity).basePoint();
    holdfast::module::judgeRay(edit.survey, edit.dependencies, base, edit.moved.newPoint, collected);
}

void extendArc(const Extension& edit, const YxDbEntity& entity) {
    const Points before = holdfast::module::curveEnds(static_cast<const YxDbCurve&>(entity));
    Collected collected(edit.collected);
    holdfast::module::judgeArc(edit.survey, edit.dependencies, before, edit.moved.after(before[0], before[1]),
                               collected);
}

// A closed ellipse keeps everything when the moving end comes back to the opposite one, and loses everything else.
void extendClosedEllipse(const Extension& edit, const YxDbEllipse& ellipse) {
    const Points ends = holdfast::module::curveEnds(ellipse);
    const int code = edit.moved.code;
    if (code != ExtendedEnd::kStart && code != ExtendedEnd::kEnd)
        return;
    const YxGePoint3d& opposite = code == ExtendedEnd::kStart ? ends[1] : ends[0];
    if (edit.moved.newPoint.isEqualTo(opposite))
        return;
    YxArray<YxGeomConstraint*> all;
    edit.survey.addConstraintsOnEntity(ellipse.objectId(), all);
    edit.collected.append(all);
}

void extendEllipse(const Extension& edit, const YxDbEntity& entity) {
    const auto& ellipse = static_cast<const YxDbEllipse&>(entity);
    if (ellipse.isClosed())
        extendClosedEllipse(edit, ellipse);
    else
        extendArc(edit, entity);
}

void extendSpline(const Extension& edit, const YxDbEntity& entity) {
    Collected collected(edit.collected);
    holdfast::module::judgeExtendedSpline(edit.survey, edit.dependencies, static_cast<const YxDbSpline&>(entity),
                                          edit.moved, collected);
}

struct ClassRule {
    YxRxClass* (*entityClass)();
    void (*judge)(const Extension& edit, const YxDbEntity& entity);
};

// The first class that matches wins; of any other class nothing is collected.
// clang-format off
constexpr ClassRule kClassRules[] = {
    {YxDbLine::desc,     extendLine},
    {YxDbPolyline::desc, extendPolyline},
    {YxDbRay::desc,      extendRay},
    {YxDbArc::desc,      extendArc},
    {YxDbEllipse::desc,  extendEllipse},
    {YxDbSpline::desc,   extendSpline},
};
// clang-format on

std::unique_ptr<YxDbSpline> snapshotOf(const YxDbSpline& spline) {
    std::unique_ptr<YxRxObject> copy(spline.clone());
    if (copy == nullptr || !copy->isKindOf(YxDbSpline::desc()))
        return nullptr;
    return std::unique_ptr<YxDbSpline>(static_cast<YxDbSpline*>(copy.release()));
}

const ClassRule* ruleOf(const YxDbEntity& entity) {
    for (const ClassRule& rule : kClassRules) {
        if (entity.isKindOf(rule.entityClass()))
            return &rule;
    }
    return nullptr;
}

}  // namespace

ConstraintExtendCmdCenter::~ConstraintExtendCmdCenter() {
    delete m_splineSnapshot;
    m_splineSnapshot = nullptr;
}

void ConstraintExtendCmdCenter::setDeleteConstraint(const YxDbObjectId& entityId, const YxGePoint3d& newEndPoint,
                                                    int extendedEnd) {
    const YxDbConstraintDataProviderLv* provider = holdfast::module::runningDataProvider();
    if (provider == nullptr)
        return;
    m_groupId = provider->getAssocCons2DGroup(entityId);
    if (!m_groupId.isValid())
        return;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId);
    if (group.isNull())
        return;
    const auto entity = openAs<YxDbEntity>(entityId);
    YxArray<YxDbAssocGeomDependency*> dependencies;
    getGeomPersistentReactors(entity.get(), dependencies);
    if (dependencies.isEmpty())
        return;
    GroupSurvey survey(*group);
    if (!survey.hasConstraintsOnEntity(entityId))
        return;
    keepSnapshot(*entity);
    if (const ClassRule* rule = ruleOf(*entity))
        rule->judge({.survey = survey,
                     .dependencies = dependencies,
                     .moved = {.newPoint = newEndPoint, .code = extendedEnd},
                     .collected = m_deleteConstraints},
                    *entity);
}

void ConstraintExtendCmdCenter::keepSnapshot(const YxDbEntity& entity) {
    const YxDbSpline* spline = as<YxDbSpline>(&entity);
    if (spline == nullptr)
        return;
    YxDbSpline* snapshot = snapshotOf(*spline).release();  // the centre's, until its destructor
    delete m_splineSnapshot;
    m_splineSnapshot = snapshot;
}

int ConstraintExtendCmdCenter::deleteConstraint(const YxDbEntity* editedEntity) {
    const YxDbSpline* edited = as<YxDbSpline>(editedEntity);
    if (m_splineSnapshot != nullptr && edited != nullptr &&
        edited->numControlPoints() != m_splineSnapshot->numControlPoints())
        collectAllOf(edited->objectId());
    return LvEditDeleteConstraint::deleteConstraint();
}

void ConstraintExtendCmdCenter::collectAllOf(const YxDbObjectId& splineId) {
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId);
    YxArray<YxGeomConstraint*> all;
    getConstraintsTypeFromEntityId(group.get(), splineId, all);
    if (!all.isEmpty())
        m_deleteConstraints = all;
}

void ConstraintExtendCmdCenter::judgePolyLineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                              const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                              const YxDbEntity* entity, const YxGePoint3d& newEndPoint,
                                                              int extendedEnd) {
    const YxDbPolyline* polyline = as<YxDbPolyline>(entity);
    if (group == nullptr || polyline == nullptr || dependencies.isEmpty())
        return;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    holdfast::module::judgeExtendedSegment(survey, dependencies, *polyline,
                                           {.newPoint = newEndPoint, .code = extendedEnd}, collected);
}

void ConstraintExtendCmdCenter::judgeSplineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                            const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                            const YxDbEntity* entity, const YxGePoint3d& newEndPoint,
                                                            int extendedEnd) {
    const YxDbSpline* spline = as<YxDbSpline>(entity);
    if (group == nullptr || spline == nullptr)
        return;
    GroupSurvey survey(*group);
    Collected collected(m_deleteConstraints);
    holdfast::module::judgeExtendedSpline(survey, dependencies, *spline, {.newPoint = newEndPoint, .code = extendedEnd},
                                          collected);
}

void ConstraintExtendCmdCenter::getEditAfterPoints(const YxGePoint3d& startPoint, const YxGePoint3d& endPoint,
                                                   const YxGePoint3d& newEndPoint, int extendedEnd,
                                                   YxArray<YxGePoint3d>& afterPoints) {
    const ExtendedEnd moved{.newPoint = newEndPoint, .code = extendedEnd};
    afterPoints.append(moved.after(startPoint, endPoint));
}
