#include <holdfast/solver/Sketch.h>

#include <algorithm>
#include <limits>

#include "solver/src/api/ConstraintReading.h"
#include "solver/src/api/EntityChecks.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Measure.h"

// The numbers of a sketch: what entities and points are, how far constraints are from holding, what dimensions measure.
namespace holdfast::solver {

using detail::at;

namespace {

/// The operand reads its values, and only them, from a list of their own.
Vec2 evaluatePoint(const detail::SketchData& data, detail::Operand point) {
    std::vector<double> values;
    for (int& input : point.inputs) {
        values.push_back(data.values[at(input)]);
        input = static_cast<int>(values.size()) - 1;
    }
    const int zero = static_cast<int>(values.size());
    values.push_back(0.0);
    detail::EquationSet set;
    set.splines = &data.splines;
    detail::Equation form;
    form.residualKind = detail::ResidualKind::samePoint;
    form.rows = 2;
    set.add(form, {detail::Operand{detail::OperandKind::point, {zero, zero}, {}}, point});
    const auto rows = detail::residuals(set, set.equations.front(), values);
    return {rows[0], rows[1]};
}

}  // namespace

std::span<const double> Sketch::values(EntityId entity) const {
    const int number = m_impl->find(entity);
    return number < 0 ? std::span<const double>() : m_impl->data.valuesOf(number);
}

Result<Done> Sketch::setValues(EntityId entity, std::span<const double> values) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    const detail::SketchEntity& e = m_impl->data.entities[at(number)];
    if (auto fault = faultOf(e, values))
        return *std::move(fault);
    std::copy(values.begin(), values.end(), m_impl->data.values.begin() + e.firstValue);
    std::copy(values.begin(), values.end(), m_impl->data.reference.begin() + e.firstValue);
    ++m_impl->revision;
    return Done{};
}

Vec2 Sketch::position(PointId point) const {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    if (m_impl->find(point.entity()) < 0)
        return {nan, nan};
    const auto operand = detail::pointAt(m_impl->data, m_impl->placeOf(point));
    if (!operand)
        return {nan, nan};
    if (!detail::isDirect(*operand))
        return evaluatePoint(m_impl->data, *operand);
    return {m_impl->data.values[at(operand->inputs[0])], m_impl->data.values[at(operand->inputs[1])]};
}

Result<double> residual(const Sketch& sketch, ConstraintId constraint) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    const int number = impl.find(constraint);
    if (number < 0)
        return noSuch(constraint);
    if (!impl.data.constraints[at(number)].binds())
        return 0.0;
    double worst = 0.0;
    try {
        const detail::EquationSystem system = detail::buildPlainSystem(impl.data, {&number, 1});
        for (const auto& [c, equation] : system.constraintEquations) {
            const double miss = system.residualOf(equation);
            worst = miss <= worst ? worst : miss;
        }
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(impl.kinds[at(number)]), "put its entities elsewhere"};
    }
    return worst;
}

Result<double> measure(const Sketch& sketch, ConstraintId dimension) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    const int number = impl.find(dimension);
    if (number < 0)
        return noSuch(dimension);
    Constraint kind = impl.kinds[at(number)];
    if (valueIn(kind) == nullptr)
        return Error{"it is no dimension and measures nothing", describe(kind), "ask for its residual"};
    try {
        return detail::measured(impl.data, number);
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(kind), "put its entities elsewhere"};
    }
}

}  // namespace holdfast::solver
