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
    bool isBarred = false;   ///< and what comes nearer would degenerate
    int iterations = 0;
    double residual = 0.0;
    std::optional<Degeneracy> degeneracy;
};

/// A sketch's system while it is solved: start values, wishes for values, constants of the edit, and the ways of
/// trying to solve a subproblem. The system's values move; the sketch is only read.
class SolverState {
public:
    SolverState(const SketchData& sketch, EquationSystem system);

    /// The same for an edit that concerns only what is connected with some entities: everything else stays as it is,
    /// whether it holds or not.
    SolverState(const SketchData& sketch, EquationSystem system, std::span<const int> about);

    EquationSystem& system() { return m_system; }
    const EquationSystem& system() const { return m_system; }
    const SketchData& sketch() const { return m_sketch; }
    Neighbourhood& neighbourhood() { return m_neighbourhood; }

    /// The value should come to the target; it counts emphasis times as much as others in the movement.
    void wish(int value, double target, double emphasis);

    /// Makes the unknown of a value a constant of this edit. False when the value is bound otherwise already.
    bool pin(int value, double goal);

    /// Where the values would like to be, instead of where they are now. Values of the sketch.
    void aimAt(std::span<const double> values);

    /// The edit is about sizes of this entity: they may shrink as far as it takes.
    void askOf(int entity, Asked what = Asked::sizes);

    /// The part of what it was below which no other size may shrink.
    void setLeast(double least) { m_least = least; }

    /// Where the sketch was last on its way, by its values: what turns inside out is seen from there. Empty: from the
    /// reference. They outlive all attempts.
    void setPassed(std::span<const double> values) { m_passed = values; }

    /// A subproblem that is not solved at once is given up.
    void setQuick(bool isQuick) { m_isQuick = isQuick; }

    /// Without it, any solution will do.
    void setNearest(bool isNearest) { m_isNearest = isNearest; }

    /// What all attempts have cost so far: iterations, times their unknowns and rows.
    long work() const { return m_work; }

    /// What their factorisations have cost, in the same measure: more where steps were in doubt.
    long factorWork() const { return m_factorWork; }

    bool concerns(int entity) const { return m_isConcerned.empty() || m_isConcerned[static_cast<std::size_t>(entity)]; }
    /// An unknown of the edit's part decides on the value.
    bool concernsValue(int value) const {
        const int unknown = m_system.links[static_cast<std::size_t>(value)].unknown;
        return unknown >= 0 && concernsUnknown(unknown);
    }
    bool concernsConstraint(int constraint) const;
    bool concernsEquation(int equation) const;

    /// Something that the edit does not concern does not hold. Linear in the system.
    bool hasBrokenOutside() const;

    /// By how much a size that is kept differs from what it was, as a length.
    double changeOf(const SizeRow& size) const;

    /// Lets each size that is a wish be what it is where the values are now: then its equation holds there, and only
    /// the pull of what it was is left. Linear in the sizes.
    void takeSizes();

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
    /// The same where only the first unknowns have got other wishes since. Cost: theirs.
    void updatePull(const Subproblem& subproblem, std::size_t first, Pull& pull) const;
    std::span<const double> startValues() const { return m_start; }

    /// The part of a length, a radius or a sweep that has to be left of it, unless the edit asks for less: less is no
    /// longer the shape that was drawn.
    static constexpr double kLeast = 0.01;

    /// What the constants of the constraints and of the edit have degenerate by themselves.
    std::optional<Degeneracy> degeneracyInConstants() const;

    /// What they have made shrink to next to nothing of what it was, or moved out of sight; but for what the edit
    /// names.
    std::optional<Degeneracy> ruinInConstants() const;

    /// What all further attempts may cost together; null: no bound. It outlives them.
    void setBudget(Budget* budget) { m_budget = budget; }
    bool hasSpentBudget() const { return isSpent(m_budget); }

    /// Unknowns that took part in solved subproblems, and pinned ones.
    std::span<const int> touched() const { return m_touched; }

private:
    struct SoftTarget {
        double target, emphasis;
    };

    /// Target and weight of one unknown.
    std::pair<double, double> pullOf(int unknown) const;
    std::optional<Degeneracy> degeneracyIn(std::span<const int> entities, std::span<const int> senses,
                                           double margin = 1.0) const;
    std::vector<int> hangingOnPins() const;
    void limitTo(std::span<const int> about);
    void takeConcerned(std::span<const int> entities);
    std::vector<int> tiedToDisplaced() const;
    bool hasMoved(std::size_t value) const;
    bool isConstantAwayFrom(std::span<const double> values, std::size_t value) const;
    /// The first value that is merged with this one, where they are to be another way apart than they are; -1: none.
    int apartFrom(std::span<const double> values, std::size_t value) const;
    bool concernsUnknown(int unknown) const {
        return m_isConcernedUnknown.empty() || m_isConcernedUnknown[static_cast<std::size_t>(unknown)];
    }
    double strainOf(const Subproblem& subproblem) const;
    Attempt trySubproblem(Subproblem& subproblem, bool isWhole);
    Attempt tryCarefully(Subproblem& subproblem, const std::vector<double>& x);
    void count(const Subproblem& subproblem, const IterationReport& report, long factorWorkBefore);
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
    std::vector<char> m_isConcerned, m_isConcernedUnknown;  ///< by entity and by unknown; empty: all are
    std::vector<Asked> m_asked;                             ///< by entity; may be shorter
    double m_least = kLeast;
    std::span<const double> m_passed;
    bool m_isQuick = false, m_isNearest = true;
    long m_work = 0, m_factorWork = 0;
    std::vector<int> m_displaced;  ///< entities with values that are not at the reference before anything is solved
};

}  // namespace holdfast::solver::detail
