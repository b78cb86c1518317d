#pragma once

#include <compare>

#include "solver/src/Uses.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

/// What one solve of a sketch is about.
struct Task {
    RelaxationLevel level = RelaxationLevel::exact;
    std::span<const Target> targets{};
    std::span<const Target> kept{};     ///< constants too, but for those that ties contradict
    std::span<const int> edited{};      ///< entities whose values give way last
    std::span<const int> dimensions{};  ///< constraints whose values are asked for
    bool isEdit = false;                ///< only what is connected with these is solved
    std::span<const KeptShape> shapes{};
    std::vector<char> isFirm{};          ///< sizes of those shapes that stay exactly
    std::vector<double> emphasis{};      ///< of those sizes; see KeptSizes
    double sparedBelow = 0.0;            ///< the same
    std::vector<int> spared{};           ///< the same
    bool sparesFirst = false;            ///< the same
    std::span<const double> aims{};      ///< where values would like to be; empty: where they are
    std::span<const double> passed{};    ///< values of the last place on the way; see SolverState::setPassed
    double least = SolverState::kLeast;  ///< see SolverState::setLeast
    bool isQuick = false;
    bool isNearest = true;   ///< false: any solution will do
    bool isMending = false;  ///< tangencies that did not hold at the reference may turn over; see Answer::left
    Scope reach = Scope::rings;
    Budget* budget = nullptr;
    EquationShelf* shelf = nullptr;  ///< null: equations are built anew
};

/// One solve of a sketch in one level, from where its values are. The sketch is only read.
class Run {
public:
    /// Throws SketchError for a constraint that its entities cannot have.
    Run(const SketchData& sketch, const Task& task);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// Movements are left out.
    SolveResult solve();

    /// The sketch's values after a solve that has succeeded.
    std::span<const double> values() const;

    /// How far geometry moves when a value changes by one.
    std::span<const double> metric() const;

    /// Entities that are connected with the edit, ascending; all without an edit.
    std::vector<int> concerned() const;
    /// Their values that the edit can move. An entity may be connected with it by its place and have a radius that is
    /// not: what is not solved for is not to be anywhere else either.
    std::vector<int> concernedValues() const;

    /// Sizes that changed by no more than a small part of what moved, so that they may well stay: by their number.
    std::vector<char> unchangedSizes() const;
    /// The same of lengths and bends alone, and those that changed by more: the least changed first.
    std::vector<int> unchangedLengths() const;
    std::vector<int> changedLengths() const;
    /// Lengths and bends that are not what they were exactly.
    int inexactLengths() const;
    /// How many of each kind have changed by more.
    struct Changes {
        int bends = 0, lengths = 0, sweeps = 0, turns = 0;
        auto operator<=>(const Changes&) const = default;
    };
    Changes changes() const;
    /// How much more each of them is to count so that few change by much instead of many by a little.
    std::vector<double> emphasis() const;
    /// The sum of the changes of lengths and bends, as lengths; and the largest change as a part of the size.
    double strain() const;
    bool isBent() const;
    /// The same without turns: a shape is another one, not only its place and how it lies.
    bool isReshaped() const;
    double mostChanged() const;

    /// Something that the edit does not concern does not hold.
    bool leavesBroken() const { return m_state.hasBrokenOutside(); }

    bool concernsConstraint(int constraint) const { return m_state.concernsConstraint(constraint); }

    /// What it has cost so far: iterations, times their unknowns and rows.
    long work() const { return m_state.work(); }

    /// What of that, and beside it where steps were in doubt, factorisations have cost.
    long factorWork() const { return m_state.factorWork(); }

    /// A failure that no way leads around: values that are constants by themselves contradict each other.
    bool isContradicted() const { return m_isContradicted; }

    /// Constraints that the failure points at, the likeliest culprits; all of the part that failed when in doubt.
    std::vector<int> suspects() const { return m_suspects; }

private:
    EquationSystem takeSystem();
    SolverState takeState();
    bool isUnchanged(const SizeRow& size, double way) const;
    bool canBeKept(const SizeRow& size) const;
    std::vector<int> lengthsThatAre(bool unchanged) const;
    void wishEdited();
    bool placeTargets();
    bool meetsConstants();
    bool solveParts();
    bool solvePart(const std::vector<int>& part, const std::vector<int>& seeds);
    bool isOverBudget();
    bool leavesPinnedSound();
    void noteWorst(int equation);
    void suspectPart(std::span<const int> part) { suspectAround(entitiesOf(system(), part)); }
    void suspectAround(std::vector<int> entities);
    void suspectPart();
    void tidySuspects();
    double longestWay() const;

    EquationSystem& system() { return m_state.system(); }
    const EquationSystem& system() const { return m_state.system(); }

    const SketchData& m_sketch;
    const Task& m_task;
    int m_place = -1;  ///< of the equations on the task's shelf
    SolverState m_state;
    SolveResult m_result;
    bool m_isContradicted = false;
    std::vector<int> m_seeds;
    std::vector<int> m_suspects;
};

/// The entities that an edit names itself: edited ones, those of its targets and of its dimensions. Ascending.
std::vector<int> namedEntities(const SketchData& sketch, const Task& task);

}  // namespace holdfast::solver::detail
