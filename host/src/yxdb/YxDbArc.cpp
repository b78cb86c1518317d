#include <yxdb/YxDbArc.h>

#include <cmath>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxbase/PlaneFrame.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

using holdfast::AngleRange;

YX_IMPLEMENT_CLASS(YxDbArc, YxDbCurve)

YxGePoint3d YxDbArc::center() const {
    holdfast::accessorCall(*this, "YxDbArc::center");
    return m_centre;
}

double YxDbArc::radius() const {
    holdfast::accessorCall(*this, "YxDbArc::radius");
    return m_radius;
}

double YxDbArc::startAngle() const {
    holdfast::accessorCall(*this, "YxDbArc::startAngle");
    return m_startAngle;
}

double YxDbArc::endAngle() const {
    holdfast::accessorCall(*this, "YxDbArc::endAngle");
    return m_endAngle;
}

YxGeVector3d YxDbArc::normal() const {
    holdfast::accessorCall(*this, "YxDbArc::normal");
    return m_normal;
}

Yxrt::ErrorStatus YxDbArc::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    const auto similar = holdfast::similarity(matrix);
    if (!similar)
        return Yxrt::eNotApplicable;
    const YxGePoint3d centre = matrix * m_centre;
    const double radius = m_radius * similar->scale;
    if (!holdfast::isFinite(centre) || !std::isfinite(radius))
        return Yxrt::eInvalidInput;
    const holdfast::PlaneFrame image = holdfast::imageOf(holdfast::planeFrame(m_normal), matrix);
    turnAngles(holdfast::angleShift(image));
    m_normal = image.z;
    m_centre = centre;
    m_radius = radius;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbArc::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    return holdfast::answer(pointAt(m_startAngle), point);
}

Yxrt::ErrorStatus YxDbArc::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    return holdfast::answer(pointAt(m_endAngle), point);
}

Yxrt::ErrorStatus YxDbArc::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const AngleRange range(m_startAngle, m_endAngle);
    const double angle = range.nearest(holdfast::planeFrame(m_normal).angleOf(point - m_centre));
    const YxGePoint3d nearest = pointAt(angle);
    if (nearest.isEqualTo(pointAt(range.start())))
        return holdfast::answerOnCurve(range.start(), nearest, point, param);
    const bool isEnd = nearest.isEqualTo(pointAt(range.end()));
    return holdfast::answerOnCurve(isEnd ? range.end() : angle, nearest, point, param);
}

Yxrt::ErrorStatus YxDbArc::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    const auto angle = AngleRange(m_startAngle, m_endAngle).inside(param);
    if (!angle)
        return Yxrt::eOutOfRange;
    return holdfast::answer(pointAt(*angle), point);
}

Yxrt::ErrorStatus YxDbArc::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    const holdfast::PlaneFrame old = holdfast::planeFrame(m_normal);
    const double sweep = AngleRange(m_startAngle, m_endAngle).sweep();
    m_normal = -m_normal;
    m_startAngle = holdfast::withinTurn(holdfast::planeFrame(m_normal).angleOf(old.directionAt(m_endAngle)));
    m_endAngle = m_startAngle + sweep;
    return Yxrt::eOk;
}

YxRxObject* YxDbArc::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbArc(*this); });
}

YxGePoint3d YxDbArc::pointAt(double angle) const {
    return m_centre + holdfast::planeFrame(m_normal).directionAt(angle) * m_radius;
}

/// Leaves the angles as they are, to the last digit, unless they have to change.
void YxDbArc::turnAngles(double shift) {
    if (shift == 0.0)
        return;
    const double sweep = AngleRange(m_startAngle, m_endAngle).sweep();
    m_startAngle = holdfast::shiftedAngle(m_startAngle, shift);
    m_endAngle = m_startAngle + sweep;
}
