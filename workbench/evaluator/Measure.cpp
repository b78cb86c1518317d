#include "workbench/evaluator/Measure.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "workbench/evaluator/EquationSystem.h"
#include "workbench/evaluator/Extract.h"

namespace holdfast {

namespace {

double wrapped(double angle, double period) {
    const double rest = std::fmod(angle, period);
    return rest < 0.0 ? rest + period : rest;
}

}  // namespace

double measured(const Figure& figure, int number) {
    const FigureConstraint& constraint = figure.constraints[static_cast<std::size_t>(number)];
    if (constraint.type < ConstraintType::distance)
        throw FigureError("constraint " + constraint.id + ": it is no dimension and measures nothing");
    Extract extract(figure, {&number, 1});
    Figure& part = extract.figure();
    part.takeReference();
    // A radius has to be above 0 to be asked for; a distance of 0 would be a coincidence.
    part.constraints.front().value = 1.0;
    const int first = 0;
    const EquationSystem system = buildPlainSystem(part, {&first, 1});
    const auto [c, e] = system.constraintEquations.front();
    const Equation& equation = system.set.equations[static_cast<std::size_t>(e)];
    const double found = residuals(system.set, equation, system.values)[0] / equation.scale + equation.value;
    switch (constraint.type) {
        case ConstraintType::distance:
            return std::abs(found);
        case ConstraintType::diameter:
            return 2.0 * found;
        case ConstraintType::angle:
            return wrapped(found, constraint.refs.size() == 3 ? std::numbers::pi : 2 * std::numbers::pi);
        default:
            return found;
    }
}

std::vector<double> missesOf(const Figure& figure) {
    std::vector<double> misses(figure.constraints.size() + 1, 0.0);
    const EquationSystem system = buildPlainSystem(figure, bindingConstraints(figure));
    for (std::size_t e = 0; e < system.set.equations.size(); ++e) {
        const int owner = system.set.equations[e].constraint;
        double& miss = owner < 0 ? misses.back() : misses[static_cast<std::size_t>(owner)];
        const double residual = system.residualOf(static_cast<int>(e));
        miss = residual <= miss ? miss : residual;
    }
    return misses;
}

}  // namespace holdfast
