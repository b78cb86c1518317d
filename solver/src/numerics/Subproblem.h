#pragma once

#include <cstdint>

#include "solver/src/Uses.h"
#include "solver/src/numerics/LagrangianHessian.h"
#include "solver/src/numerics/LinearSolver.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// Some unknowns of a system that are free to move, and the equations that read them; everything else is constant.
/// Patterns and orderings are made once and serve all iterations and all steps of a drag.
class Subproblem {
public:
    /// Cost: linear in the equations of the unknowns given.
    Subproblem(EquationSystem& system, std::span<const int> unknowns);
    ~Subproblem();

    int columnCount() const { return static_cast<int>(m_unknowns.size()); }
    int rowCount() const { return m_pattern.rowCount; }
    std::span<const int> unknowns() const { return m_unknowns; }
    std::span<const int> equations() const { return m_equations; }

    /// How far geometry moves when an unknown changes by one.
    std::span<const double> metric() const { return m_metric; }

    /// Entities that have one of the unknowns, and the system's senses among the equations.
    std::span<const int> entities() const { return m_entities; }
    std::span<const int> senses() const { return m_senses; }

    /// What the unknowns are at the values of now: the mean of the merged values.
    std::vector<double> read() const;
    void write(std::span<const double> x);

    /// Residuals of all rows, at x, which is written.
    void evaluate(std::span<const double> x, std::vector<double>& residual);

    /// Where sizes are wishes, takes what their rows are off by for what the wishes miss: they hold then, wherever the
    /// others are. The residual is that of x, which is written.
    void absorb(std::span<double> x, std::span<double> residual);

    /// The same as evaluate() and the exact Jacobian, kept until the next call.
    void linearise(std::span<const double> x, std::vector<double>& residual);
    std::span<const double> jacobian() const { return m_jacobian; }
    const ColumnPattern& pattern() const { return m_pattern; }

    /// Squared length of each row's gradient when column j counts as long as 1 / weights[j].
    void rowSquares(std::span<const double> weights, std::vector<double>& squares) const;

    /// One input of an equation that is free: where its slope goes.
    struct Slot {
        int input;   ///< which input of the equation
        int entry;   ///< of the equation's first row in the Jacobian; the next rows follow
        int column;  ///< which unknown of the subproblem
        double sign;
    };

    /// The free inputs of one of the equations, and its first row.
    std::span<const Slot> slotsOf(std::size_t equation) const {
        const auto from = static_cast<std::size_t>(m_firstSlot[equation]);
        return std::span(m_slots).subspan(from, static_cast<std::size_t>(m_firstSlot[equation + 1]) - from);
    }
    int firstRowOf(std::size_t equation) const { return m_firstRow[equation]; }

    /// Ordered when it is first asked for: where there are no equations nobody asks.
    LinearSolver& linearSolver();

    /// What one iteration takes: unknowns and rows gone through, and in the same measure what factors that fill up take
    /// beside that.
    long workOfIteration() const { return workOf(m_linear); }

    /// What all factorisations have taken so far, whatever they were for, in the same measure.
    long factorWork() const { return m_factorWork; }
    void countFactors(const LinearSolver& factors) { m_factorWork += workOf(factors); }
    void countDense() { m_factorWork += workOfDense(); }

    /// The nearest point that was found with the factors at hand: a search that begins there, for other targets,
    /// begins with all of it. No weights: there is nothing to begin with.
    struct Carried {
        std::vector<double> weights, targets, x, multiplier;
        double residual = 0.0;
        bool isCurved = false;  ///< the factors know how the equations bend
        int solves = 0;         ///< of the first search with these factors; 0: there was none yet
        int excess = 0;         ///< solves of later searches above that
        /// What the targets changed by in the search that came here, and what of its way the factors did not foretell.
        std::vector<double> change, bend, multiplierBend;
    };
    Carried& carried() { return m_carried; }

    /// Made when it is first asked for, and kept.
    LagrangianHessian& curvature();
    EquationSystem& system() { return m_system; }

private:
    /// One value that is an unknown's, as nearly all are; close together because all are written in every iteration.
    struct Equal {
        int value, column;
    };

    /// One that hangs on an unknown otherwise.
    struct Member {
        int value, column;
        double sign, offset;
    };

    /// What linearise() needs of a slot, close together because all are gone through in every iteration.
    struct Place {
        int entry;
        std::int16_t input;
        bool isNegative;
    };

    /// What a wish misses: one value of its own, and the row that tells it.
    struct Slack {
        int value, column, row;
    };

    long workOf(const LinearSolver& factors) const;
    long workOfDense() const;
    void collectEquations();
    void makePattern();
    void listSlacks();

    EquationSystem& m_system;
    std::vector<int> m_unknowns;
    std::vector<int> m_equations;
    std::vector<double> m_metric;
    std::vector<Equal> m_equals;
    std::vector<Member> m_members;
    std::vector<double> m_weights;  ///< of the unknowns' values together, see EquationSystem::weightOf()
    std::vector<Slack> m_slacks;
    std::vector<int> m_entities, m_senses;
    std::vector<int> m_firstRow;   ///< per equation
    std::vector<int> m_firstSlot;  ///< per equation, one more at the end
    std::vector<Slot> m_slots;
    std::vector<Place> m_places;  ///< per slot
    std::vector<double> m_jacobian;
    std::vector<double> m_slopes;
    ColumnPattern m_pattern;
    LinearSolver m_linear;
    long m_factorWork = 0;
    Carried m_carried;
    std::unique_ptr<LagrangianHessian> m_curvature;
};

/// Largest absolute entry; not a number when one is not.
double largest(std::span<const double> numbers);

/// Euclidean length.
double lengthOf(std::span<const double> numbers);

}  // namespace holdfast::solver::detail
