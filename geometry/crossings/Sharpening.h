#pragma once

#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {

/// Parameters on two pieces of the same place.
struct ParamPair {
    double a = 0.0;
    double b = 0.0;
};

/// The distance between the two points.
double gapAt(const Piece& a, const Piece& b, ParamPair at);

/// True where the two directions differ by less than 1e-5 radians.
bool isTangent(const Piece& a, const Piece& b, ParamPair at);

/// True where two pieces in a frame run in the same direction through the same point.
bool isTouching(const Piece& a, const Piece& b, ParamPair at);

/// From a place nearby to the one where two pieces run in the same direction and the line between them is at right
/// angles to it; never leaves the pieces.
ParamPair touchNear(const Piece& a, const Piece& b, ParamPair rough);

/// A meeting of two pieces in a frame, known roughly, to the last digits: the touching point if there is one, else the
/// crossing. Never leaves the pieces, and stays where it is when that is no nearer to both.
ParamPair sharpened(const Piece& a, const Piece& b, ParamPair rough);

}  // namespace holdfast::geometry
