#include <yxdb/YxDbPolyline.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/BulgeSegment.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

using holdfast::BulgeSegment;

namespace {

/// The image of the xy plane is the xy plane.
bool keepsThePlane(const YxGeMatrix3d& matrix) {
    const YxGeTol& tol = YxGeContext::gTol;
    const double tilt = std::hypot(matrix(2, 0), matrix(2, 1));
    return tilt <= tol.equalVector() * std::abs(matrix(2, 2)) && std::abs(matrix(2, 3)) <= tol.equalPoint();
}

/// Never -0.0, which would show in a drawing file.
double flipped(double bulge) {
    return 0.0 - bulge;
}

}  // namespace

YX_IMPLEMENT_CLASS(YxDbPolyline, YxDbCurve)

unsigned int YxDbPolyline::numVerts() const {
    return holdfast::entityCall(*this, "YxDbPolyline::numVerts") ? 0U : static_cast<unsigned int>(m_vertices.size());
}

Yxrt::ErrorStatus YxDbPolyline::getPointAt(unsigned int index, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbPolyline::getPointAt", index))
        return refused;
    if (index >= m_vertices.size())
        return Yxrt::eOutOfRange;
    point = placed(m_vertices[index].point);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::getPointAt(unsigned int index, YxGePoint2d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbPolyline::getPointAt", index))
        return refused;
    if (index >= m_vertices.size())
        return Yxrt::eOutOfRange;
    point = m_vertices[index].point;
    return Yxrt::eOk;
}

YxDbPolyline::SegType YxDbPolyline::segType(unsigned int index) const {
    if (holdfast::entityCall(*this, "YxDbPolyline::segType", index) || index >= segmentCount())
        return kNone;
    const BulgeSegment segment = segmentAt(index);
    if (segment.isDegenerate())
        return kDegenerate;
    return segment.isArc() ? kArc : kLine;
}

Yxrt::ErrorStatus YxDbPolyline::getArcSegAt(unsigned int index, YxGeCircArc3d& arc) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbPolyline::getArcSegAt", index))
        return refused;
    if (index >= segmentCount())
        return Yxrt::eOutOfRange;
    const BulgeSegment segment = segmentAt(index);
    if (!segment.isArc())
        return Yxrt::eNotApplicable;
    const YxGeCircArc3d found = segment.arc();
    if (!holdfast::isFinite(found.center()) || !std::isfinite(found.radius()))
        return Yxrt::eInvalidInput;
    arc = found;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::getVertexIdentifierAt(unsigned int index, int& identifier) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbPolyline::getVertexIdentifierAt", index))
        return refused;
    if (index >= m_vertices.size())
        return Yxrt::eOutOfRange;
    identifier = m_vertices[index].identifier;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::setVertexIdentifierAt(unsigned int index, int identifier) {
    if (const Yxrt::ErrorStatus refused =
            holdfast::writeCall(*this, "YxDbPolyline::setVertexIdentifierAt", index, identifier))
        return refused;
    if (index >= m_vertices.size())
        return Yxrt::eOutOfRange;
    m_vertices[index].identifier = identifier;
    m_lastFreshIdentifier = std::max(m_lastFreshIdentifier, identifier);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    if (!keepsThePlane(matrix))
        return Yxrt::eNotApplicable;
    std::vector<Vertex> images = m_vertices;
    const bool turnsOver = matrix(0, 0) * matrix(1, 1) < matrix(0, 1) * matrix(1, 0);
    for (Vertex& each : images) {
        const YxGePoint3d image = matrix * placed(each.point);
        if (!holdfast::isFinite(image))
            return Yxrt::eInvalidInput;
        each.point = {image.x, image.y};
        each.bulge = turnsOver ? flipped(each.bulge) : each.bulge;
    }
    m_vertices = std::move(images);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    if (m_vertices.empty())
        return Yxrt::eNotApplicable;
    point = placed(m_vertices.front().point);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::getEndPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    if (m_vertices.empty())
        return Yxrt::eNotApplicable;
    point = placed(m_closed ? m_vertices.front().point : m_vertices.back().point);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbPolyline::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (m_vertices.empty())
        return Yxrt::eNotApplicable;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const double nearest = nearestParam({point.x, point.y});
    return holdfast::answerOnCurve(nearest, pointOf(nearest), point, param);
}

Yxrt::ErrorStatus YxDbPolyline::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    const double segments = static_cast<double>(segmentCount());
    if (segments == 0.0)
        return pointOfLoneVertex(param, point);
    const double wrapped = m_closed ? holdfast::remainderOf(param, segments) : param;
    const auto inside = holdfast::inRange(wrapped, 0.0, segments);
    if (!inside)
        return Yxrt::eOutOfRange;
    return holdfast::answer(pointOf(*inside), point);
}

bool YxDbPolyline::isClosed() const {
    return !holdfast::entityCall(*this, "YxDbCurve::isClosed") && m_closed;
}

Yxrt::ErrorStatus YxDbPolyline::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    const std::vector<Vertex> old = m_vertices;
    const std::size_t count = old.size();
    for (std::size_t i = 0; i < count; ++i) {
        m_vertices[i].point = old[count - 1 - i].point;
        // Segment i was the one that ends at the vertex; the last segment closes the polyline and stays the last.
        m_vertices[i].bulge = flipped(old[i + 1 < count ? count - 2 - i : i].bulge);
    }
    return Yxrt::eOk;
}

YxRxObject* YxDbPolyline::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbPolyline(*this); });
}

YxGePoint3d YxDbPolyline::placed(const YxGePoint2d& point) {
    return {point.x, point.y, 0.0};
}

unsigned int YxDbPolyline::segmentCount() const {
    const auto vertices = static_cast<unsigned int>(m_vertices.size());
    return m_closed || vertices == 0 ? vertices : vertices - 1;
}

holdfast::BulgeSegment YxDbPolyline::segmentAt(unsigned int index) const {
    const Vertex& start = m_vertices[index];
    return {start.point, m_vertices[(index + 1) % m_vertices.size()].point, start.bulge};
}

/// Walks all segments once. At a vertex the parameter is the vertex index exactly, never a rounding error below it.
double YxDbPolyline::nearestParam(const YxGePoint2d& point) const {
    double nearest = std::numeric_limits<double>::infinity();
    double param = 0.0;
    for (unsigned int i = 0; i < segmentCount(); ++i) {
        const BulgeSegment segment = segmentAt(i);
        const double fraction = segment.nearestFraction(point);
        const YxGePoint2d at = segment.pointAt(fraction);
        const double distance = std::hypot(at.x - point.x, at.y - point.y);
        if (distance >= nearest)
            continue;
        nearest = distance;
        param = i + (at.isEqualTo(segment.pointAt(0.0)) ? 0.0 : at.isEqualTo(segment.pointAt(1.0)) ? 1.0 : fraction);
    }
    return m_closed && param >= segmentCount() ? 0.0 : param;
}

/// For a parameter within the range of a polyline that has vertices.
YxGePoint3d YxDbPolyline::pointOf(double param) const {
    if (segmentCount() == 0)
        return placed(m_vertices.front().point);
    const double lastSegment = segmentCount() - 1.0;
    const auto index = static_cast<unsigned int>(std::min(std::floor(param), lastSegment));
    return placed(segmentAt(index).pointAt(param - index));
}

Yxrt::ErrorStatus YxDbPolyline::pointOfLoneVertex(double param, YxGePoint3d& point) const {
    if (m_vertices.empty())
        return Yxrt::eNotApplicable;
    if (!holdfast::inRange(param, 0.0, 0.0))
        return Yxrt::eOutOfRange;
    point = placed(m_vertices.front().point);
    return Yxrt::eOk;
}
