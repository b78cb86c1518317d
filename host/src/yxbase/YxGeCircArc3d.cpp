#include <yxbase/YxGeCircArc3d.h>

#include <numbers>

#include "host/src/yxbase/PlaneFrame.h"

YxGeCircArc3d::YxGeCircArc3d()
    : YxGeCircArc3d(YxGePoint3d::kOrigin, YxGeVector3d::kZAxis, YxGeVector3d::kXAxis, 1.0, 0.0,
                    2.0 * std::numbers::pi) {}

YxGeCircArc3d::YxGeCircArc3d(const YxGePoint3d& centre, const YxGeVector3d& normal, const YxGeVector3d& reference,
                             double radius, double startAngle, double endAngle)
    : m_centre(centre), m_radius(radius), m_startAngle(startAngle), m_endAngle(endAngle) {
    const holdfast::PlaneFrame frame = holdfast::planeFrame(normal, reference);
    m_normal = frame.z;
    m_reference = frame.x;
}

YxGePoint3d YxGeCircArc3d::center() const {
    return m_centre;
}
YxGeVector3d YxGeCircArc3d::normal() const {
    return m_normal;
}
YxGeVector3d YxGeCircArc3d::refVec() const {
    return m_reference;
}
double YxGeCircArc3d::radius() const {
    return m_radius;
}
double YxGeCircArc3d::startAng() const {
    return m_startAngle;
}
double YxGeCircArc3d::endAng() const {
    return m_endAngle;
}
YxGePoint3d YxGeCircArc3d::startPoint() const {
    return pointAt(m_startAngle);
}
YxGePoint3d YxGeCircArc3d::endPoint() const {
    return pointAt(m_endAngle);
}

YxGePoint3d YxGeCircArc3d::pointAt(double angle) const {
    const holdfast::PlaneFrame frame{m_reference, m_normal.crossProduct(m_reference), m_normal};
    return m_centre + frame.directionAt(angle) * m_radius;
}
