#include "workbench/evaluator/RotationTrial.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "workbench/evaluator/EquationSystem.h"
#include "workbench/evaluator/Extract.h"
#include "workbench/evaluator/Index.h"
#include "workbench/evaluator/Measure.h"

namespace holdfast {

namespace {

/// Parts of the figure's size; what misses by more than this does not hold.
constexpr double kMisses = 1e-6;

void setActive(Figure& figure, std::span<const int> constraints, bool active) {
    for (const int c : constraints)
        figure.constraints[at(c)].active = active;
}

/// For each element whether the targets say where all of it is, and nothing about it is to be found out by solving: a
/// contact along an ellipse or a spline is.
std::vector<char> placedElements(const Figure& figure, const EditDemand& demand) {
    std::vector<char> isGiven(figure.values.size(), 0), isPlaced(figure.entities.size(), 0);
    for (const Target& target : demand.targets)
        isGiven[at(target.value)] = 1;
    for (const int number : demand.edited) {
        const FigureEntity& element = figure.entities[at(number)];
        const auto first = isGiven.begin() + element.firstValue;
        const bool hasContacts = element.kind == FigureKind::spline || element.kind == FigureKind::ellipse ||
                                 element.kind == FigureKind::ellipticalArc;
        isPlaced[at(number)] =
            !hasContacts && std::all_of(first, first + element.valueCount, [](char given) { return given != 0; });
    }
    return isPlaced;
}

/// Of some constraints, those that lie on placed elements alone and do not hold there. The figure is at the targets.
std::vector<int> brokenByTargets(const Figure& figure, const EditDemand& demand, const std::vector<int>& constraints) {
    const std::vector<char> isPlaced = placedElements(figure, demand);
    std::vector<int> decided, broken;
    for (const int c : constraints) {
        const auto& refs = figure.constraints[at(c)].refs;
        if (std::all_of(refs.begin(), refs.end(),
                        [&](const FigurePlace& place) { return isPlaced[at(place.entity)] != 0; }))
            decided.push_back(c);
    }
    if (decided.empty())
        return broken;
    Extract extract(figure, decided);
    for (FigureConstraint& constraint : extract.figure().constraints)
        constraint.active = true;
    const std::vector<double> misses = missesOf(extract.figure());
    const double limit = kMisses * figure.size();
    for (std::size_t i = 0; i < decided.size(); ++i)
        if (!(misses[i] <= limit))
            broken.push_back(decided[i]);
    return broken;
}

/// Has candidates bind, the earlier the sooner, as many as can hold beside those that bind already; the others join
/// those against it.
void admit(Figure& held, const SolveRequest& request, std::span<const int> candidates, std::vector<int>& against) {
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

std::vector<int> constraintsTouching(const Figure& figure, const std::vector<int>& edited) {
    std::vector<char> isEdited(figure.entities.size(), 0);
    for (const int number : edited)
        isEdited[at(number)] = 1;
    std::vector<int> touching;
    for (const int c : bindingConstraints(figure)) {
        const auto& refs = figure.constraints[at(c)].refs;
        if (std::any_of(refs.begin(), refs.end(),
                        [&](const FigurePlace& place) { return isEdited[at(place.entity)] != 0; }))
            touching.push_back(c);
    }
    return touching;
}

std::optional<std::vector<int>> constraintsAgainst(const Figure& figure, const EditDemand& demand,
                                                   const std::vector<int>& mayGo) {
    const SolveRequest request{.targets = demand.targets, .edited = demand.edited, .namesConflicts = false};
    Figure held = figure;
    setActive(held, mayGo, false);
    if (!solve(held, request).isSolved())
        return std::nullopt;
    std::vector<int> against = brokenByTargets(held, demand, mayGo), doubtful;
    std::set_difference(mayGo.begin(), mayGo.end(), against.begin(), against.end(), std::back_inserter(doubtful));
    admit(held, request, doubtful, against);
    std::sort(against.begin(), against.end());
    return against;
}

}  // namespace holdfast
