#pragma once

#include <limits>
#include <memory>
#include <span>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Budget.h"
#include "solver/src/residuals/EquationShelf.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// A value that an edit asks for.
struct Target {
    int value = -1;  ///< in SketchData::values
    double goal = 0.0;
};

/// A dimension that an edit gives another value.
struct ValueGoal {
    int constraint = -1;
    double goal = 0.0;
};

/// How far a solve may reach.
enum class Scope {
    rings,  ///< the neighbourhood of the edit, widened only as far as it takes: fewest entities move
    part    ///< everything that is connected with the edit: least movement in total
};

/// How firmly targets are meant, from the first to the last that is tried.
enum class RelaxationLevel {
    exact,  ///< A: the targets are constants, the rest of the edited entities gives way last
    sizes,  ///< B: the targets are strong wishes, the sizes of the edited entities are constants
    wishes  ///< C: both are wishes, sizes the weaker
};

/// What is tried for a solve that does not succeed at once.
enum class Patience {
    once,  ///< one quick try, and one from where everything has gone along with what was edited
    way,   ///< and the way from before is followed
    all    ///< and slow ways of solving
};

struct SolveRequest {
    std::vector<Target> targets{};    ///< empty: only makes the constraints hold again
    std::vector<Target> kept{};       ///< values that stay where they are if the constraints let them
    std::vector<ValueGoal> values{};  ///< written into the sketch's constraints when they are reached
    std::vector<int> edited{};        ///< entities that the edit is about
    std::vector<int> added{};         ///< constraints that the edit has added
    Scope reach = Scope::rings;
    RelaxationLevel lastLevel = RelaxationLevel::exact;  ///< no level after this one is tried
    /// Sizes of what the edit does not name are kept where shifting and turning can do it. Without an edit, dimensions
    /// that alone do not hold are one.
    bool keepsShapes = false;
    Patience patience = Patience::all;
    /// An edit that keeps shapes and that no way leads to is asked for in several parts, one after the other, each as
    /// if the drawing had always been as the one before has left it.
    bool mayDivide = true;
    /// Only whether there is a solution is asked: it need not be the nearest one, and no constraint is left alone.
    bool asksWhether = false;
    int threads = 1;             ///< independent parts are solved at once, without an edit; 0: on all cores
    bool namesConflicts = true;  ///< search for the constraints in conflict when the solve fails
    /// The tries together may cost this much, as SolveResult::factorWork counts it, if that is less than usual: about
    /// six million a second. It is counted and not timed, so that the same edit ends the same way on every machine.
    long mostWork = std::numeric_limits<long>::max();
    Budget* budget = nullptr;  ///< when it runs out the sketch stays as it is, and no conflict is searched for
    /// Of this sketch, for a request that others are like; null: equations are built anew.
    EquationShelf* shelf = nullptr;
};

enum class SolveStatus {
    unchanged,  ///< everything held already
    solved,
    conflicting,  ///< constraints contradict each other or the edit
    degenerate,   ///< solutions were found, but with collapsed or turned entities only
    unreached     ///< no solution was found, and no contradiction either; or the budget ran out
};

/// Where the time went, in seconds.
struct SolveTimes {
    double building = 0.0;    ///< checking constraints, presolve, equations
    double iterating = 0.0;   ///< steps, in all levels that were tried
    double explaining = 0.0;  ///< searching for the constraints in conflict
};

/// How far an entity moved: the longest way of one of its defining points.
struct Movement {
    int entity = -1;
    double distance = 0.0;
};

/// How far the way of an edit could be followed that was not reached, or how far a dimension of it could be led.
struct ReachedPart {
    double part = 0.0;                    ///< 0: not at all; below 1
    std::vector<ValueGoal> dimensions{};  ///< the last values at which all held
    std::vector<double> from{};           ///< of each of these the value at the beginning
    std::vector<double> values{};         ///< the sketch's values there
};

struct SolveResult {
    SolveStatus status = SolveStatus::unchanged;
    RelaxationLevel level = RelaxationLevel::exact;
    int iterations = 0;
    long work = 0;                         ///< unknowns and rows gone through, once for every iteration of every try
    long factorWork = 0;                   ///< the same for every factorisation, several of which an iteration may need
    double residual = 0.0;                 ///< of the constraint that holds worst, as a length
    int worstConstraint = -1;              ///< -1: none, or a rule of an entity
    std::vector<int> conflicting;          ///< constraints that cannot hold together (with the targets), ascending
    std::vector<int> contradictedTargets;  ///< numbers of targets that are part of the conflict
    bool isConflictMinimal = false;        ///< without any one of these the others can hold
    std::optional<Degeneracy> degeneracy;  ///< what was wrong with the solution that was refused
    std::optional<ReachedPart> reached;    ///< when a way was followed in vain
    std::vector<int> leftAlone;            ///< constraints that did not hold before and could not be made to
    std::vector<Movement> movements;       ///< entities that moved, ascending
    SolveTimes times;

    bool isSolved() const { return status == SolveStatus::solved || status == SolveStatus::unchanged; }
};

/// Moves the sketch as little as it takes for all binding constraints to hold and the targets to be met. When that
/// cannot be, the sketch stays as it is and the result says what stands in the way. What is not connected with a
/// change does not move, to the last bit, and cannot stop it: with targets, values or edited entities only what is
/// connected with them is solved. Without, everything is.
///
/// What is not reached at once is approached along its way in steps that are halved until they are sound, down to 1/128
/// of the way; that costs as many solves. The answer is then taken as near to where the sketch was as can be.
///
/// Throws SketchError for a constraint that its entities cannot have.
SolveResult solve(SketchData& sketch, const SolveRequest& request);

/// The same, all parts as one.
SolveResult solveWhole(SketchData& sketch, const SolveRequest& request);

/// Of an entity that is not edited less is left, in these values of the sketch, than an edit that does not ask for it
/// leaves: a hundredth of a length, a radius or a sweep at the reference. For what several solves have led to, of which
/// each has only looked at its own part of the way.
bool isRuined(const SketchData& sketch, std::span<const int> edited, std::span<const double> values);

}  // namespace holdfast::solver::detail
