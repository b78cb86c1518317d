#include "solver/src/sketch/Measure.h"
#include "geometry/ConstraintKinds.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

namespace {

double wrapped(double angle, double period) {
    const double rest = std::fmod(angle, period);
    return rest < 0.0 ? rest + period : rest;
}

}  // namespace

double measured(const SketchData& sketch, int number) {
    const SketchConstraint& constraint = sketch.constraints[static_cast<std::size_t>(number)];
    const ConstraintTraits& traits = traitsOf(constraint.type);
    if (!traits.isDimension())
        throw SketchError("constraint " + constraint.id + ": it is no dimension and measures nothing");
    Extract extract(sketch, {&number, 1});
    SketchData& part = extract.sketch();
    part.takeReference();
    // A radius has to be above 0 to be asked for; a distance of 0 would be a coincidence.
    part.constraints.front().value = 1.0;
    const int first = 0;
    const EquationSystem system = buildPlainSystem(part, {&first, 1});
    const auto [c, e] = system.constraintEquations.front();
    const Equation& equation = system.set.equations[static_cast<std::size_t>(e)];
    const double found = residuals(system.set, equation, system.values)[0] / equation.scale + equation.value;
    switch (traits.value) {
        case ConstraintValue::length:
            return std::abs(found);
        case ConstraintValue::angle:
            return wrapped(found, constraint.refs.size() == 3 ? std::numbers::pi : 2 * std::numbers::pi);
        default:
            return found / traits.residualFactor;
    }
}

std::vector<double> violationsOf(const SketchData& sketch) {
    std::vector<double> misses(sketch.constraints.size() + 1, 0.0);
    const EquationSystem system = buildPlainSystem(sketch, bindingConstraints(sketch));
    for (std::size_t e = 0; e < system.set.equations.size(); ++e) {
        const int owner = system.set.equations[e].constraint;
        double& miss = owner < 0 ? misses.back() : misses[static_cast<std::size_t>(owner)];
        const double residual = system.residualOf(static_cast<int>(e));
        miss = residual <= miss ? miss : residual;
    }
    return misses;
}

std::vector<int> brokenConstraints(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    const double most = sketch.slack();
    std::vector<int> broken;
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c)
        if (!(misses[c] <= most))
            broken.push_back(static_cast<int>(c));
    return broken;
}

}  // namespace holdfast::solver::detail
