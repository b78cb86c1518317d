#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include <holdfast/solver/Export.h>
#include <holdfast/solver/FreeMotion.h>
#include <holdfast/solver/Solve.h>

namespace holdfast::solver {

/// In how many independent ways an entity can move while all constraints hold. Those of several entities do not add up:
/// what moves together is counted with each.
struct EntityFreedom {
    EntityId entity;
    int freedom;
    /// What these ways are. Where constraints hold they are as many as the freedom, of an entity with more than 24 ways
    /// some 24 of them. Empty without SolveOptions::tellsMotions, and when a limit ended the diagnosis early.
    std::vector<FreeMotion> motions{};
    bool isFree = false;  ///< motions: nothing holds the entity at all
};

/// Entities that constraints tie together.
struct Part {
    std::vector<EntityId> entities{};
    int freedom = 0;  ///< numbers that remain to be chosen
};

/// A constraint that others imply, all of it or some of its equations.
struct Redundancy {
    ConstraintId constraint;
    int equations;  ///< how many of them others imply
    bool isWhole;   ///< all
};

/// Constraints, with targets where some were given, that cannot hold together.
struct Conflict {
    std::vector<ConstraintId> constraints{};
    std::vector<std::size_t> targets{};  ///< numbers of the targets that take part
    /// Leave out any one of them, and the others can hold: a solution was found for each.
    bool isMinimal = false;

    bool isEmpty() const { return constraints.empty() && targets.empty(); }
};

struct Diagnosis {
    int freedom = 0;                        ///< degrees of freedom of the whole sketch
    std::vector<Part> parts{};              ///< by their first entity; fixed entities belong to none
    std::vector<EntityFreedom> entities{};  ///< all, in their order
    std::vector<Redundancy> redundant{};    ///< of two that imply each other the one added later
    std::vector<Conflict> conflicts{};      ///< eight at most, without targets; none when all constraints hold
    double worstResidual = 0.0;             ///< of the constraint that holds worst now, as a length
    std::optional<ConstraintId> worstConstraint{};
    /// none; or why the search for conflicts and motions ended early: iterationLimit, timeLimit, cancelled
    std::optional<Ending> endedEarly{};

    /// A few lines of text.
    HOLDFAST_SOLVER_EXPORT std::string report() const;
};

/// What is free, said twice, or contradictory, where the sketch is now. Freedom is counted where the sketch can move,
/// not only its first derivatives; see docs/solver.md. Nothing is both redundant and in conflict. Of the options,
/// tolerance, limits and tellsMotions count. An error for options that make no sense.
///
/// Cost: near to linear in the sketch; each conflict costs many solves of the part concerned, and motions cost a
/// factorisation of the sketch and as many solves with it as its largest entity has numbers, at most 24.
HOLDFAST_SOLVER_EXPORT Result<Diagnosis> diagnose(const Sketch& sketch, const SolveOptions& options = {});

/// The constraints that cannot hold together (with the targets), while any of them left out frees the others: each was
/// left out and the rest solved (U. Junker, QuickXplain). Empty when they can hold, or when a limit ends the search. A
/// search that would take more than about a second ends with a set that may be larger than it has to be; so does one
/// whose members could not all be shown to matter: Conflict::isMinimal is false then.
HOLDFAST_SOLVER_EXPORT Result<Conflict> findConflict(const Sketch& sketch, std::span<const Target> targets = {},
                                                     const SolveOptions& options = {});

}  // namespace holdfast::solver
