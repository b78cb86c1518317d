#pragma once

#include <yxbase/YxGeCircArc3d.h>
#include <yxbase/YxGePoint2d.h>

namespace holdfast {

/// One segment of a polyline: straight, or an arc of the included angle 4 atan(bulge), counter-clockwise for a positive
/// bulge. Fractions are shares of the length, from 0 at the start to 1 at the end.
///
/// Arcs are computed about the middle of their chord, not about their centre: so nothing is lost when the bulge is
/// tiny and the centre far away.
class BulgeSegment {
public:
    BulgeSegment(const YxGePoint2d& start, const YxGePoint2d& end, double bulge);

    /// Both ends are the same point within the tolerance; the bulge then says nothing.
    bool isDegenerate() const { return m_degenerate; }
    bool isArc() const { return m_arc; }

    YxGePoint2d pointAt(double fraction) const;
    /// The fraction of the point of the segment that is nearest.
    double nearestFraction(const YxGePoint2d& point) const;
    /// The arc, right-handed about its normal from start to end: the normal points down for a negative bulge. Only for
    /// arcs.
    YxGeCircArc3d arc() const;

private:
    double nearestOnArc(const YxGePoint2d& point) const;
    double nearestOnChord(const YxGePoint2d& point) const;
    double radius() const;
    double middleToCentre() const;

    YxGePoint2d m_start;
    YxGePoint2d m_end;
    double m_bulge;
    double m_length;
    double m_alongX = 1.0;  // unit vector of the chord
    double m_alongY = 0.0;
    bool m_degenerate;
    bool m_arc;
};

}  // namespace holdfast
