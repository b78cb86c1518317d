#include "workbench/evaluator/EditDemand.h"

#include <algorithm>
#include <cmath>

#include "workbench/evaluator/Drag.h"
#include "workbench/evaluator/FigureFromDocument.h"
#include "workbench/evaluator/HostFigure.h"
#include "workbench/evaluator/Index.h"

namespace holdfast {

namespace {

/// The third value of these kinds is a direction, which has many equals.
bool hasDirection(FigureKind kind) {
    return kind == FigureKind::ray || kind == FigureKind::xline || kind == FigureKind::text;
}

SolveRequest requestOf(const EditDemand& demand, Tier lastTier, bool namesConflicts) {
    return {.targets = demand.targets, .edited = demand.edited, .lastTier = lastTier, .namesConflicts = namesConflicts};
}

/// The targets pull, the constraints do not give way.
SolveResult dragTo(Figure& figure, const EditDemand& demand) {
    std::vector<int> handles;
    std::vector<double> goals;
    for (const Target& target : demand.targets) {
        handles.push_back(target.value);
        goals.push_back(target.goal);
    }
    return DragSession(figure, std::move(handles)).step(goals);
}

}  // namespace

void EditDemand::ask(const Figure& figure, int entity, const Shape& shape) {
    const std::vector<double> goals = figureValues(shape);
    const FigureEntity& element = figure.entities[at(entity)];
    if (goals.size() != at(element.valueCount))
        return;
    for (std::size_t i = 0; i < goals.size(); ++i) {
        const int value = element.firstValue + static_cast<int>(i);
        const bool isDirection = i == 2 && hasDirection(element.kind);
        targets.push_back({value, isDirection ? nearestTurn(goals[i], figure.values[at(value)]) : goals[i]});
    }
}

SolveResult meet(Figure& figure, const EditDemand& demand) {
    if (!demand.kept.empty()) {
        SolveRequest firm = requestOf(demand, Tier::exact, false);
        firm.targets.insert(firm.targets.end(), demand.kept.begin(), demand.kept.end());
        if (SolveResult result = solve(figure, firm); result.isSolved())
            return result;
    }
    switch (demand.whenBarred) {
        case WhenBarred::keepSizes:
            return solve(figure, requestOf(demand, Tier::wishes, true));
        case WhenBarred::yield:
            if (SolveResult result = solve(figure, requestOf(demand, Tier::exact, false)); result.isSolved())
                return result;
            if (SolveResult result = dragTo(figure, demand); result.isSolved())
                return result;
            break;
        case WhenBarred::refuse:
            break;
    }
    return solve(figure, requestOf(demand, Tier::exact, true));
}

double missOf(const Figure& figure, const EditDemand& demand) {
    double worst = 0.0;
    for (const Target& target : demand.targets)
        worst = std::max(worst, std::abs(figure.values[at(target.value)] - target.goal));
    return worst;
}

}  // namespace holdfast
