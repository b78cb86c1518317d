#pragma once

#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// What kind of motion an element is free to make; the first five leave its form as it is or name what of it changes.
enum class MotionKind {
    slide,   ///< all of it moves in one direction
    turn,    ///< about a centre
    length,  ///< a line becomes longer at one end, an arc on its circle
    radius,  ///< centre and angles stay
    other    ///< shape and place change together, or a shape that has no name for it
};

/// One way in which an element can move while everything else follows.
struct FreeMotion {
    MotionKind kind = MotionKind::other;
    Vec2 direction{};           ///< slide: of length 1
    Vec2 centre{};              ///< turn: what stays where it is
    bool isAtStart = false;     ///< length: which end moves
    std::vector<double> rates;  ///< of the element's values, in their order; the longest is 1 in lengths
};

/// The ways in which one element can move, independent of each other; all its motions are made of them.
struct EntityMotions {
    std::vector<FreeMotion> motions;
    bool isFree = false;  ///< nothing holds it at all
};

/// For each element how it can move where the sketch is now, with all binding constraints kept. Where first derivatives
/// allow more than the sketch can really do (an end stretched out as far as it goes, a touch that is there anyway),
/// what comes back when it is tried is left out, in sketches of up to 2,000 unknowns.
///
/// The motions are those of random points nearby, brought back to the equations: as many as an element has values, at
/// most 24, so that more than 24 ways of one spline are told as 24. Cost: one factorisation of the sketch, and for each
/// point a few solves with it. Throws SketchError as solve does.
std::vector<EntityMotions> freeMotionsOf(const SketchData& sketch);

}  // namespace holdfast::solver::detail
