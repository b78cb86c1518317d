#include "hosting/evaluator/RotationTrial.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "geometry/Tolerances.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::hosting {

namespace {

void setActive(SketchData& sketch, std::span<const int> constraints, bool active) {
    for (const int c : constraints)
        sketch.constraints[at(c)].active = active;
}

/// For each element whether the targets say where all of it is, and nothing about it is to be found out by solving: a
/// contact along an ellipse or a spline is.
std::vector<char> placedElements(const SketchData& sketch, const EditRequest& request) {
    std::vector<char> isGiven(sketch.values.size(), 0), isPlaced(sketch.entities.size(), 0);
    for (const Target& target : request.targets)
        isGiven[at(target.value)] = 1;
    for (const int number : request.edited) {
        const SketchEntity& element = sketch.entities[at(number)];
        const auto first = isGiven.begin() + element.firstValue;
        const bool hasContacts = element.kind == EntityKind::spline || element.kind == EntityKind::ellipse ||
                                 element.kind == EntityKind::ellipticalArc;
        isPlaced[at(number)] =
            !hasContacts && std::all_of(first, first + element.valueCount, [](char given) { return given != 0; });
    }
    return isPlaced;
}

/// Of some constraints, those that lie on placed elements alone and do not hold there. The sketch is at the targets.
std::vector<int> brokenByTargets(const SketchData& sketch, const EditRequest& request,
                                 const std::vector<int>& constraints) {
    const std::vector<char> isPlaced = placedElements(sketch, request);
    std::vector<int> decided, broken;
    for (const int c : constraints) {
        const auto& refs = sketch.constraints[at(c)].refs;
        if (std::all_of(refs.begin(), refs.end(),
                        [&](const SketchPlace& place) { return isPlaced[at(place.entity)] != 0; }))
            decided.push_back(c);
    }
    if (decided.empty())
        return broken;
    Extract extract(sketch, decided);
    for (SketchConstraint& constraint : extract.sketch().constraints)
        constraint.active = true;
    const std::vector<double> misses = violationsOf(extract.sketch());
    const double limit = kHolds * sketch.size();
    for (std::size_t i = 0; i < decided.size(); ++i)
        if (!(misses[i] <= limit))
            broken.push_back(decided[i]);
    return broken;
}

/// Has candidates bind, the earlier the sooner, as many as can hold beside those that bind already; the others join
/// those against it.
void admit(SketchData& held, const SolveRequest& request, std::span<const int> candidates, std::vector<int>& against) {
    setActive(held, candidates, true);
    if (candidates.empty() || solve(held, request).isSolved())
        return;
    setActive(held, candidates, false);
    if (candidates.size() == 1)
        return against.push_back(candidates.front());
    const std::size_t half = candidates.size() / 2;
    admit(held, request, candidates.first(half), against);
    admit(held, request, candidates.subspan(half), against);
}

}  // namespace

std::vector<int> constraintsTouching(const SketchData& sketch, const std::vector<int>& edited) {
    std::vector<char> isEdited(sketch.entities.size(), 0);
    for (const int number : edited)
        isEdited[at(number)] = 1;
    std::vector<int> touching;
    for (const int c : bindingConstraints(sketch)) {
        const auto& refs = sketch.constraints[at(c)].refs;
        if (std::any_of(refs.begin(), refs.end(),
                        [&](const SketchPlace& place) { return isEdited[at(place.entity)] != 0; }))
            touching.push_back(c);
    }
    return touching;
}

std::optional<std::vector<int>> constraintsAgainst(const SketchData& sketch, const EditRequest& request,
                                                   const std::vector<int>& mayGo) {
    // Whether there is a solution is all that is asked here, and often: no shapes are looked after.
    const SolveRequest exactly{
        .targets = request.targets, .edited = request.edited, .patience = Patience::once, .namesConflicts = false};
    SketchData held = sketch;
    setActive(held, mayGo, false);
    if (!solve(held, exactly).isSolved())
        return std::nullopt;
    std::vector<int> against = brokenByTargets(held, request, mayGo), doubtful;
    std::set_difference(mayGo.begin(), mayGo.end(), against.begin(), against.end(), std::back_inserter(doubtful));
    admit(held, exactly, doubtful, against);
    std::sort(against.begin(), against.end());
    return against;
}

}  // namespace holdfast::hosting
