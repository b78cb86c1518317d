#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "solver/src/api/ConstraintReading.h"
#include "solver/src/api/Running.h"
#include "solver/src/residuals/Operands.h"

namespace holdfast::solver {

using detail::at;

namespace {

Ending endingOf(detail::SolveStatus status) {
    switch (status) {
        case detail::SolveStatus::unchanged:
            return Ending::unchanged;
        case detail::SolveStatus::solved:
            return Ending::solved;
        case detail::SolveStatus::conflicting:
            return Ending::conflicting;
        case detail::SolveStatus::degenerate:
            return Ending::degenerate;
        case detail::SolveStatus::unreached:
            break;
    }
    return Ending::unreached;
}

Result<std::vector<detail::ValueGoal>> valuesOf(const SketchImpl& sketch, std::span<const ValueGoal> goals) {
    std::vector<detail::ValueGoal> values;
    std::unordered_set<int> named;
    for (const ValueGoal& goal : goals) {
        const auto number = dimensionFor(sketch, goal.dimension, goal.value);
        if (!number)
            return number.error();
        if (!sketch.data.constraints[at(number.value())].binds())
            return Error{"it is switched off or only measures", toString(goal.dimension),
                         "make it bind by setActive and setDriving"};
        if (!named.insert(number.value()).second)
            return Error{"two values are asked of it", toString(goal.dimension), "ask for one"};
        values.push_back({number.value(), goal.value});
    }
    return values;
}

Result<std::vector<detail::Target>> keptAt(const SketchImpl& sketch, std::span<const PointId> points) {
    std::vector<detail::Target> kept;
    for (const PointId point : points) {
        const auto handle = handleOf(sketch, point);
        if (!handle)
            return handle.error();
        for (const int value : {handle.value(), handle.value() + 1})
            kept.push_back({value, sketch.data.values[at(value)]});
    }
    return kept;
}

Result<detail::SolveRequest> requestOf(const SketchImpl& sketch, std::span<const Target> targets,
                                       const SolveOptions& options) {
    if (auto fault = faultOf(options))
        return *std::move(fault);
    auto wanted = targetsOf(sketch, targets);
    if (!wanted)
        return wanted.error();
    auto values = valuesOf(sketch, options.values);
    if (!values)
        return values.error();
    auto kept = keptAt(sketch, options.kept);
    if (!kept)
        return kept.error();
    detail::SolveRequest request;
    request.targets = std::move(wanted).value();
    request.values = std::move(values).value();
    request.kept = std::move(kept).value();
    for (const EntityId id : options.edited) {
        if (sketch.find(id) < 0)
            return noSuch(id);
        request.edited.push_back(sketch.find(id));
    }
    request.reach = static_cast<detail::Scope>(options.scope);
    request.lastLevel = static_cast<detail::RelaxationLevel>(options.firmness);
    request.keepsShapes = options.keepsShapes;
    request.threads = options.threads;
    request.namesConflicts = options.explainsConflicts;
    return request;
}

Reached reachedOf(const SketchImpl& sketch, const detail::ReachedPart& found) {
    Reached reached{found.part, {}};
    for (std::size_t i = 0; i < found.dimensions.size(); ++i)
        reached.dimensions.push_back(
            {sketch.constraintId(found.dimensions[i].constraint), found.from[i], found.dimensions[i].goal});
    return reached;
}

}  // namespace

static_assert(static_cast<int>(Scope::part) == static_cast<int>(detail::Scope::part));
static_assert(static_cast<int>(Firmness::wishes) == static_cast<int>(detail::RelaxationLevel::wishes));

std::optional<Error> faultOf(const SolveOptions& options) {
    // Parts of the sketch's size: iterations strive for a thousandth, and 1e-15 is what rounding leaves; a constraint
    // that is off by more than a thousandth can be seen not to hold.
    constexpr double sharpest = 1e-12, loosest = 1e-3;
    if (!(options.tolerance >= sharpest && options.tolerance <= loosest))
        return Error{"the tolerance is not in 1e-12 to 1e-3", "solve options",
                     "give it as a part of the sketch's size, 1e-10 when in doubt"};
    if (options.iterations < 0)
        return Error{"the number of iterations is negative", "solve options", "give 0 or more"};
    if (options.threads < 0)
        return Error{"the number of threads is negative", "solve options", "give 1 or more, or 0 for all cores"};
    return std::nullopt;
}

detail::Budget budgetOf(const SolveOptions& options) {
    using Clock = detail::Budget::Clock;
    const Clock::time_point now = Clock::now();
    // A limit beyond the clock's end is none.
    const bool hasLimit = options.timeLimit && *options.timeLimit < Clock::time_point::max() - now;
    return {options.iterations,
            hasLimit ? now + std::chrono::duration_cast<Clock::duration>(*options.timeLimit) : Clock::time_point::max(),
            options.isCancelled};
}

Ending endingOf(detail::Budget::Overrun overrun) {
    switch (overrun) {
        case detail::Budget::Overrun::time:
            return Ending::timeLimit;
        case detail::Budget::Overrun::cancelled:
            return Ending::cancelled;
        default:
            return Ending::iterationLimit;
    }
}

Result<int> handleOf(const SketchImpl& sketch, PointId point) {
    if (sketch.find(point.entity()) < 0)
        return noSuch(point.entity());
    const auto operand = detail::pointAt(sketch.data, sketch.placeOf(point));
    if (!operand)
        return Error{"there is no such point", toString(point), "name a point that the entity has"};
    if (!detail::isDirect(*operand))
        return Error{"the point is computed from others and cannot be moved by itself", toString(point),
                     "tie a point to it by a constraint and move that"};
    return operand->inputs.front();
}

Result<std::vector<detail::Target>> targetsOf(const SketchImpl& sketch, std::span<const Target> targets) {
    std::vector<detail::Target> wanted;
    for (const Target& target : targets) {
        const auto handle = handleOf(sketch, target.point);
        if (!handle)
            return handle.error();
        if (!geometry::isFinite(target.goal))
            return Error{"its goal is not finite", toString(target.point), "give finite numbers"};
        wanted.push_back({handle.value(), target.goal.x});
        wanted.push_back({handle.value() + 1, target.goal.y});
    }
    return wanted;
}

SolveResult invalid(Error error) {
    SolveResult result;
    result.ending = Ending::invalid;
    result.error = std::move(error);
    return result;
}

SolveResult resultOf(const SketchImpl& sketch, const detail::SolveResult& found, const detail::Budget& budget) {
    SolveResult result;
    result.ending = endingOf(found.status);
    if (!found.isSolved() && detail::isSpent(&budget))
        result.ending = endingOf(budget.overrun());
    result.firmness = static_cast<Firmness>(found.level);
    result.iterations = found.iterations;
    result.worstResidual = found.residual;
    if (found.worstConstraint >= 0)
        result.worstConstraint = sketch.constraintId(found.worstConstraint);
    for (const detail::Movement& movement : found.movements)
        result.moved.push_back({sketch.entityId(movement.entity), movement.distance});
    for (const int c : found.conflicting)
        result.conflicting.push_back(sketch.constraintId(c));
    for (const int value : found.contradictedTargets) {
        // Two values for each target.
        const std::size_t target = at(value) / 2;
        if (result.contradictedTargets.empty() || result.contradictedTargets.back() != target)
            result.contradictedTargets.push_back(target);
    }
    result.isConflictMinimal = found.isConflictMinimal;
    if (found.reached)
        result.reached = reachedOf(sketch, *found.reached);
    for (const int c : found.leftAlone)
        result.leftAlone.push_back(sketch.constraintId(c));
    if (found.degeneracy && result.ending == Ending::degenerate)
        result.flaw = found.degeneracy->what;
    result.times = {found.times.building, found.times.iterating, found.times.explaining};
    return result;
}

SolveResult solve(Sketch& sketch, const SolveOptions& options) {
    return solve(sketch, std::span<const Target>(), options);
}

SolveResult solve(Sketch& sketch, std::span<const Target> targets, const SolveOptions& options) {
    SketchImpl& impl = SketchAccess::of(sketch);
    auto request = requestOf(impl, targets, options);
    if (!request)
        return invalid(request.error());
    const Preparation preparation(impl.data, options.tolerance);
    Undoing undoing(impl.data, request.value().values);
    detail::Budget budget = budgetOf(options);
    try {
        detail::SolveRequest wanted = std::move(request).value();
        wanted.budget = &budget;
        const detail::SolveResult found = detail::solve(impl.data, wanted);
        SolveResult result = resultOf(impl, found, budget);
        undoing.keep();
        for (std::size_t i = 0; i < options.values.size() && result.isSolved(); ++i)
            giveValue(impl, impl.find(options.values[i].dimension), options.values[i].value);
        impl.data.takeReference();
        if (result.ending == Ending::solved || !options.values.empty())
            ++impl.revision;
        return result;
    } catch (const detail::SketchError& e) {
        return invalid({e.what(), "sketch", "put the constraint's entities elsewhere, or remove it"});
    }
}

}  // namespace holdfast::solver
