#include <YxDbConstraints/YxConstrainedGeometry.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"

using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxGraphNode, YxRxObject)
YX_IMPLEMENT_CLASS(YxConstrainedGeometry, YxGraphNode)
YX_IMPLEMENT_CLASS(YxConstrainedImplicitPoint, YxConstrainedGeometry)
YX_IMPLEMENT_CLASS(YxConstrainedPoint, YxConstrainedGeometry)
YX_IMPLEMENT_CLASS(YxConstrainedCurve, YxConstrainedGeometry)
YX_IMPLEMENT_CLASS(YxConstrainedLine, YxConstrainedCurve)
YX_IMPLEMENT_CLASS(YxConstrainedBoundedLine, YxConstrainedLine)
YX_IMPLEMENT_CLASS(YxConstrainedRay, YxConstrainedLine)
YX_IMPLEMENT_CLASS(YxConstrainedDatumLine, YxConstrainedLine)
YX_IMPLEMENT_CLASS(YxConstrainedCircle, YxConstrainedCurve)
YX_IMPLEMENT_CLASS(YxConstrainedArc, YxConstrainedCircle)
YX_IMPLEMENT_CLASS(YxConstrainedEllipse, YxConstrainedCurve)
YX_IMPLEMENT_CLASS(YxConstrainedBoundedEllipse, YxConstrainedEllipse)
YX_IMPLEMENT_CLASS(YxConstrainedSpline, YxConstrainedCurve)

unsigned int YxGraphNode::nodeId() const {
    hostCall("YxGraphNode::nodeId", this);
    return m_nodeId;
}

void YxConstrainedGeometry::getConnectedConstraints(YxArray<YxGeomConstraint*>& constraints) const {
    const auto fault = hostCall("YxConstrainedGeometry::getConnectedConstraints", this);
    holdfast::answerList(constraints, holdfast::HostAccess::connected(*this), fault);
}

YxDbObjectId YxConstrainedGeometry::geomDependencyId() const {
    const auto fault = hostCall("YxConstrainedGeometry::geomDependencyId", this);
    return fault ? holdfast::answeredId(fault) : holdfast::HostAccess::standsOn(*this);
}

unsigned int YxConstrainedImplicitPoint::constrainedCurveId() const {
    hostCall("YxConstrainedImplicitPoint::constrainedCurveId", this);
    return m_curveId;
}

int YxConstrainedImplicitPoint::pointIndex() const {
    hostCall("YxConstrainedImplicitPoint::pointIndex", this);
    return m_pointIndex;
}

YxDb::ImplicitPointType YxConstrainedImplicitPoint::pointType() const {
    hostCall("YxConstrainedImplicitPoint::pointType", this);
    return m_pointType;
}
