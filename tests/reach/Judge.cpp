#include "tests/reach/Judge.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <optional>

#include "solver/src/diagnosis/Feasibility.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::reach {

namespace {

/// Nothing shrinks below this part of what it was, and nothing goes farther away than so many times the size.
constexpr double kShrunk = 0.01, kAway = 1e4;

/// Sizes that differ by less than this part of themselves have stayed.
constexpr double kStayed = 1e-6;

/// Changed sizes that are tried in one drawing, each by a solve: fewer in a large one, where a solve costs more.
constexpr std::size_t kMostSizes = 12, kMostSizesTimesEntities = 600;

/// Sets of more constraints than this are not tried without each member, which takes as many solves.
constexpr std::size_t kMostMembers = 100;

/// The length of a line, or the radius of a circle or an arc; nothing for others.
std::optional<double> sizeOf(const SketchData& sketch, int number) {
    const SketchEntity& entity = sketch.entities[at(number)];
    const std::span<const double> v = sketch.valuesOf(number);
    if (entity.kind == EntityKind::line)
        return std::hypot(v[2] - v[0], v[3] - v[1]);
    if (entity.kind == EntityKind::circle || entity.kind == EntityKind::arc)
        return v[2];
    return {};
}

/// The sweep of an arc, in radians up to a full turn; nothing for others.
std::optional<double> sweepOf(const SketchData& sketch, int number) {
    if (sketch.entities[at(number)].kind != EntityKind::arc)
        return {};
    const std::span<const double> v = sketch.valuesOf(number);
    const double turn = std::atan2(v[6] - v[1], v[5] - v[0]) - std::atan2(v[4] - v[1], v[3] - v[0]);
    return turn < 0.0 ? turn + 2.0 * std::numbers::pi : turn;
}

int hold(SketchData& sketch, int number, double size) {
    const bool isLine = sketch.entities[at(number)].kind == EntityKind::line;
    SketchConstraint constraint;
    constraint.id = "held";
    constraint.type = isLine ? ConstraintType::distance : ConstraintType::radius;
    constraint.refs = {{number, PlaceKind::whole, 0}};
    constraint.value = size;
    return sketch.addConstraint(std::move(constraint));
}

bool isNear(double a, double b) {
    return std::abs(a - b) <= kStayed * std::max(std::abs(a), std::abs(b));
}

bool hasShrunk(const SketchData& before, const SketchData& after) {
    for (int i = 0; i < static_cast<int>(before.entities.size()); ++i) {
        const std::optional<double> was = sizeOf(before, i), is = sizeOf(after, i);
        const std::optional<double> turned = sweepOf(before, i), turns = sweepOf(after, i);
        if ((was && is && *was > 0.0 && *is < kShrunk * *was) || (turned && turns && *turns < kShrunk * *turned))
            return true;
    }
    return false;
}

bool isFarAway(const SketchData& before, const SketchData& after) {
    const double most = kAway * before.size();
    for (std::size_t v = 0; v < before.values.size(); ++v) {
        if (!(std::abs(after.values[v] - before.values[v]) <= most))
            return true;
    }
    return false;
}

/// A line that points the other way has what was on its left on its right.
bool pointsBack(const SketchData& before, const SketchData& after, int number) {
    if (before.entities[at(number)].kind != EntityKind::line)
        return false;
    const std::span<const double> v = before.valuesOf(number), w = after.valuesOf(number);
    return (v[2] - v[0]) * (w[2] - w[0]) + (v[3] - v[1]) * (w[3] - w[1]) < 0.0;
}

/// One of two circles lay in the other, and the other lies in it now: both still touch on the same side.
bool liesAroundNow(const SketchData& before, const SketchData& after, const SketchConstraint& constraint) {
    if (constraint.type != ConstraintType::tangent || constraint.refs.size() != 2)
        return false;
    const int a = constraint.refs[0].entity, b = constraint.refs[1].entity;
    if (before.entities[at(a)].kind == EntityKind::line || before.entities[at(b)].kind == EntityKind::line ||
        !sizeOf(before, a) || !sizeOf(before, b))
        return false;
    return (*sizeOf(before, a) - *sizeOf(before, b)) * (*sizeOf(after, a) - *sizeOf(after, b)) < 0.0;
}

}  // namespace

double worstResidual(const SketchData& before, const SketchData& after) {
    SketchData anew = after;
    anew.takeReference();
    const std::vector<double> misses = violationsOf(after), missesAnew = violationsOf(anew);
    double worst = misses.back();
    for (std::size_t c = 0; c < after.constraints.size(); ++c) {
        const auto& refs = after.constraints[c].refs;
        const bool isTurned = std::any_of(refs.begin(), refs.end(), [&](const SketchPlace& place) {
            return pointsBack(before, after, place.entity);
        });
        const bool isAnew = isTurned || liesAroundNow(before, after, after.constraints[c]);
        worst = std::max(worst, isAnew ? missesAnew[c] : misses[c]);
    }
    return worst / before.size();
}

bool isSoundAfter(const SketchData& before, const SketchData& after) {
    if (hasShrunk(before, after) || isFarAway(before, after))
        return false;
    SketchData judged = after;
    judged.reference = before.values;
    const EquationSystem system = buildSystem(judged);
    std::vector<int> entities(judged.entities.size()), equations(system.set.equations.size());
    std::iota(entities.begin(), entities.end(), 0);
    std::iota(equations.begin(), equations.end(), 0);
    return !findFlaw(judged, system, entities) && !findTurnedTangency(judged, system, sensesOf(system, equations));
}

int sizesInVain(const SketchData& before, const SketchData& after, const std::vector<Target>& targets) {
    SketchData held = after;
    held.values = held.reference = before.values;
    std::vector<int> changed;
    for (int i = 0; i < static_cast<int>(before.entities.size()); ++i) {
        const std::optional<double> was = sizeOf(before, i), is = sizeOf(after, i);
        if (!was || !is || before.entities[at(i)].fixed)
            continue;
        if (isNear(*was, *is))
            hold(held, i, *was);
        else
            changed.push_back(i);
    }
    const std::size_t most = std::min(kMostSizes, kMostSizesTimesEntities / before.entities.size());
    changed.resize(std::min(changed.size(), most));
    int inVain = 0;
    for (const int i : changed) {
        SketchData more = held;
        hold(more, i, *sizeOf(before, i));
        SketchData tried = more;
        const SolveRequest request{.targets = targets, .reach = Scope::part, .namesConflicts = false};
        if (!solve(tried, request).isSolved() || !isSoundAfter(before, tried))
            continue;
        held = std::move(more);
        ++inVain;
    }
    return inVain;
}

namespace {

/// In one go, on a way, or from somewhere else: a yes is a solution.
bool canHold(const SketchData& sketch, const std::vector<int>& constraints, int without) {
    SketchData part = sketch;
    std::vector<int> active;
    for (SketchConstraint& constraint : part.constraints)
        constraint.active = false;
    for (const int c : constraints)
        if (c != without && sketch.constraints[at(c)].active) {
            part.constraints[at(c)].active = true;
            active.push_back(c);
        }
    Effort effort(nullptr);
    return solve(part, {.reach = Scope::part, .namesConflicts = false}).isSolved() ||
           solver::detail::canHold(sketch, active, {}, Care::thorough, effort);
}

}  // namespace

bool isProvenConflict(const SketchData& before, const SketchData& asked, const std::vector<int>& constraints) {
    if (constraints.empty() || constraints.size() > kMostMembers)
        return false;
    SketchData start = asked;
    start.values = start.reference = before.values;
    if (canHold(start, constraints, -1))
        return false;
    return std::all_of(constraints.begin(), constraints.end(), [&](int c) { return canHold(start, constraints, c); });
}

}  // namespace holdfast::reach
