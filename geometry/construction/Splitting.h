#pragma once

#include <optional>
#include <span>
#include <vector>

#include "geometry/Shapes.h"

namespace holdfast::geometry {

// Parts of curves. Parameters are those of Parameters.h; the end points of a part are the points at them, and an end
// that stays keeps its coordinates to the last bit. Splines keep their parameters, degree and, away from the cut, their
// control points; the cut ends are clamped. GeometryError for unsound shapes and for parameters outside the curve.

/// The part from one parameter to another in the curve's direction. A part of a circle is an arc, of an ellipse an
/// elliptical arc, of a periodic spline a clamped one, of a closed polyline an open one, of a ray a line (up to
/// infinity: a ray), of an xline a line, a ray or itself. On a closed curve the part may lead over the seam: either
/// lastParam exceeds the last parameter, or it is less than firstParam. Equal parameters give the whole curve opened
/// there; on open curves that is an error.
Shape partOf(const Shape& shape, double firstParam, double lastParam);

/// What remains of a curve.
struct Remainder {
    std::optional<Shape> before;  ///< the part up to the cut; none when the cut starts at the curve's start
    std::optional<Shape> after;   ///< the part behind it; none when the cut ends at the curve's end
};

/// Cuts out what lies between two parameters. An open curve leaves up to two parts; equal parameters cut it in two.
/// A closed curve leaves one part, as `after`, which runs from lastParam round to firstParam.
Remainder split(const Shape& shape, double firstParam, double lastParam);

/// All parts between the given parameters in order; parameters at the curve's ends, and doubles, cut nothing. A closed
/// curve has as many parts as parameters, the last one leading over the seam; without any it stays whole.
std::vector<Shape> splitAt(const Shape& shape, std::span<const double> params);

/// The same curve run through backwards. Arcs and ellipses run counter-clockwise by definition and stay as they are, as
/// do rays.
Shape reversed(const Shape& shape);

}  // namespace holdfast::geometry
