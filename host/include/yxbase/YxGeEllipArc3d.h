#pragma once

#include <yxbase/YxGePoint3d.h>

/// An elliptical arc: the point at parameter t is centre + a cos t u + b sin t v, u and v the unit axes.
class YxGeEllipArc3d {
public:
    YxGeEllipArc3d(const YxGePoint3d& centre, const YxGeVector3d& majorAxis, const YxGeVector3d& minorAxis,
                   double majorRadius, double minorRadius, double startAngle, double endAngle);

    YxGePoint3d startPoint() const;
    YxGePoint3d endPoint() const;

private:
    YxGePoint3d pointAt(double angle) const;

    YxGePoint3d m_centre;
    YxGeVector3d m_major;
    YxGeVector3d m_minor;
    double m_majorRadius;
    double m_minorRadius;
    double m_startAngle;
    double m_endAngle;
};
