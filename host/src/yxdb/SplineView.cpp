#include "host/src/yxdb/SplineView.h"

#include <array>
#include <cstddef>

#include "host/src/yxdb/NearestParam.h"

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

SplineView::Homogeneous SplineView::controlAt(int index) const {
    const std::size_t wrapped = static_cast<std::size_t>(index) % m_control.size();
    const YxGePoint3d& p = m_control[wrapped];
    const double w = m_weights.empty() ? 1.0 : m_weights[wrapped];
    return {p.x * w, p.y * w, p.z * w, w};
}

/// Exact at both ends, where a + (b - a) t would be off by a rounding error.
SplineView::Homogeneous SplineView::mixed(const Homogeneous& a, const Homogeneous& b, double share) {
    const double rest = 1.0 - share;
    return {rest * a.x + share * b.x, rest * a.y + share * b.y, rest * a.z + share * b.z, rest * a.w + share * b.w};
}

CurveSample SplineView::sampleAt(double param, int interval) const {
    std::array<Homogeneous, kHighestDegree + 1> points;
    std::array<double, 2 * kHighestDegree> knots;  // those from interval - degree + 1 to interval + degree
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
    const Homogeneous& a = points[last - 1];
    const Homogeneous& b = points[last];
    const Homogeneous at = mixed(a, b, (param - knots[last - 1]) / length);
    const double rate = m_degree / length;
    const YxGePoint3d point(at.x / at.w, at.y / at.w, at.z / at.w);
    const double weightRate = rate * (b.w - a.w);
    return {point,
            {(rate * (b.x - a.x) - weightRate * point.x) / at.w, (rate * (b.y - a.y) - weightRate * point.y) / at.w,
             (rate * (b.z - a.z) - weightRate * point.z) / at.w}};
}

double SplineView::nearestParam(const YxGePoint3d& point) const {
    NearestParam nearest(point);
    for (int interval = firstInterval(); interval < endInterval(); ++interval)
        if (knot(interval) < knot(interval + 1))
            nearest.search([&](double param) { return sampleAt(param, interval); }, knot(interval), knot(interval + 1),
                           4 * m_degree + 4);
    return nearest.param();
}

}  // namespace holdfast
