#pragma once

#include <vector>

#include "geometry/crossings/Sharpening.h"

namespace holdfast::geometry {

/// Where two pieces in a frame touch, one of them part of a spline or ellipse: the library is sure of lines and circles
/// only, and misses one such touching in twenty. Bezier curves have to be nearly flat.
std::vector<ParamPair> touchingPlaces(const Piece& a, const Piece& b);

}  // namespace holdfast::geometry
