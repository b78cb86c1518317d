#include <yxbase/YxGeEllipArc3d.h>

#include <cmath>

YxGeEllipArc3d::YxGeEllipArc3d(const YxGePoint3d& centre, const YxGeVector3d& majorAxis, const YxGeVector3d& minorAxis,
                               double majorRadius, double minorRadius, double startAngle, double endAngle)
    : m_centre(centre),
      m_major(majorAxis.normal()),
      m_minor(minorAxis.normal()),
      m_majorRadius(majorRadius),
      m_minorRadius(minorRadius),
      m_startAngle(startAngle),
      m_endAngle(endAngle) {}

YxGePoint3d YxGeEllipArc3d::startPoint() const {
    return pointAt(m_startAngle);
}
YxGePoint3d YxGeEllipArc3d::endPoint() const {
    return pointAt(m_endAngle);
}

YxGePoint3d YxGeEllipArc3d::pointAt(double angle) const {
    return m_centre + m_major * (m_majorRadius * std::cos(angle)) + m_minor * (m_minorRadius * std::sin(angle));
}
