#include "hosting/evaluator/EditRequest.h"

#include <algorithm>
#include <cmath>

#include "hosting/evaluator/HostSketch.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/solving/Drag.h"

namespace holdfast::hosting {

namespace {

/// The third value of these kinds is a direction, which has many equals.
bool hasDirection(EntityKind kind) {
    return kind == EntityKind::ray || kind == EntityKind::xline || kind == EntityKind::text;
}

SolveRequest requestOf(const EditRequest& request, RelaxationLevel lastLevel, bool namesConflicts) {
    return {
        .targets = request.targets, .edited = request.edited, .lastLevel = lastLevel, .namesConflicts = namesConflicts};
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

SolveResult meet(SketchData& sketch, const EditRequest& request) {
    if (!request.kept.empty()) {
        SolveRequest firm = requestOf(request, RelaxationLevel::exact, false);
        firm.targets.insert(firm.targets.end(), request.kept.begin(), request.kept.end());
        if (SolveResult result = solve(sketch, firm); result.isSolved())
            return result;
    }
    switch (request.whenInfeasible) {
        case WhenInfeasible::keepSizes:
            return solve(sketch, requestOf(request, RelaxationLevel::wishes, true));
        case WhenInfeasible::yield:
            if (SolveResult result = solve(sketch, requestOf(request, RelaxationLevel::exact, false));
                result.isSolved())
                return result;
            if (SolveResult result = dragTo(sketch, request); result.isSolved())
                return result;
            break;
        case WhenInfeasible::refuse:
            break;
    }
    return solve(sketch, requestOf(request, RelaxationLevel::exact, true));
}

double shortfallOf(const SketchData& sketch, const EditRequest& request) {
    double worst = 0.0;
    for (const Target& target : request.targets)
        worst = std::max(worst, std::abs(sketch.values[at(target.value)] - target.goal));
    return worst;
}

}  // namespace holdfast::hosting
