#include "core/SplineIndices.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

namespace holdfast::module {
namespace {

int indexOf(const YxConstrainedGeometry* implicitPoint) {
    return static_cast<const YxConstrainedImplicitPoint*>(implicitPoint)->pointIndex();
}

// Every coincidence of the joint, and of its points those on this spline.
void listJointPoints(const GroupSurvey& survey, const YxDbAssocGeomDependency& dependency,
                     const YxCompositeConstraint& joint, YxArray<int>& indices) {
    YxArray<YxGeomConstraint*> owned;
    joint.getOwnedConstraints(owned);
    YxArray<YxConstrainedGeometry*> geometries;
    for (const YxGeomConstraint* member : owned) {
        if (member == nullptr || !member->isKindOf(YxPointCoincidenceConstraint::desc()))
            continue;
        member->getConstrainedGeometries(geometries);
        for (const YxConstrainedGeometry* geometry : geometries) {
            if (survey.isPointOn(geometry, dependency))
                appendGrowing(indices, indexOf(geometry));
        }
    }
}

}  // namespace

void listControlPoints(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency,
                       const YxGeomConstraint& constraint, YxArray<int>& indices) {
    indices.setLogicalLength(0);
    if (constraint.isKindOf(YxG2SmoothConstraint::desc())) {
        if (constraint.isKindOf(YxCompositeConstraint::desc()))
            listJointPoints(survey, dependency, static_cast<const YxCompositeConstraint&>(constraint), indices);
        return;
    }
    YxArray<YxConstrainedGeometry*> points;
    survey.implicitPointsOn(dependency, constraint, points);
    for (const YxConstrainedGeometry* point : points)
        appendGrowing(indices, indexOf(point));
}

}  // namespace holdfast::module
