#include "commands/break/ConstraintBreakCmdCenter.h"

#include "commands/break/CurveCut.h"
#include "core/DataProvider.h"
#include "core/OpenAs.h"
#include "core/WritablePiece.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbPolyline.h>

using holdfast::module::GroupSurvey;
using holdfast::module::openAs;

ConstraintBreakCmdCenter::~ConstraintBreakCmdCenter() = default;

void ConstraintBreakCmdCenter::setPtParam(const YxDbEntity* curve, const YxGePoint3d& first,
                                          const YxGePoint3d& second) {
    if (curve == nullptr || !curve->isKindOf(YxDbCurve::desc()))
        return;
    const auto* cut = static_cast<const YxDbCurve*>(curve);
    cut->getParamAtPoint(first, m_startParam);
    cut->getParamAtPoint(second, m_endParam);
    if (m_startParam > m_endParam) {
        // KEEP: exchanged by sums, which may change the last bits (SetPtParam.ExchangesBySumsDownToTheLastBit).
        m_startParam = m_startParam + m_endParam;
        m_endParam = m_startParam - m_endParam;
        m_startParam = m_startParam - m_endParam;
    }
}

void ConstraintBreakCmdCenter::setFirstCurve(const YxDbObjectId& uncutId, const YxDbEntity* firstPiece) {
    const YxDbConstraintDataProviderLv* provider = holdfast::module::runningDataProvider();
    if (provider == nullptr)
        return;
    m_groupId = provider->getAssocCons2DGroup(uncutId);
    if (!m_groupId.isValid())
        return;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId);
    if (group.isNull())
        return;
    const auto uncut = openAs<YxDbEntity>(uncutId);
    if (uncut.isNull() || firstPiece == nullptr)
        return;

    GroupSurvey survey(*group);
    YxArray<YxDbAssocGeomDependency*> dependencies;
    YxArray<YxGeomConstraint*> all;
    getGeomPersistentReactors(uncut.get(), dependencies);
    survey.addConstraintsOnEntity(uncutId, all);
    if (all.isEmpty())
        return;
    removeGeomPersistentReactor(holdfast::module::writablePiece(firstPiece));
    if (firstPiece->isKindOf(YxDbPolyline::desc()))
        return setFirstPoly(group.get(), dependencies, uncut.get(), firstPiece);
    holdfast::module::judgeCut({.survey = survey,
                                .uncut = *uncut,
                                .piece = *firstPiece,
                                .dependencies = dependencies,
                                .allConstraints = all,
                                .collected = m_deleteConstraints});
}

void ConstraintBreakCmdCenter::setSecondCurve(const YxDbEntity* secondPiece) {
    if (secondPiece == nullptr)
        return;
    removeGeomPersistentReactor(holdfast::module::writablePiece(secondPiece));
    if (secondPiece->isKindOf(YxDbPolyline::desc()))
        setSecondPoly(secondPiece);
}

void ConstraintBreakCmdCenter::judgeSplineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                                           const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                                           const YxDbSpline* before, const YxDbSpline* after) {
    if (group == nullptr || before == nullptr || after == nullptr)
        return;
    GroupSurvey survey(*group);
    holdfast::module::Collected collected(m_deleteConstraints);
    holdfast::module::judgeSpline(survey, dependencies, *before, *after, collected);
}
