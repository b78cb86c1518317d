#include "geometry/Conics.h"

#include <cassert>

#include "geometry/Angles.h"

namespace holdfast::geometry {

/// A part of an ellipse reaches its bounds at its ends or where x or y turns.
Box ellipticBox(Vec2 centre, Vec2 majorAxis, double ratio, double from, double to) {
    assert(!(to < from));
    Box box;
    box.add(ellipsePoint(centre, majorAxis, ratio, from));
    box.add(ellipsePoint(centre, majorAxis, ratio, to));
    const Vec2 minor = minorAxis(majorAxis, ratio);
    const double end = std::min(to, from + kTurn);
    for (const double turn : {std::atan2(minor.x, majorAxis.x), std::atan2(minor.y, majorAxis.y)}) {
        const double first = turn + kPi * std::ceil((from - turn) / kPi);
        for (int half = 0; first + half * kPi < end; ++half)
            box.add(ellipsePoint(centre, majorAxis, ratio, first + half * kPi));
    }
    return box;
}

ArcShape arcOfBulge(Vec2 from, Vec2 to, double bulge) {
    assert(bulge != 0.0);
    ArcShape arc;
    arc.centre = centreOfBulge(from, to, bulge);
    arc.radius = distance(from, to) * std::abs(radiusOfBulge(bulge));
    const Vec2 first = (bulge > 0.0 ? from : to) - arc.centre;
    arc.startAngle = std::atan2(first.y, first.x);
    arc.endAngle = arc.startAngle + std::abs(angleOfBulge(bulge));
    return arc;
}

}  // namespace holdfast::geometry
