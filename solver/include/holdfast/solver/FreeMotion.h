#pragma once

#include <string>
#include <vector>

#include <holdfast/solver/Export.h>
#include <holdfast/solver/Vec2.h>

namespace holdfast::solver {

/// What kind of motion an entity is free to make; the first four leave its form as it is or name what of it changes.
enum class MotionKind {
    slide,   ///< all of it moves in one direction
    turn,    ///< about a centre
    length,  ///< a line becomes longer at one end, an arc on its circle
    radius,  ///< centre and angles stay
    other    ///< shape and place change together, or a shape that has no name for it
};

/// One way in which an entity can move while everything else follows.
struct FreeMotion {
    MotionKind kind = MotionKind::other;
    Vec2 direction{};             ///< slide: of length 1
    Vec2 centre{};                ///< turn: what stays where it is
    bool isAtStart = false;       ///< length: which end moves
    std::vector<double> rates{};  ///< of the entity's numbers, in their order (EntityKind); the longest is 1 in lengths
};

/// "slide along (1, 0)", "turn about (3, 4)", "change its length at its end", ...: as after "can".
HOLDFAST_SOLVER_EXPORT std::string toString(const FreeMotion& motion);

/// The ways in which one entity can move, independent of each other; all its motions are made of them.
struct EntityMotions {
    std::vector<FreeMotion> motions{};
    bool isFree = false;  ///< nothing holds it at all
};

}  // namespace holdfast::solver
