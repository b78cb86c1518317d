#include "tests/module/core/PlainCurves.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbSpline.h>

namespace holdfast::plain {
namespace {

template <class Goes>
void judge(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, Constraints& collected, Goes goes) {
    for (const YxDbAssocGeomDependency* dependency : dependenciesOf(curve)) {
        for (YxGeomConstraint* constraint : constraintsOn(group, *dependency)) {
            if (goes(*dependency, *constraint))
                addOnce(collected, constraint);
        }
    }
}

}  // namespace

Points endsOf(const YxDbEntity& curve) {
    if (curve.isKindOf(YxDbLine::desc())) {
        const auto& line = static_cast<const YxDbLine&>(curve);
        return {line.startPoint(), line.endPoint()};
    }
    Points ends(2);
    static_cast<const YxDbCurve&>(curve).getStartPoint(ends[0]);
    static_cast<const YxDbCurve&>(curve).getEndPoint(ends[1]);
    return ends;
}

std::vector<YxGePoint3d> controlPointsOf(const YxDbEntity& entity) {
    const auto& spline = static_cast<const YxDbSpline&>(entity);
    std::vector<YxGePoint3d> points(static_cast<std::size_t>(spline.numControlPoints()));
    for (std::size_t k = 0; k < points.size(); ++k)
        spline.getControlPointAt(static_cast<int>(k), points[k]);
    return points;
}

void judgeLine(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, const Points& before,
               const Points& after, Constraints& collected) {
    judge(group, curve, collected, [&](const auto& dependency, const auto& constraint) {
        return lineRule(group, dependency, before, after, constraint);
    });
}

void judgeArc(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, const Points& before,
              const Points& after, Constraints& collected) {
    judge(group, curve, collected, [&](const auto& dependency, const auto& constraint) {
        return arcRule(group, dependency, before, after, constraint);
    });
}

void judgeRay(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& ray, const YxGePoint3d& before,
              const YxGePoint3d& after, Constraints& collected) {
    judge(group, ray, collected, [&](const auto& dependency, const auto& constraint) {
        return !pointsOn(group, dependency, constraint).empty() && !before.isEqualTo(after);
    });
}

std::vector<int> controlPointsAt(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                                 const YxGeomConstraint& constraint) {
    std::vector<int> indices;
    const auto add = [&](const YxGeomConstraint& holder) {
        for (const YxConstrainedImplicitPoint* point : pointsOn(group, dependency, holder))
            indices.push_back(point->pointIndex());
    };
    if (!constraint.isKindOf(YxG2SmoothConstraint::desc())) {
        add(constraint);
        return indices;
    }
    YxArray<YxGeomConstraint*> owned;
    static_cast<const YxCompositeConstraint&>(constraint).getOwnedConstraints(owned);
    for (const YxGeomConstraint* member : owned) {
        if (member->isKindOf(YxPointCoincidenceConstraint::desc()))
            add(*member);
    }
    return indices;
}

}  // namespace holdfast::plain
