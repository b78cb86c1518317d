#include "host/src/yxdb/curves/SplineView.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "host/src/yxdb/curves/NearestParam.h"

namespace holdfast {
namespace {

int floorOfQuotient(int a, int b) {
    return a >= 0 ? a / b : -((b - 1 - a) / b);
}

int sizeOf(std::span<const double> values) {
    return static_cast<int>(values.size());
}

}  // namespace

SplineView::SplineView(int degree, bool periodic, std::span<const YxGePoint3d> control, std::span<const double> knots,
                       std::span<const double> weights)
    : m_degree(degree),
      m_control(control),
      m_knots(knots),
      m_weights(weights),
      m_repeated(periodic ? degree + 1 - (sizeOf(knots) - static_cast<int>(control.size())) : 0),
      m_count(static_cast<int>(control.size()) + m_repeated) {}

double SplineView::knot(int index) const {
    const int listed = index - m_repeated;
    if (listed >= 0 && listed < sizeOf(m_knots))
        return m_knots[static_cast<std::size_t>(listed)];
    const int inPeriod = static_cast<int>(m_control.size());
    const int turns = floorOfQuotient(listed, inPeriod);
    const double period = m_knots.back() - m_knots.front();
    return m_knots[static_cast<std::size_t>(listed - turns * inPeriod)] + turns * period;
}

int SplineView::intervalAt(double param) const {
    int low = m_degree;
    int high = m_count;  // the first knot known to lie above the parameter, or the end
    while (high - low > 1) {
        const int middle = low + (high - low) / 2;
        (knot(middle) <= param ? low : high) = middle;
    }
    while (low > m_degree && knot(low) >= knot(low + 1))
        --low;
    return low;
}

HomogeneousPoint SplineView::controlAt(int index) const {
    const std::size_t wrapped = static_cast<std::size_t>(index) % m_control.size();
    const YxGePoint3d& p = m_control[wrapped];
    const double w = m_weights.empty() ? 1.0 : m_weights[wrapped];
    return {p.x * w, p.y * w, p.z * w, w};
}

CurveSample SplineView::sampleAt(double param, int interval) const {
    std::array<HomogeneousPoint, kHighestDegree + 1> points;
    std::array<double, std::size_t{2} * kHighestDegree> knots;  // those from interval - degree + 1 to interval + degree
    for (int i = 0; i <= m_degree; ++i)
        points[static_cast<std::size_t>(i)] = controlAt(interval - m_degree + i);
    for (int i = 0; i < 2 * m_degree; ++i)
        knots[static_cast<std::size_t>(i)] = knot(interval - m_degree + 1 + i);
    const auto last = static_cast<std::size_t>(m_degree);
    for (std::size_t round = 1; round < last; ++round)
        for (std::size_t j = last; j >= round; --j) {
            const double left = knots[j - 1];
            const double right = knots[last + j - round];
            points[j] = mixed(points[j - 1], points[j], (param - left) / (right - left));
        }
    const double length = knots[last] - knots[last - 1];
    const HomogeneousPoint& a = points[last - 1];
    const HomogeneousPoint& b = points[last];
    const HomogeneousPoint at = mixed(a, b, (param - knots[last - 1]) / length);
    const double rate = m_degree / length;
    const YxGePoint3d point(at.x / at.w, at.y / at.w, at.z / at.w);
    const double weightRate = rate * (b.w - a.w);
    return {point,
            {(rate * (b.x - a.x) - weightRate * point.x) / at.w, (rate * (b.y - a.y) - weightRate * point.y) / at.w,
             (rate * (b.z - a.z) - weightRate * point.z) / at.w}};
}

/// Point j is the polar form of the piece at its start, degree - j times, and at its end, j times (L. Ramshaw,
/// Blossoming: a connect-the-dots approach to splines, 1987).
BezierPoints SplineView::bezierOver(int interval) const {
    const double from = knot(interval);
    const double to = knot(interval + 1);
    BezierPoints bezier;
    for (int j = 0; j <= m_degree; ++j) {
        BezierPoints points;
        for (int i = interval - m_degree; i <= interval; ++i)
            points.push_back(controlAt(i));
        for (int round = 1; round <= m_degree; ++round) {
            const double argument = round <= m_degree - j ? from : to;
            for (int i = m_degree; i >= round; --i) {
                const double left = knot(interval - m_degree + i);
                const double right = knot(interval + 1 + i - round);
                const auto at = static_cast<std::size_t>(i);
                points[at] = mixed(points[at - 1], points[at], (argument - left) / (right - left));
            }
        }
        bezier.push_back(points.back());
    }
    return bezier;
}

double SplineView::leastDistance(int interval, const YxGePoint3d& point) const {
    YxGePoint3d low = m_control[static_cast<std::size_t>(interval) % m_control.size()];
    YxGePoint3d high = low;
    for (int i = interval - m_degree; i < interval; ++i) {
        const YxGePoint3d& p = m_control[static_cast<std::size_t>(i) % m_control.size()];
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    const YxGePoint3d inBox(std::clamp(point.x, low.x, high.x), std::clamp(point.y, low.y, high.y),
                            std::clamp(point.z, low.z, high.z));
    return inBox.distanceTo(point);
}

double SplineView::nearestParam(const YxGePoint3d& point) const {
    NearestParam nearest(point);
    for (int interval = firstInterval(); interval < endInterval(); ++interval)
        if (knot(interval) < knot(interval + 1))
            nearest.offer(knot(interval), sampleAt(knot(interval), interval).point);
    for (int interval = firstInterval(); interval < endInterval(); ++interval) {
        const double from = knot(interval);
        const double to = knot(interval + 1);
        if (from < to && leastDistance(interval, point) <= nearest.distance())
            nearest.search({.control = bezierOver(interval),
                            .paramAt = [=](double place) { return (1.0 - place) * from + place * to; },
                            .sampleAt = [&](double param) { return sampleAt(param, interval); }});
    }
    return nearest.param();
}

}  // namespace holdfast
