#include <yxdb/YxDbSpline.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"
#include "host/src/yxdb/curves/SplineView.h"

using holdfast::SplineView;

YX_IMPLEMENT_CLASS(YxDbSpline, YxDbCurve)

int YxDbSpline::numControlPoints() const {
    return holdfast::entityCall(*this, "YxDbSpline::numControlPoints") ? 0 : static_cast<int>(m_controlPoints.size());
}

Yxrt::ErrorStatus YxDbSpline::getControlPointAt(int index, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbSpline::getControlPointAt", index))
        return refused;
    if (index < 0 || static_cast<std::size_t>(index) >= m_controlPoints.size())
        return Yxrt::eOutOfRange;
    point = m_controlPoints[static_cast<std::size_t>(index)];
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbSpline::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    std::vector<YxGePoint3d> images;
    images.reserve(m_controlPoints.size());
    for (const YxGePoint3d& each : m_controlPoints)
        images.push_back(matrix * each);
    if (!std::all_of(images.begin(), images.end(), holdfast::isFinite))
        return Yxrt::eInvalidInput;
    m_controlPoints = std::move(images);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbSpline::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    return holdfast::answer(firstPoint(), point);
}

Yxrt::ErrorStatus YxDbSpline::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    return holdfast::answer(lastPoint(), point);
}

Yxrt::ErrorStatus YxDbSpline::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const SplineView spline(m_degree, m_periodic, m_controlPoints, m_knots, m_weights);
    const double nearest = spline.nearestParam(point);
    const YxGePoint3d at = spline.sampleAt(nearest).point;
    if (at.isEqualTo(firstPoint()))
        return holdfast::answerOnCurve(spline.firstParam(), at, point, param);
    return holdfast::answerOnCurve(at.isEqualTo(lastPoint()) ? spline.lastParam() : nearest, at, point, param);
}

Yxrt::ErrorStatus YxDbSpline::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    const SplineView spline(m_degree, m_periodic, m_controlPoints, m_knots, m_weights);
    const double first = spline.firstParam();
    const double last = spline.lastParam();
    const double wrapped = m_periodic ? first + holdfast::remainderOf(param - first, last - first) : param;
    const auto inside = holdfast::inRange(wrapped, first, last);
    if (!inside)
        return Yxrt::eOutOfRange;
    return holdfast::answer(spline.sampleAt(*inside).point, point);
}

bool YxDbSpline::isClosed() const {
    return !holdfast::entityCall(*this, "YxDbCurve::isClosed") && (m_periodic || firstPoint().isEqualTo(lastPoint()));
}

Yxrt::ErrorStatus YxDbSpline::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    reverseControlPoints();
    const double first = m_knots.front();
    const double last = m_knots.back();
    std::reverse(m_knots.begin(), m_knots.end());
    for (double& knot : m_knots)
        knot = knot == first ? last : std::min(first + (last - knot), last);
    return Yxrt::eOk;
}

YxRxObject* YxDbSpline::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbSpline(*this); });
}

YxGePoint3d YxDbSpline::firstPoint() const {
    const SplineView spline(m_degree, m_periodic, m_controlPoints, m_knots, m_weights);
    return spline.sampleAt(spline.firstParam()).point;
}

YxGePoint3d YxDbSpline::lastPoint() const {
    const SplineView spline(m_degree, m_periodic, m_controlPoints, m_knots, m_weights);
    return spline.sampleAt(spline.lastParam()).point;
}

/// A periodic spline's last control point in the order of travel is one that wraps from the front; it becomes the
/// first.
void YxDbSpline::reverseControlPoints() {
    std::reverse(m_controlPoints.begin(), m_controlPoints.end());
    std::reverse(m_weights.begin(), m_weights.end());
    if (!m_periodic)
        return;
    const std::size_t count = m_controlPoints.size();
    const std::size_t wrapping = static_cast<std::size_t>(m_degree) + 1 - (m_knots.size() - count);
    const auto shift = static_cast<std::ptrdiff_t>((count - wrapping % count) % count);
    std::rotate(m_controlPoints.begin(), m_controlPoints.begin() + shift, m_controlPoints.end());
    if (!m_weights.empty())
        std::rotate(m_weights.begin(), m_weights.begin() + shift, m_weights.end());
}
