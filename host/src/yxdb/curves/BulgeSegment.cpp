#include "host/src/yxdb/curves/BulgeSegment.h"

#include <cmath>

#include "host/src/yxdb/curves/CurveMath.h"

namespace holdfast {
namespace {

YxGePoint2d middle(const YxGePoint2d& a, const YxGePoint2d& b) {
    return {a.x + (b.x - a.x) / 2, a.y + (b.y - a.y) / 2};
}

double distance(const YxGePoint2d& a, const YxGePoint2d& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

}  // namespace

BulgeSegment::BulgeSegment(const YxGePoint2d& start, const YxGePoint2d& end, double bulge)
    : m_start(start),
      m_end(end),
      m_bulge(bulge),
      m_length(distance(start, end)),
      m_degenerate(start.isEqualTo(end)),
      m_arc(!m_degenerate && std::abs(bulge) > YxGeContext::gTol.equalVector()) {
    if (m_length > 0.0) {
        m_alongX = (end.x - start.x) / m_length;
        m_alongY = (end.y - start.y) / m_length;
    }
}

double BulgeSegment::radius() const {
    return m_length / 4.0 * (1.0 / std::abs(m_bulge) + std::abs(m_bulge));
}

/// Positive when the centre lies on the other side of the chord than the arc, as it does below a half circle.
double BulgeSegment::middleToCentre() const {
    return m_length / 4.0 * (1.0 / std::abs(m_bulge) - std::abs(m_bulge));
}

/// With half the included angle h and the angle a from the middle of the arc, the height above the chord is
/// r (cos a - cos h) = 2 r sin((h + a) / 2) sin((h - a) / 2), which cancels nothing.
YxGePoint2d BulgeSegment::pointAt(double fraction) const {
    if (fraction <= 0.0)
        return m_start;
    if (fraction >= 1.0)
        return m_end;
    if (!m_arc)
        return {m_start.x + (m_end.x - m_start.x) * fraction, m_start.y + (m_end.y - m_start.y) * fraction};
    const double half = 2.0 * std::atan(std::abs(m_bulge));
    const double angle = (2.0 * fraction - 1.0) * half;
    const double along = radius() * std::sin(angle);
    const double height =
        std::copysign(2.0 * radius() * std::sin((half + angle) / 2.0) * std::sin((half - angle) / 2.0), m_bulge);
    const YxGePoint2d from = middle(m_start, m_end);
    return {from.x + along * m_alongX + height * m_alongY, from.y + along * m_alongY - height * m_alongX};
}

double BulgeSegment::nearestFraction(const YxGePoint2d& point) const {
    if (m_length == 0.0)
        return 0.0;
    return m_arc ? nearestOnArc(point) : nearestOnChord(point);
}

double BulgeSegment::nearestOnChord(const YxGePoint2d& point) const {
    const double along = (point.x - m_start.x) * m_alongX + (point.y - m_start.y) * m_alongY;
    return clampedTo(along / m_length, 0.0, 1.0);
}

double BulgeSegment::nearestOnArc(const YxGePoint2d& point) const {
    const YxGePoint2d from = middle(m_start, m_end);
    const double x = point.x - from.x;
    const double y = point.y - from.y;
    const double along = x * m_alongX + y * m_alongY;
    const double height = std::copysign(1.0, m_bulge) * (x * m_alongY - y * m_alongX);
    const double aboveCentre = height + middleToCentre();
    const double angle = along == 0.0 && aboveCentre == 0.0 ? 0.0 : std::atan2(along, aboveCentre);
    const double fraction = 0.5 + angle / (4.0 * std::atan(std::abs(m_bulge)));
    if (fraction >= 0.0 && fraction <= 1.0)
        return fraction;
    return distance(point, m_start) <= distance(point, m_end) ? 0.0 : 1.0;
}

YxGeCircArc3d BulgeSegment::arc() const {
    const double side = std::copysign(1.0, m_bulge);
    const YxGePoint2d from = middle(m_start, m_end);
    const double toCentre = side * middleToCentre();
    const YxGePoint3d centre(from.x - toCentre * m_alongY, from.y + toCentre * m_alongX, 0.0);
    // Seen along a normal that points down, angles run from -x towards y.
    const double startAngle = std::atan2(m_start.y - centre.y, side * (m_start.x - centre.x));
    return {centre,   {0.0, 0.0, side}, {side, 0.0, 0.0},
            radius(), startAngle,       startAngle + 4.0 * std::atan(std::abs(m_bulge))};
}

}  // namespace holdfast
