#include "solver/src/diagnosis/Ranks.h"

#include <algorithm>
#include <iterator>

#include "geometry/ConstraintKinds.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

EquationSystem systemBefore(const SketchData& sketch, std::size_t firstProposal) {
    std::vector<int> given = bindingConstraints(sketch);
    std::erase_if(given, [&](int c) { return at(c) >= firstProposal; });
    return buildSystem(sketch, given);
}

std::vector<int> equationsOf(const EquationSystem& system, int constraint) {
    const auto [first, last] =
        std::equal_range(system.constraintEquations.begin(), system.constraintEquations.end(), std::pair{constraint, 0},
                         [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<int> equations;
    for (auto i = first; i != last; ++i)
        equations.push_back(i->second);
    return equations;
}

}  // namespace

Ranks::Ranks(SketchData sketch, std::size_t firstProposal)
    : m_sketch(std::move(sketch)),
      m_given(systemBefore(m_sketch, firstProposal)),
      m_plain(buildPlainSystem(m_sketch, bindingConstraints(m_sketch))),
      m_elimination(static_cast<int>(m_given.values.size() + m_plain.values.size())) {
    for (const Equation& equation : m_given.set.equations)
        if (equation.constraint < 0)
            for (const auto& row : rowsOf(m_given, equation))
                m_elimination.add(row);
    for (const bool isTangency : {false, true})
        for (std::size_t c = 0; c < firstProposal; ++c)
            if (isTangency == (traitsOf(m_sketch.constraints[c].type).residual == ConstraintResidual::tangent))
                addGiven(static_cast<int>(c));
}

void Ranks::addGiven(int constraint) {
    for (const bool isImplied : {true, false})
        for (const auto& row : rowsOf(constraint, isImplied))
            m_elimination.add(row);
}

Ranks::Rows Ranks::rowsOf(int constraint, bool isImplied) {
    Rows rows;
    const auto append = [&](Rows more) { std::move(more.begin(), more.end(), std::back_inserter(rows)); };
    const std::vector<int> given = equationsOf(m_given, constraint);
    for (const int e : equationsOf(m_plain, constraint)) {
        const Equation& equation = m_plain.set.equations[at(e)];
        if (equation.isImplied == isImplied && (given.empty() || isImplied))
            append(rowsOf(m_plain, equation));
    }
    for (const int e : given)
        if (const Equation& equation = m_given.set.equations[at(e)]; equation.isImplied == isImplied)
            append(rowsOf(m_given, equation));
    return rows;
}

Ranks::Rows Ranks::rowsOf(const EquationSystem& system, const Equation& equation) {
    Rows rows(equation.rows);
    linearise(system.set, equation, system.values, m_slopes);
    const auto inputs = system.set.inputsOf(equation);
    for (std::size_t row = 0; row < equation.rows; ++row)
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const double slope = m_slopes[row * inputs.size() + k];
            if (const int column = columnOf(system, inputs[k]); column >= 0 && slope != 0.0)
                rows[row].emplace_back(column, slope / system.metric[at(inputs[k])]);
        }
    return rows;
}

/// Contacts of the two systems are columns of their own; constants have none.
int Ranks::columnOf(const EquationSystem& system, int value) const {
    if (value < system.figureValueCount)
        return m_sketch.entities[at(system.entityOfValue[at(value)])].fixed ? -1 : value;
    if (system.links[at(value)].unknown < 0)
        return -1;
    return &system == &m_given ? value : static_cast<int>(m_given.values.size()) + value;
}

Ranks::Rows Ranks::rowsOfValues(const SketchEntity& entity, int first, int count) const {
    Rows rows;
    for (int v = first; v < first + count && !entity.fixed; ++v)
        rows.push_back({{v, 1.0}});
    return rows;
}

void Ranks::hold(int entity) {
    const SketchEntity& held = m_sketch.entities[at(entity)];
    for (const auto& row : rowsOfValues(held, held.firstValue, held.valueCount))
        m_elimination.add(row);
}

/// Of a point that is two values of its entity; -1 for another place.
int Ranks::firstValueOf(const SketchPlace& place) const {
    const auto point = pointAt(m_sketch, place);
    return point && isDirect(*point) ? point->inputs[0] : -1;
}

int Ranks::freedomOf(const SketchPlace& place) {
    const int first = firstValueOf(place);
    return first < 0 ? -1 : m_elimination.countIndependent(rowsOfValues(m_sketch.entities[at(place.entity)], first, 2));
}

bool Ranks::isDetermined(const SketchPlace& place, int coordinate) {
    const int first = firstValueOf(place);
    return first >= 0 && m_elimination.countIndependent(
                             rowsOfValues(m_sketch.entities[at(place.entity)], first + coordinate, 1)) == 0;
}

int Ranks::freedomOf(int entity) {
    const SketchEntity& asked = m_sketch.entities[at(entity)];
    return m_elimination.countIndependent(rowsOfValues(asked, asked.firstValue, asked.valueCount));
}

int Ranks::take(int constraint) {
    const Rows rows = rowsOf(constraint, false);
    const int count = m_elimination.countIndependent(rows);
    return count > 0 && count == static_cast<int>(rows.size()) ? takePart(constraint) : 0;
}

int Ranks::takePart(int constraint) {
    int count = 0;
    for (const bool isImplied : {false, true})
        for (const auto& row : rowsOf(constraint, isImplied))
            count += m_elimination.add(row) && !isImplied ? 1 : 0;
    return count;
}

}  // namespace holdfast::solver::detail
