#pragma once

namespace holdfast::geometry {

// How near is the same. Tolerances of one trade alone stand beside what uses them.

/// Parts of a figure's size within which two of its points are one, and what is shorter is nothing: some thousand times
/// what rounding leaves of sixteen digits after a construction.
inline constexpr double kSamePoint = 1e-9;

/// Radians within which two directions are one, for the same reason.
inline constexpr double kSameDirection = 1e-9;

/// Parts of a polyline's segment within which a parameter is at a vertex.
inline constexpr double kAtVertex = 1e-9;

/// Parts of the drawing's size within which a constraint holds and a curve is where it was put: drawing files of other
/// programs carry six digits.
inline constexpr double kHolds = 1e-6;

/// Radians by which an arc may fall short of a full turn and go all the way round for those who move its ends.
inline constexpr double kAlmostClosed = 1e-6;

}  // namespace holdfast::geometry
