#include "tests/module/commands/fillet/PlainCurveFillet.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>

namespace holdfast::plain {
namespace {

template <class T>
const T* as(const YxDbEntity& entity) {
    return entity.isKindOf(T::desc()) ? static_cast<const T*>(&entity) : nullptr;
}

void append(Constraints& list, const Constraints& more) {
    list.insert(list.end(), more.begin(), more.end());
}

}  // namespace

PlainCurveFillet::Before PlainCurveFillet::stateOf(const YxDbEntity& curve) const {
    Before before{.curve = &curve, .isClosed = false, .ends = {}, .controlPoints = {}, .indices = {}};
    if (const auto* ray = as<YxDbRay>(curve))
        before.ends = {ray->basePoint()};
    else if (as<YxDbLine>(curve) != nullptr || as<YxDbArc>(curve) != nullptr || as<YxDbEllipse>(curve) != nullptr)
        before.ends = endsOf(curve);
    if (const auto* ellipse = as<YxDbEllipse>(curve))
        before.isClosed = ellipse->isClosed();
    if (as<YxDbSpline>(curve) == nullptr)
        return before;
    before.controlPoints = controlPointsOf(curve);
    for (const YxDbAssocGeomDependency* dependency : dependenciesOf(curve)) {
        for (const YxGeomConstraint* constraint : constraintsOn(*m_group, *dependency))
            before.indices.push_back(controlPointsAt(*m_group, *dependency, *constraint));
    }
    return before;
}

void PlainCurveFillet::setEntityInfo(const YxDbEntity* first, const YxDbEntity* second) {
    for (const YxDbEntity* curve : {first, second}) {
        const auto dependencies = dependenciesOf(*curve);
        if (dependencies.empty())
            continue;
        if (m_group == nullptr)
            m_group = static_cast<YxDbAssoc2dConstraintGroup*>(HostAccess::peek(dependencies.front()->owningAction()));
        m_before.push_back(stateOf(*curve));
    }
}

void PlainCurveFillet::judge(const Before& before) {
    const YxDbEntity& curve = *before.curve;
    const Constraints all = constraintsOnEntity(*m_group, curve);
    if (as<YxDbLine>(curve) != nullptr)
        judgeLine(*m_group, curve, before.ends, endsOf(curve), m_collected);
    else if (const auto* ray = as<YxDbRay>(curve))
        judgeRay(*m_group, curve, before.ends[0], ray->basePoint(), m_collected);
    else if (as<YxDbArc>(curve) != nullptr)
        judgeArc(*m_group, curve, before.ends, endsOf(curve), m_collected);
    else if (as<YxDbEllipse>(curve) != nullptr)
        judgeEllipse(before, all);
    else if (as<YxDbSpline>(curve) != nullptr && !all.empty())
        judgeSpline(before, all);
}

void PlainCurveFillet::judgeEllipse(const Before& before, const Constraints& all) {
    const auto& ellipse = static_cast<const YxDbEllipse&>(*before.curve);
    if (!before.isClosed)
        judgeArc(*m_group, ellipse, before.ends, endsOf(ellipse), m_collected);
    else if (!ellipse.isClosed())
        append(m_collected, all);
}

void PlainCurveFillet::judgeSpline(const Before& before, const Constraints& all) {
    const auto now = controlPointsOf(*before.curve);
    if (all.size() != before.indices.size() || now.size() != before.controlPoints.size()) {
        append(m_collected, all);
        return;
    }
    for (std::size_t k = 0; k < all.size(); ++k) {
        for (const int index : before.indices[k]) {
            // A point that is no control point has an index without a place, which cannot move.
            const auto at = static_cast<std::size_t>(index);
            if (at < now.size() && !now[at].isEqualTo(before.controlPoints[at]))
                addOnce(m_collected, all[k]);
        }
    }
}

int PlainCurveFillet::deleteConstraint() {
    for (const Before& before : m_before)
        judge(before);
    return deleteAll(m_group, m_collected);
}

}  // namespace holdfast::plain
