#pragma once

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// What came of shaking some unknowns and bringing the equations to hold again.
enum class Shaking {
    moved,     ///< they hold somewhere else now: the unknowns can move
    cameBack,  ///< they hold only where they held before
    unknown    ///< they do not hold, or do not hold again: nothing was found out
};

/// How far entities have to be taken, in lengths, for a motion to show: a small part of the smallest one's size, but
/// never so small that it drowns in what an iteration leaves where a solution is a double one. Linear in them.
double wayOfShake(const SketchData& sketch, const EquationSystem& system, std::span<const int> entities);

/// Shakes the unknowns by this way and lets the equations hold again, a few times until
/// they have moved. After `moved` the system's values are there, else they are as before. Cost: some iterations of the
/// unknowns given.
Shaking shake(const SketchData& sketch, EquationSystem& system, std::span<const int> unknowns);

/// Is a constraint left when the others let its entities move, although first derivatives say that they imply it? It is
/// off by the square of the way then, as a height is at the end of a swing. All of them hold. Cost: some iterations of
/// the entities of all of them; fewest where the others do imply it.
bool isLeftSquarely(const SketchData& sketch, std::span<const int> others, int constraint);

/// Can the entities of these constraints move with them holding, beyond what first derivatives say?
bool canMove(const SketchData& sketch, std::span<const int> constraints);

}  // namespace holdfast::solver::detail
