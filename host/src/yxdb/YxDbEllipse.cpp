#include <yxdb/YxDbEllipse.h>

#include <cmath>
#include <numbers>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxbase/PlaneFrame.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/NearestParam.h"
#include "host/src/yxdb/curves/Similarity.h"

using holdfast::AngleRange;

YX_IMPLEMENT_CLASS(YxDbEllipse, YxDbCurve)

YxGePoint3d YxDbEllipse::center() const {
    holdfast::accessorCall(*this, "YxDbEllipse::center");
    return m_centre;
}

YxGeVector3d YxDbEllipse::majorAxis() const {
    holdfast::accessorCall(*this, "YxDbEllipse::majorAxis");
    return m_major;
}

YxGeVector3d YxDbEllipse::minorAxis() const {
    holdfast::accessorCall(*this, "YxDbEllipse::minorAxis");
    return minor();
}

double YxDbEllipse::radiusRatio() const {
    holdfast::accessorCall(*this, "YxDbEllipse::radiusRatio");
    return m_ratio;
}

double YxDbEllipse::startAngle() const {
    holdfast::accessorCall(*this, "YxDbEllipse::startAngle");
    return m_startAngle;
}

double YxDbEllipse::endAngle() const {
    holdfast::accessorCall(*this, "YxDbEllipse::endAngle");
    return m_endAngle;
}

Yxrt::ErrorStatus YxDbEllipse::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    const YxGePoint3d centre = matrix * m_centre;
    const YxGeVector3d major = matrix * m_major;
    if (!holdfast::isFinite(centre) || !holdfast::isFinite(YxGePoint3d::kOrigin + major))
        return Yxrt::eInvalidInput;
    const holdfast::PlaneFrame image = holdfast::imageOf(holdfast::planeFrame(m_normal, m_major), matrix);
    m_normal = image.z;
    m_centre = centre;
    m_major = major;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbEllipse::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    return holdfast::answer(pointAt(m_startAngle), point);
}

Yxrt::ErrorStatus YxDbEllipse::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    return holdfast::answer(pointAt(m_endAngle), point);
}

Yxrt::ErrorStatus YxDbEllipse::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const AngleRange range(m_startAngle, m_endAngle);
    const double angle = nearestAngle(range.start(), range.end(), point);
    const YxGePoint3d nearest = pointAt(angle);
    if (nearest.isEqualTo(pointAt(range.start())))
        return holdfast::answerOnCurve(range.start(), nearest, point, param);
    const bool isEnd = nearest.isEqualTo(pointAt(range.end()));
    return holdfast::answerOnCurve(isEnd ? range.end() : angle, nearest, point, param);
}

Yxrt::ErrorStatus YxDbEllipse::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    const auto angle = AngleRange(m_startAngle, m_endAngle).inside(param);
    if (!angle)
        return Yxrt::eOutOfRange;
    return holdfast::answer(pointAt(*angle), point);
}

bool YxDbEllipse::isClosed() const {
    return !holdfast::entityCall(*this, "YxDbCurve::isClosed") && AngleRange(m_startAngle, m_endAngle).isFullTurn();
}

Yxrt::ErrorStatus YxDbEllipse::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    const double sweep = AngleRange(m_startAngle, m_endAngle).sweep();
    m_normal = -m_normal;
    m_startAngle = holdfast::withinTurn(-m_endAngle);
    m_endAngle = m_startAngle + sweep;
    return Yxrt::eOk;
}

YxRxObject* YxDbEllipse::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbEllipse(*this); });
}

YxGeVector3d YxDbEllipse::minor() const {
    return m_normal.crossProduct(m_major) * m_ratio;
}

YxGePoint3d YxDbEllipse::pointAt(double angle) const {
    return m_centre + m_major * std::cos(angle) + minor() * std::sin(angle);
}

/// In pieces of up to a quarter turn. The tangents at the ends of a piece meet at the middle control point, whose
/// weight is the cosine of half the angle; the tangent of a quarter of the angle runs evenly along the Bezier curve.
double YxDbEllipse::nearestAngle(double start, double end, const YxGePoint3d& point) const {
    const int pieces = static_cast<int>(std::ceil((end - start) / (std::numbers::pi / 2.0)));
    const double half = (end - start) / pieces / 2.0;
    const double tangent = std::tan(half / 2.0);
    const YxGeVector3d minorAxis = minor();
    holdfast::NearestParam nearest(point);
    for (int i = 0; i < pieces; ++i) {
        const double middle = start + (2 * i + 1) * half;
        const YxGePoint3d first = pointAt(middle - half);
        const YxGePoint3d last = pointAt(middle + half);
        const double w = std::cos(half);
        const YxGeVector3d corner =
            (m_centre - YxGePoint3d::kOrigin) * w + m_major * std::cos(middle) + minorAxis * std::sin(middle);
        nearest.search(
            {.control = {{first.x, first.y, first.z, 1.0},
                         {corner.x, corner.y, corner.z, w},
                         {last.x, last.y, last.z, 1.0}},
             .paramAt = [=](double place) { return middle + 2.0 * std::atan((2.0 * place - 1.0) * tangent); },
             .sampleAt =
                 [&](double t) {
                     return holdfast::CurveSample{pointAt(t), minorAxis * std::cos(t) - m_major * std::sin(t)};
                 }});
    }
    return nearest.param();
}
