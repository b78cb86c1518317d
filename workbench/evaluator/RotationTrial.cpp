#include "workbench/evaluator/RotationTrial.h"

#include <algorithm>

#include "workbench/evaluator/EditDemands.h"

namespace holdfast {

namespace {

std::size_t at(int i) {
    return static_cast<std::size_t>(i);
}

bool touches(const FigureConstraint& constraint, const std::vector<int>& edited) {
    return std::any_of(constraint.refs.begin(), constraint.refs.end(), [&](const FigurePlace& place) {
        return std::find(edited.begin(), edited.end(), place.entity) != edited.end();
    });
}

/// Of constraints that cannot hold together with the edit, the one to give up: the latest that touches what is edited.
int culpritOf(const Figure& figure, const std::vector<int>& conflicting, const std::vector<int>& edited) {
    for (auto c = conflicting.rbegin(); c != conflicting.rend(); ++c)
        if (touches(figure.constraints[at(*c)], edited))
            return *c;
    return conflicting.empty() ? -1 : conflicting.back();
}

}  // namespace

std::vector<int> constraintsAgainst(const HostFigure& host, const std::vector<int>& edited,
                                    const YxGeMatrix3d& transform) {
    EditDemand demand = transformDemand(host, edited, transform);
    demand.whenBarred = WhenBarred::refuse;
    Figure figure = host.figure;
    std::vector<int> against;
    // Each round gives up one constraint.
    for (;;) {
        Figure trial = figure;
        const SolveResult result = meet(trial, demand);
        const int culprit = result.isSolved() ? -1 : culpritOf(figure, result.conflicting, edited);
        if (culprit < 0)
            break;
        figure.constraints[at(culprit)].active = false;
        against.push_back(culprit);
    }
    std::sort(against.begin(), against.end());
    return against;
}

}  // namespace holdfast
