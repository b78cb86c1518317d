#pragma once

#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

struct EquationSystem;

/// Puts the values where those that are merged agree, which is where slopes are to be taken.
void putOnEquations(EquationSystem& system);

/// By row of the system's equations, in their order: it moves something that no other row reads but those that are left
/// out before it, so that it takes one freedom away, and what depends on what among the others is the same without it.
/// The values are those that putOnEquations leaves, or nearby.
std::vector<char> rowsWithOwnFreedom(const EquationSystem& system);

/// Constraints, ascending, that the others neither imply nor hinder: each moves something that only those read which
/// are left out before it, so that it can hold whatever the rest says. Each nearly holds, so that it is a small way to
/// where it does. Not all such constraints are found, but those that hang on few others; the rest may be judged without
/// them. What has a share in merged values is never among them.
///
/// Lines count by their directions and lengths besides the places of their ends, so that what is said of these hangs
/// together only over lines of which both are said, however many of them share their ends. No row is eliminated: cost
/// is near to linear in the sketch, where elimination fills up. Throws SketchError as solve does.
std::vector<int> constraintsWithOwnFreedom(const SketchData& sketch);

/// What is off by no more than this part of the smallest of its entities nearly holds: it comes to hold without
/// changing their shapes.
inline constexpr double kNearly = 0.01;

/// Whether a constraint with this violation nearly holds, in a sketch of this size.
bool nearlyHolds(const SketchData& sketch, const SketchConstraint& constraint, double violation, double size);

}  // namespace holdfast::solver::detail
