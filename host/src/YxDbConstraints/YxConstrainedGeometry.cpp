#include <YxDbConstraints/YxConstrainedGeometry.h>

#include "host/src/HostAccess.h"
#include "host/src/HostCall.h"
#include "host/src/yxbase/ImplementClass.h"

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
    return m_nodeId;
}

void YxConstrainedGeometry::getConnectedConstraints(YxArray<YxGeomConstraint*>& constraints) const {
    constraints.setLogicalLength(0);
    if (hostCall("YxConstrainedGeometry::getConnectedConstraints", this))
        return;
    if (constraints.physicalLength() < static_cast<int>(m_connected.size()))
        constraints.setPhysicalLength(static_cast<int>(m_connected.size()));
    for (YxGeomConstraint* constraint : m_connected)
        constraints.append(constraint);
}

YxDbObjectId YxConstrainedGeometry::geomDependencyId() const {
    return hostCall("YxConstrainedGeometry::geomDependencyId", this) ? YxDbObjectId() : m_dependency;
}

unsigned int YxConstrainedImplicitPoint::constrainedCurveId() const {
    return m_curveId;
}

int YxConstrainedImplicitPoint::pointIndex() const {
    return m_pointIndex;
}

YxDb::ImplicitPointType YxConstrainedImplicitPoint::pointType() const {
    return m_pointType;
}
