#pragma once

#include "solver/src/Uses.h"
#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/numerics/Budget.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Entities that constraints tie together, and how freely they can move.
struct SketchPart {
    std::vector<int> entities;  ///< ascending
    int freedom = 0;            ///< values that remain to be chosen
};

/// A constraint that others imply, all of it or some of its equations.
struct Redundancy {
    int constraint = -1;
    int redundantEquations = 0;
    bool isWhole = false;
};

struct Diagnosis {
    int freedom = 0;                     ///< of the whole sketch
    std::vector<SketchPart> parts;       ///< by their first entity; fixed entities belong to none
    std::vector<Redundancy> redundant;   ///< ascending; of two that imply each other the later drawn one
    std::vector<ConflictSet> conflicts;  ///< constraints that cannot hold together
    int worstConstraint = -1;            ///< the binding constraint that is farthest from holding
    double worstViolation = 0.0;         ///< by how much, as a length
    std::vector<int> freedomOfEntity;    ///< when asked for: in how many independent ways each entity can move
};

/// Degrees of freedom, redundancy and conflicts of a sketch where it is. Conflicts are searched for only when a
/// constraint does not hold; the sketch is not changed. Throws SketchError as solve does.
///
/// The freedom of single entities costs about as much again as the rest: each is by how much the rank of the Jacobian
/// would grow if the entity were held.
Diagnosis diagnose(const SketchData& sketch, bool countsEntities = false, Budget* budget = nullptr);

/// What others imply, as if no constraints of the sketch were in conflict: the elimination without the search.
struct Redundancies {
    std::vector<Redundancy> constraints;
    int equations = 0;  ///< of all constraints and rules; which of them are spare is a choice, how many is none
};
Redundancies redundanciesOf(const SketchData& sketch);

}  // namespace holdfast::solver::detail
