#include "hosting/evaluator/EditRequest.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <unordered_set>

#include "hosting/evaluator/HostSketch.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

/// The third value of these kinds is a direction, which has many equals.
bool hasDirection(EntityKind kind) {
    return kind == EntityKind::ray || kind == EntityKind::xline || kind == EntityKind::text;
}

SolveRequest requestOf(const EditRequest& request, RelaxationLevel lastLevel) {
    return {.targets = request.targets,
            .kept = request.kept,
            .values = request.dimensions,
            .edited = request.edited,
            .added = request.added,
            .lastLevel = lastLevel,
            .keepsShapes = true};
}

/// The targets pull, the constraints do not give way.
SolveResult dragTo(SketchData& sketch, const EditRequest& request) {
    std::vector<int> handles;
    std::vector<double> goals;
    for (const Target& target : request.targets) {
        handles.push_back(target.value);
        goals.push_back(target.goal);
    }
    return DragSession(sketch, std::move(handles)).step(goals);
}

}  // namespace

void EditRequest::ask(const SketchData& sketch, int entity, const Shape& shape) {
    assert(entity >= 0 && at(entity) < sketch.entities.size());
    const std::vector<double> goals = parametersOf(shape);
    const SketchEntity& element = sketch.entities[at(entity)];
    if (goals.size() != at(element.valueCount))
        return;
    for (std::size_t i = 0; i < goals.size(); ++i) {
        const int value = element.firstValue + static_cast<int>(i);
        const bool isDirection = i == 2 && hasDirection(element.kind);
        targets.push_back({value, isDirection ? nearestTurn(goals[i], sketch.values[at(value)]) : goals[i]});
    }
}

void EditRequest::keepOthers(const SketchData& sketch, const std::vector<double>& values) {
    assert(values.size() == sketch.values.size());
    std::unordered_set<int> given;
    for (const Target& target : targets)
        given.insert(target.value);
    for (const Target& target : kept)
        given.insert(target.value);
    for (const int number : edited) {
        const SketchEntity& element = sketch.entities[at(number)];
        for (int v = element.firstValue; v < element.firstValue + element.valueCount; ++v)
            if (!given.contains(v))
                kept.push_back({v, values[at(v)]});
    }
}

SolveResult meet(SketchData& sketch, const EditRequest& request) {
    switch (request.whenInfeasible) {
        case WhenInfeasible::keepSizes:
            return solve(sketch, requestOf(request, RelaxationLevel::wishes));
        case WhenInfeasible::yield: {
            SolveRequest exactly = requestOf(request, RelaxationLevel::exact);
            exactly.namesConflicts = false;
            exactly.patience = Patience::once;
            if (SolveResult result = solve(sketch, exactly); result.isSolved())
                return result;
            if (SolveResult result = dragTo(sketch, request); result.isSolved())
                return result;
            break;
        }
        case WhenInfeasible::refuse:
            break;
    }
    return solve(sketch, requestOf(request, RelaxationLevel::exact));
}

double shortfallOf(const SketchData& sketch, const EditRequest& request) {
    double worst = 0.0;
    for (const Target& target : request.targets)
        worst = std::max(worst, std::abs(sketch.values[at(target.value)] - target.goal));
    return worst;
}

std::vector<LedDimension> ledDimensions(const SketchData& sketch, const SolveResult& result) {
    std::vector<LedDimension> led;
    for (std::size_t i = 0; result.reached && i < result.reached->dimensions.size(); ++i) {
        const ValueGoal& last = result.reached->dimensions[i];
        led.push_back({sketch.constraints[at(last.constraint)].id, result.reached->from[i], last.goal});
    }
    return led;
}

}  // namespace holdfast::hosting
