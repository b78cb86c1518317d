#include <YxDbConstraints/YxGeomConstraint.h>

#include <unordered_set>

#include <YxDbConstraints/YxConstrainedGeometry.h>

#include "host/src/HostCall.h"
#include "host/src/yxbase/ImplementClass.h"

using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxGeomConstraint, YxGraphNode)
YX_IMPLEMENT_CLASS(YxCompositeConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxG2SmoothConstraint, YxCompositeConstraint)
YX_IMPLEMENT_CLASS(YxPointCoincidenceConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxPointCurveConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxFixedConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxHorizontalConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxVerticalConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxParallelConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxPerpendicularConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxCollinearConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxTangentConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxConcentricConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxEqualLengthConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxEqualRadiusConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxSymmetricConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxMidPointConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxInternalConstraint, YxGeomConstraint)
YX_IMPLEMENT_CLASS(YxDimensionConstraint, YxGeomConstraint)

bool YxGeomConstraint::isInternal() const {
    return m_internal;
}

bool YxGeomConstraint::isImplied() const {
    return m_implied;
}

void YxGeomConstraint::setIsImplied(bool implied) {
    if (!hostCall("YxGeomConstraint::setIsImplied", this, implied))
        m_implied = implied;
}

YxCompositeConstraint* YxGeomConstraint::getOwningCompositeConstraint() const {
    return hostCall("YxGeomConstraint::getOwningCompositeConstraint", this) ? nullptr : m_owner;
}

void YxGeomConstraint::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    geometries.setLogicalLength(0);
    if (hostCall("YxGeomConstraint::getConstrainedGeometries", this))
        return;
    for (YxConstrainedGeometry* geometry : m_geometries)
        geometries.append(geometry);
}

void YxCompositeConstraint::getOwnedConstraints(YxArray<YxGeomConstraint*>& constraints) const {
    constraints.setLogicalLength(0);
    if (hostCall("YxCompositeConstraint::getOwnedConstraints", this))
        return;
    for (YxGeomConstraint* member : m_members)
        constraints.append(member);
}

void YxCompositeConstraint::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    YxGeomConstraint::getConstrainedGeometries(geometries);
    std::unordered_set<const YxConstrainedGeometry*> seen(geometries.begin(), geometries.end());
    YxArray<YxConstrainedGeometry*> ofMember;
    for (const YxGeomConstraint* member : m_members) {
        member->getConstrainedGeometries(ofMember);
        for (YxConstrainedGeometry* geometry : ofMember)
            if (seen.insert(geometry).second)
                geometries.append(geometry);
    }
}

YxDimensionConstraint::Kind YxDimensionConstraint::kind() const {
    return m_kind;
}

double YxDimensionConstraint::value() const {
    return m_value;
}

bool YxDimensionConstraint::isDriving() const {
    return m_driving;
}
