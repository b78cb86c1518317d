#pragma once

#include <cmath>

#include "geometry/Box.h"
#include "geometry/Shapes.h"

namespace holdfast::geometry {

// Points of circles, ellipses and arc segments. A circle is an ellipse of ratio 1 whose major axis is (radius, 0). The
// parameter of an ellipse is its eccentric angle, in radians.

inline Vec2 minorAxis(Vec2 majorAxis, double ratio) {
    return ratio * leftOf(majorAxis);
}

inline Vec2 ellipsePoint(Vec2 centre, Vec2 majorAxis, Vec2 minorAxis, double param) {
    return centre + std::cos(param) * majorAxis + std::sin(param) * minorAxis;
}
inline Vec2 ellipsePoint(Vec2 centre, Vec2 majorAxis, double ratio, double param) {
    return ellipsePoint(centre, majorAxis, minorAxis(majorAxis, ratio), param);
}

/// The derivative of ellipsePoint by the parameter.
inline Vec2 ellipseTangent(Vec2 majorAxis, double ratio, double param) {
    return std::cos(param) * minorAxis(majorAxis, ratio) - std::sin(param) * majorAxis;
}

inline Vec2 circlePoint(Vec2 centre, double radius, double angle) {
    return centre + radius * polar(angle);
}

/// The smallest box around the part of an ellipse between two parameters, from <= to.
Box ellipticBox(Vec2 centre, Vec2 majorAxis, double ratio, double from, double to);

/// From the middle of a chord to the centre of the arc over it, in chords to the left of the direction from start to
/// end; bulge = tan(included angle / 4) is not 0. Also for numbers that carry derivatives.
template <class T>
T apothemOfBulge(const T& bulge) {
    return (T(1.0) - bulge * bulge) / (bulge * 4.0);
}

/// The radius of the arc over a chord, in chords; negative where the bulge is.
template <class T>
T radiusOfBulge(const T& bulge) {
    return (T(1.0) + bulge * bulge) / (bulge * 4.0);
}

/// tan(angle / 4), the bulge of an arc segment; negative for clockwise.
inline double bulgeOfAngle(double includedAngle) {
    return std::tan(includedAngle / 4.0);
}

/// The angle that a segment of this bulge spans; negative for clockwise.
inline double angleOfBulge(double bulge) {
    return 4.0 * std::atan(bulge);
}

/// The centre of the arc from one point to another; bulge is not 0.
inline Vec2 centreOfBulge(Vec2 from, Vec2 to, double bulge) {
    return 0.5 * (from + to) + apothemOfBulge(bulge) * leftOf(to - from);
}

/// The middle of the segment between two points: the sagitta is bulge times half the chord, to the right of the
/// direction of travel. Any bulge.
inline Vec2 middleOfBulge(Vec2 from, Vec2 to, double bulge) {
    return 0.5 * (from + to) - 0.5 * bulge * leftOf(to - from);
}

/// The same arc as a shape, which runs counter-clockwise: from `to` for a negative bulge.
ArcShape arcOfBulge(Vec2 from, Vec2 to, double bulge);

}  // namespace holdfast::geometry
