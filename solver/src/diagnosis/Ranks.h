#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/diagnosis/GaussianElimination.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Judges proposed constraints one after the other by the rank of their equations where the sketch is: one elimination
/// for all of them, and no solve.
///
/// Everything is eliminated in the sketch's own values. Proposals, and constraints that only merge values, stand there
/// with the equations that they would have unmerged; the others with those of the merged system, which knows shared
/// points. It knows nothing of proposals: what these say of shared points holds only if they are taken.
class Ranks {
public:
    /// Proposals are the constraints from `firstProposal` on. Throws SketchError as solve does.
    Ranks(SketchData sketch, std::size_t firstProposal);
    Ranks(const Ranks&) = delete;  // the equations point into the sketch
    Ranks& operator=(const Ranks&) = delete;

    /// From now on an entity counts as one that cannot move.
    void hold(int entity);
    /// In how many independent directions a point that is two values of its own can go; -1 for any other place.
    int freedomOf(const SketchPlace& place);
    /// Whether one coordinate of such a point, 0 for x and 1 for y, is determined.
    bool isDetermined(const SketchPlace& place, int coordinate);
    /// How many values of an entity are still to be chosen.
    int freedomOf(int entity);

    /// Counts a proposal if none of its equations is implied by what counts; how many there are, 0: it does not count.
    int take(int constraint);
    /// Counts it if they are not all implied; how many are not.
    int takePart(int constraint);

private:
    using Rows = std::vector<GaussianElimination::Entries>;

    void addGiven(int constraint);
    Rows rowsOf(int constraint, bool isImplied);
    Rows rowsOf(const EquationSystem& system, const Equation& equation);
    Rows rowsOfValues(const SketchEntity& entity, int first, int count) const;
    int firstValueOf(const SketchPlace& place) const;
    int columnOf(const EquationSystem& system, int value) const;

    SketchData m_sketch;
    EquationSystem m_given, m_plain;
    GaussianElimination m_elimination;
    std::vector<double> m_slopes;
};

}  // namespace holdfast::solver::detail
