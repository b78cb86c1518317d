#pragma once

#include <optional>
#include <span>
#include <vector>

#include "formats/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::formats {

// The file's own curves. A cubic has its ends, a handle beside each, and up to eight points between them; it runs
// through the ends and the points in between, smoothly up to the second derivative, in equal steps of its parameter:
// end, handle, point ..., handle, end. A closed one runs through 3 to 11 points in the same way and has no handles.

inline constexpr std::size_t kSlvsCubicPoints = 4, kSlvsClosedPoints = 3, kSlvsMostExtraPoints = 8;

/// The spline that such a curve is; nothing where there are too many points, or too few.
std::optional<SplineShape> splineThrough(std::span<const Vec2> points, bool isClosed);

/// The points of the one curve that the spline is; nothing for a spline that is none.
std::optional<std::vector<Vec2>> slvsPointsOf(const SplineShape& spline);

/// True when point `number` of such a curve is also the control point of that number of its spline.
bool isSlvsControl(const SplineShape& spline, std::size_t number);

}  // namespace holdfast::formats
