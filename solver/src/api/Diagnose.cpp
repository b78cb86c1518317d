#include "solver/src/diagnosis/Diagnose.h"

#include <holdfast/solver/Diagnose.h>

#include <cassert>
#include <utility>

#include "solver/src/api/Running.h"
#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/diagnosis/FreeMotions.h"

namespace holdfast::solver {

using detail::at;

namespace {

std::vector<ConstraintId> idsOf(const SketchImpl& sketch, std::span<const int> constraints) {
    std::vector<ConstraintId> ids;
    for (const int c : constraints)
        ids.push_back(sketch.constraintId(c));
    return ids;
}

/// The sketch as it is now, with the options' tolerance.
detail::SketchData dataOf(const SketchImpl& sketch, const SolveOptions& options) {
    detail::SketchData data = sketch.data;
    data.takeReference();
    data.tolerance = options.tolerance;
    return data;
}

Diagnosis diagnosisOf(const SketchImpl& sketch, const detail::Diagnosis& found) {
    Diagnosis diagnosis;
    diagnosis.freedom = found.freedom;
    for (const detail::SketchPart& part : found.parts) {
        diagnosis.parts.push_back({{}, part.freedom});
        for (const int entity : part.entities)
            diagnosis.parts.back().entities.push_back(sketch.entityId(entity));
    }
    for (std::size_t i = 0; i < found.freedomOfEntity.size(); ++i)
        diagnosis.entities.push_back({sketch.entityId(static_cast<int>(i)), found.freedomOfEntity[i], {}, false});
    for (const detail::Redundancy& r : found.redundant)
        diagnosis.redundant.push_back({sketch.constraintId(r.constraint), r.redundantEquations, r.isWhole});
    for (const detail::ConflictSet& conflict : found.conflicts)
        diagnosis.conflicts.push_back({idsOf(sketch, conflict.constraints), {}, conflict.isMinimal});
    diagnosis.worstResidual = found.worstViolation;
    if (found.worstConstraint >= 0)
        diagnosis.worstConstraint = sketch.constraintId(found.worstConstraint);
    return diagnosis;
}

void tellMotions(std::vector<EntityMotions> found, std::vector<EntityFreedom>& entities) {
    assert(found.size() == entities.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        entities[i].motions = std::move(found[i].motions);
        entities[i].isFree = found[i].isFree;
    }
}

}  // namespace

Result<Diagnosis> diagnose(const Sketch& sketch, const SolveOptions& options) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    if (auto fault = faultOf(options))
        return *std::move(fault);
    detail::Budget budget = budgetOf(options);
    try {
        const detail::SketchData data = dataOf(impl, options);
        Diagnosis diagnosis = diagnosisOf(impl, detail::diagnose(data, true, &budget));
        if (options.tellsMotions && !detail::isSpent(&budget)) {
            std::vector<EntityMotions> motions = detail::freeMotionsOf(data, &budget);
            if (!detail::isSpent(&budget))
                tellMotions(std::move(motions), diagnosis.entities);
        }
        if (detail::isSpent(&budget))
            diagnosis.endedEarly = endingOf(budget.overrun());
        return diagnosis;
    } catch (const detail::SketchError& e) {
        return Error{e.what(), "sketch", "put the constraint's entities elsewhere, or remove it"};
    }
}

Result<Conflict> findConflict(const Sketch& sketch, std::span<const Target> targets, const SolveOptions& options) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    if (auto fault = faultOf(options))
        return *std::move(fault);
    const auto wanted = targetsOf(impl, targets);
    if (!wanted)
        return wanted.error();
    detail::Budget budget = budgetOf(options);
    try {
        const detail::SketchData data = dataOf(impl, options);
        const detail::ConflictSet set =
            detail::findConflict(data, detail::bindingConstraints(data), wanted.value(), &budget);
        Conflict conflict{idsOf(impl, set.constraints), {}, set.isMinimal};
        for (const int value : set.targets) {
            if (const std::size_t target = at(value) / 2; conflict.targets.empty() || conflict.targets.back() != target)
                conflict.targets.push_back(target);
        }
        return conflict;
    } catch (const detail::SketchError& e) {
        return Error{e.what(), "sketch", "put the constraint's entities elsewhere, or remove it"};
    }
}

}  // namespace holdfast::solver
