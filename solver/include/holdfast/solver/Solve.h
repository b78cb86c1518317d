#pragma once

#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <holdfast/solver/Export.h>
#include <holdfast/solver/Sketch.h>

namespace holdfast::solver {

/// Where a point shall go. Points that are computed from others (the middle of a curve, the centre of an arc segment,
/// the end of a spline that is not clamped) cannot be targets.
struct Target {
    PointId point;
    Vec2 goal;
};

/// The value that a driving dimension shall have.
struct ValueGoal {
    ConstraintId dimension;
    double value;  ///< as Sketch::setValue takes it: a length, or radians
};

/// How far a solve may reach.
enum class Scope {
    rings,  ///< the neighbourhood of the change, widened only as far as it takes: fewest entities move
    part    ///< everything that is connected with the change: least movement in total
};

/// How firmly targets are meant; what comes earlier is tried first.
enum class Firmness {
    exact,  ///< the targets are met
    sizes,  ///< the targets are strong wishes, and the sizes of the edited entities stay
    wishes  ///< both are wishes, sizes the weaker
};

struct SolveOptions {
    /// What counts as satisfied, as a part of the sketch's size (the diagonal of the box around it): 1e-12 to 1e-3.
    double tolerance = 1e-10;
    /// Most factorisations, all together.
    int iterations = std::numeric_limits<int>::max();
    /// Looked at before every factorisation, as is isCancelled; a single one is not interrupted.
    std::optional<std::chrono::nanoseconds> timeLimit{};
    /// Asked in the thread that solves. What it throws leaves the solve, and the sketch is as before.
    std::function<bool()> isCancelled{};
    Scope scope = Scope::rings;
    Firmness firmness = Firmness::exact;  ///< the loosest that may be tried
    std::vector<EntityId> edited{};       ///< what the targets are about: its shape gives way last
    bool explainsConflicts = true;        ///< a failed solve searches for the constraints in conflict: many solves
    /// Dimensions that get another value. What is not reached at once is led along its way, from what they measure
    /// through the values between, in up to some hundred steps. The sketch has the new values after a solve that met
    /// them, and the old ones after any other; see SolveResult::reached. An error: no driving dimension, a value that
    /// it cannot have, one dimension twice.
    std::vector<ValueGoal> values{};
    /// Points that stay where they are if the constraints let them, as the other end of a line that is edited at one.
    std::vector<PointId> kept{};
    /// Shapes before places: of what the options do not name, what can follow by shifting shifts, what can follow by
    /// turning turns, and lengths give way before radii. Without, movement is least and everything gives way a little.
    /// Without targets, values and edited entities it counts where dimensions alone do not hold. Costs a few more
    /// solves.
    bool keepsShapes = false;
    /// Parts of the sketch that no constraint connects are solved at once, in so many threads; 0: in as many as the
    /// machine runs. Counts without targets, values, kept points and edited entities. The answer is the same for every
    /// number. With a limit of iterations or residuals of one's own the calling thread is the only one.
    int threads = 1;
    bool tellsMotions = true;  ///< diagnose says how each entity can move: some more solves
};

/// Why a solve ended. After `unchanged` and `solved` all constraints hold; after any other the sketch is as before, to
/// the last bit.
enum class Ending {
    unchanged,       ///< everything held already
    solved,          ///< the constraints hold now, and the targets are met
    conflicting,     ///< constraints contradict each other or the targets
    degenerate,      ///< solutions were found, but with entities that have collapsed or turned inside out
    unreached,       ///< no solution was found, and no contradiction either
    iterationLimit,  ///< SolveOptions::iterations
    timeLimit,       ///< SolveOptions::timeLimit
    cancelled,       ///< SolveOptions::isCancelled
    invalid          ///< the options or the targets make no sense: see SolveResult::error
};

/// "solved", "time limit", ...
HOLDFAST_SOLVER_EXPORT std::string_view toString(Ending ending);

/// How far an entity moved: the longest way of one of its defining points.
struct Movement {
    EntityId entity;
    double distance;
};

/// A dimension that could be led from one value to another, at which all held, and not to the one asked for.
struct LedDimension {
    ConstraintId dimension;
    double from, to;  ///< as Sketch::setValue takes them
};

/// How far the way of a solve could be followed that did not arrive.
struct Reached {
    double part = 0.0;  ///< of the way, which targets and dimensions go together: 0 not at all, always below 1
    std::vector<LedDimension> dimensions{};
};

/// Seconds of wall-clock time; those of parts that threads solve at once are added up.
struct SolveTimes {
    double building = 0.0;    ///< presolve and equations
    double iterating = 0.0;   ///< steps
    double explaining = 0.0;  ///< the search for constraints in conflict
    double total() const { return building + iterating + explaining; }
};

struct SolveResult {
    Ending ending = Ending::unchanged;
    Firmness firmness = Firmness::exact;             ///< under which it was solved
    int iterations = 0;                              ///< factorisations
    double worstResidual = 0.0;                      ///< of the constraint that holds worst, as a length
    std::optional<ConstraintId> worstConstraint{};   ///< none: all hold, or it is a rule of an entity
    std::vector<Movement> moved{};                   ///< in the order of the entities
    std::vector<ConstraintId> conflicting{};         ///< cannot hold together, with the values asked for
    std::vector<std::size_t> contradictedTargets{};  ///< numbers of the targets that take part in the conflict
    /// Leave out any one of these constraints and targets, and the others can hold: a solution was found for each.
    bool isConflictMinimal = false;
    std::optional<Reached> reached{};  ///< a way was followed in vain
    std::vector<ConstraintId>
        leftAlone{};               ///< did not hold before, and neither stopped the solve nor were solved by it
    std::string flaw{};            ///< degenerate: "line e3 would have no length"
    std::optional<Error> error{};  ///< invalid
    SolveTimes times{};

    bool isSolved() const { return ending == Ending::solved || ending == Ending::unchanged; }

    /// One line, without times: "solved in 3 iterations, worst residual 2.1e-15, 4 entities moved".
    HOLDFAST_SOLVER_EXPORT std::string briefReport() const;
    /// All of it, a line for each matter.
    HOLDFAST_SOLVER_EXPORT std::string fullReport() const;
};

/// Moves the sketch as little as it takes for all constraints to hold. What is not connected with a constraint that did
/// not hold does not move, to the last bit. The same sketch and the same options give the same result, to the last bit,
/// on the same machine (unless a time limit or isCancelled ends it).
///
/// Cost: the sketch once, plus the factorisations of what has to move.
HOLDFAST_SOLVER_EXPORT SolveResult solve(Sketch& sketch, const SolveOptions& options = {});

/// The same, and the points come to their targets. With targets, values or edited entities only what is connected with
/// them is solved; constraints elsewhere that do not hold are listed in SolveResult::leftAlone.
HOLDFAST_SOLVER_EXPORT SolveResult solve(Sketch& sketch, std::span<const Target> targets,
                                         const SolveOptions& options = {});

}  // namespace holdfast::solver
