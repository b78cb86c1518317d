#include <yxdb/YxDbCircle.h>

#include <cmath>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxbase/PlaneFrame.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbCircle, YxDbCurve)

YxGePoint3d YxDbCircle::center() const {
    holdfast::accessorCall(*this, "YxDbCircle::center");
    return m_centre;
}

double YxDbCircle::radius() const {
    holdfast::accessorCall(*this, "YxDbCircle::radius");
    return m_radius;
}

YxGeVector3d YxDbCircle::normal() const {
    holdfast::accessorCall(*this, "YxDbCircle::normal");
    return m_normal;
}

Yxrt::ErrorStatus YxDbCircle::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    const auto similar = holdfast::similarity(matrix);
    if (!similar)
        return Yxrt::eNotApplicable;
    const YxGePoint3d centre = matrix * m_centre;
    const double radius = m_radius * similar->scale;
    if (!holdfast::isFinite(centre) || !std::isfinite(radius))
        return Yxrt::eInvalidInput;
    m_normal = holdfast::imageOf(holdfast::planeFrame(m_normal), matrix).z;
    m_centre = centre;
    m_radius = radius;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbCircle::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    return holdfast::answer(pointAt(0.0), point);
}

Yxrt::ErrorStatus YxDbCircle::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    return holdfast::answer(pointAt(0.0), point);
}

Yxrt::ErrorStatus YxDbCircle::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const double angle = holdfast::withinTurn(holdfast::planeFrame(m_normal).angleOf(point - m_centre));
    const YxGePoint3d nearest = pointAt(angle);
    return holdfast::answerOnCurve(nearest.isEqualTo(pointAt(0.0)) ? 0.0 : angle, nearest, point, param);
}

Yxrt::ErrorStatus YxDbCircle::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    return holdfast::answer(pointAt(param), point);
}

bool YxDbCircle::isClosed() const {
    return !holdfast::entityCall(*this, "YxDbCurve::isClosed");
}

Yxrt::ErrorStatus YxDbCircle::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    m_normal = -m_normal;
    return Yxrt::eOk;
}

YxRxObject* YxDbCircle::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbCircle(*this); });
}

YxGePoint3d YxDbCircle::pointAt(double angle) const {
    return m_centre + holdfast::planeFrame(m_normal).directionAt(angle) * m_radius;
}
