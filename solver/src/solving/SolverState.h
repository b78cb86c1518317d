#pragma once

#include <unordered_map>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Iteration.h"
#include "solver/src/numerics/Neighbourhood.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// What came of trying to solve one subproblem.
struct Attempt {
    bool isSolved = false;
    bool isNearest = false;  ///< and no movement comes nearer to the targets
    int iterations = 0;
    double residual = 0.0;
    std::optional<Degeneracy> degeneracy;
};

/// A sketch's system while it is solved: start values, wishes for values, constants of the edit, and the ways of
/// trying to solve a subproblem. The system's values move; the sketch is only read.
class SolverState {
public:
    SolverState(const SketchData& sketch, EquationSystem system);

    EquationSystem& system() { return m_system; }
    const EquationSystem& system() const { return m_system; }
    const SketchData& sketch() const { return m_sketch; }
    Neighbourhood& neighbourhood() { return m_neighbourhood; }

    /// The value should come to the target; it counts emphasis times as much as others in the movement.
    void wish(int value, double target, double emphasis);

    /// Makes the unknown of a value a constant of this edit. False when the value is bound otherwise already.
    bool pin(int value, double goal);

    /// Unknowns of equations that do not hold, and unknowns whose merged values differ. Linear in the system.
    std::vector<int> violated() const;

    /// An equation that does not hold although all its values are constants; -1: none. Linear in the system.
    int brokenConstantEquation() const;

    /// Solves around the seeds, as far as `reach` lets it, and leaves the solution in the system's values; without one
    /// they are as before.
    Attempt solveAround(std::span<const int> seeds, Scope reach);

    /// One subproblem from x: settles it and looks for flaws.
    Attempt trySettling(Subproblem& subproblem, std::vector<double> x, IterationLimits limits);
    /// The same with a pull of one's own.
    Attempt trySettling(Subproblem& subproblem, std::vector<double> x, IterationLimits limits, const Pull& pull);

    Pull pullOf(const Subproblem& subproblem) const;
    std::span<const double> startValues() const { return m_start; }

    /// What the constants of the constraints and of the edit have degenerate by themselves.
    std::optional<Degeneracy> degeneracyInConstants() const;

    /// What all further attempts may cost together; null: no bound. It outlives them.
    void setBudget(Budget* budget) { m_budget = budget; }
    bool hasSpentBudget() const { return isSpent(m_budget); }

    /// Unknowns that took part in solved subproblems, and pinned ones.
    std::span<const int> touched() const { return m_touched; }

private:
    struct SoftTarget {
        double target, emphasis;
    };

    std::optional<Degeneracy> degeneracyIn(std::span<const int> entities, std::span<const int> senses,
                                           double margin = 1.0) const;
    Attempt trySubproblem(Subproblem& subproblem, bool isWhole);
    Attempt tryCarefully(Subproblem& subproblem, const std::vector<double>& x);
    Attempt tryFromReference(Subproblem& subproblem);
    void putConstants();

    const SketchData& m_sketch;
    EquationSystem m_system;
    Neighbourhood m_neighbourhood;
    std::vector<double> m_start;  ///< values when the edit began: what stays where it can
    std::unordered_map<int, SoftTarget> m_wishes;
    std::unordered_map<int, double> m_pins;  ///< by unknown
    std::vector<int> m_touched;
    Budget* m_budget = nullptr;
    std::vector<int> m_displaced;  ///< elements of values that constraints made constants elsewhere
};

}  // namespace holdfast::solver::detail
