#pragma once

#include <yxbase/YxGePoint3d.h>

/// A circular arc: angles in radians from the reference vector, right-handed about the normal.
class YxGeCircArc3d {
public:
    /// Centre origin, normal z, reference x, radius 1, full turn.
    YxGeCircArc3d();
    YxGeCircArc3d(const YxGePoint3d& centre, const YxGeVector3d& normal, const YxGeVector3d& reference, double radius,
                  double startAngle, double endAngle);

    YxGePoint3d center() const;
    YxGeVector3d normal() const;
    YxGeVector3d refVec() const;
    double radius() const;
    double startAng() const;
    double endAng() const;
    YxGePoint3d startPoint() const;
    YxGePoint3d endPoint() const;

private:
    YxGePoint3d pointAt(double angle) const;

    YxGePoint3d m_centre;
    YxGeVector3d m_normal;
    YxGeVector3d m_reference;
    double m_radius;
    double m_startAngle;
    double m_endAngle;
};
