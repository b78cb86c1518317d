#include <YxDbConstraints/YxGeomConstraint.h>

#include <unordered_set>

#include <YxDbConstraints/YxConstrainedGeometry.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"

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
    return !hostCall("YxGeomConstraint::isInternal", this) && m_internal;
}

bool YxGeomConstraint::isImplied() const {
    return m_implied;
}

void YxGeomConstraint::setIsImplied(bool implied) {
    if (!hostCall("YxGeomConstraint::setIsImplied", this, implied))
        m_implied = implied;
}

YxCompositeConstraint* YxGeomConstraint::getOwningCompositeConstraint() const {
    const auto fault = hostCall("YxGeomConstraint::getOwningCompositeConstraint", this);
    return fault ? holdfast::answeredObject<YxCompositeConstraint>(fault) : m_owner;
}

void YxGeomConstraint::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    holdfast::answerList(geometries, m_geometries, hostCall("YxGeomConstraint::getConstrainedGeometries", this));
}

void YxCompositeConstraint::getOwnedConstraints(YxArray<YxGeomConstraint*>& constraints) const {
    const auto fault = hostCall("YxCompositeConstraint::getOwnedConstraints", this);
    holdfast::answerList(constraints, holdfast::HostAccess::members(*this), fault);
}

namespace {

/// Those of a constraint and of all that it owns, each once.
void collectGeometries(const YxGeomConstraint& constraint, std::vector<YxConstrainedGeometry*>& all,
                       std::unordered_set<const YxConstrainedGeometry*>& seen) {
    for (YxConstrainedGeometry* geometry : holdfast::HostAccess::geometries(constraint))
        if (seen.insert(geometry).second)
            all.push_back(geometry);
    if (!constraint.isKindOf(YxCompositeConstraint::desc()))
        return;
    const auto& composite = static_cast<const YxCompositeConstraint&>(constraint);
    for (const YxGeomConstraint* member : holdfast::HostAccess::members(composite))
        collectGeometries(*member, all, seen);
}

}  // namespace

void YxCompositeConstraint::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    std::vector<YxConstrainedGeometry*> all;
    std::unordered_set<const YxConstrainedGeometry*> seen;
    collectGeometries(*this, all, seen);
    holdfast::answerList(geometries, all, hostCall("YxGeomConstraint::getConstrainedGeometries", this));
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
