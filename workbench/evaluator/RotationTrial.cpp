#include "workbench/evaluator/RotationTrial.h"

#include <algorithm>

#include "workbench/evaluator/EquationSystem.h"

namespace holdfast {

std::vector<int> constraintsTouching(const Figure& figure, const std::vector<int>& edited) {
    std::vector<char> isEdited(figure.entities.size(), 0);
    for (const int number : edited)
        isEdited[static_cast<std::size_t>(number)] = 1;
    std::vector<int> touching;
    for (const int c : bindingConstraints(figure)) {
        const auto& refs = figure.constraints[static_cast<std::size_t>(c)].refs;
        if (std::any_of(refs.begin(), refs.end(), [&](const FigurePlace& place) {
                return isEdited[static_cast<std::size_t>(place.entity)] != 0;
            }))
            touching.push_back(c);
    }
    return touching;
}

std::vector<int> constraintsAgainst(const Figure& figure, const EditDemand& demand, const std::vector<int>& mayGo) {
    SolveRequest request{.targets = demand.targets, .edited = demand.edited, .namesConflicts = false};
    Figure held = figure;
    for (const int c : mayGo)
        held.constraints[static_cast<std::size_t>(c)].active = false;
    if (!solve(held, request).isSolved())
        return {};  // what may not go is against it already
    std::vector<int> against;
    for (const int c : mayGo) {
        bool& active = held.constraints[static_cast<std::size_t>(c)].active;
        active = true;
        if (solve(held, request).isSolved())
            continue;
        active = false;
        against.push_back(c);
    }
    return against;
}

}  // namespace holdfast
