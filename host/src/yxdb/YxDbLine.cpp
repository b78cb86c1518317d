#include <yxdb/YxDbLine.h>

#include <utility>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbLine, YxDbCurve)

YxGePoint3d YxDbLine::startPoint() const {
    holdfast::accessorCall(*this, "YxDbLine::startPoint");
    return m_start;
}

YxGePoint3d YxDbLine::endPoint() const {
    holdfast::accessorCall(*this, "YxDbLine::endPoint");
    return m_end;
}

Yxrt::ErrorStatus YxDbLine::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    const YxGePoint3d start = matrix * m_start;
    const YxGePoint3d end = matrix * m_end;
    if (!holdfast::isFinite(start) || !holdfast::isFinite(end))
        return Yxrt::eInvalidInput;
    m_start = start;
    m_end = end;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbLine::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    point = m_start;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbLine::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    point = m_end;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbLine::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const YxGeVector3d chord = m_end - m_start;
    const double length = chord.length();
    const double along = (point - m_start).dotProduct(chord.normal());
    const double nearest = holdfast::clampedTo(along, 0.0, length);
    const YxGePoint3d at = length > 0.0 ? m_start + chord * (nearest / length) : m_start;
    return holdfast::answerOnCurve(holdfast::atEndWithin(nearest, 0.0, length), at, point, param);
}

Yxrt::ErrorStatus YxDbLine::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    const double length = m_end.distanceTo(m_start);
    const auto along = holdfast::inRange(param, 0.0, length);
    if (!along)
        return Yxrt::eOutOfRange;
    if (*along >= length && length > 0.0)
        return holdfast::answer(m_end, point);
    return holdfast::answer(*along == 0.0 ? m_start : m_start + (m_end - m_start) * (*along / length), point);
}

Yxrt::ErrorStatus YxDbLine::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    std::swap(m_start, m_end);
    return Yxrt::eOk;
}

YxRxObject* YxDbLine::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbLine(*this); });
}
