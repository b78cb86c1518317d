#include "solver/src/diagnosis/ValueSpace.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "geometry/ConstraintKinds.h"
#include "solver/src/diagnosis/GaussianElimination.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

class ValueSpace {
public:
    ValueSpace(const SketchData& sketch, const EquationSystem& merged, const EquationSystem& plain)
        : m_sketch(sketch),
          m_merged(merged),
          m_plain(plain),
          m_plainValues(plain.values),
          m_elimination(static_cast<int>(merged.values.size() + plain.values.size())) {
        std::copy_n(merged.values.begin(), merged.figureValueCount, m_plainValues.begin());
    }

    /// Points that are put together come first: what a tangency says of its ends is in need of no other, and where it
    /// is spare, what else says so is to be named.
    std::map<int, int> spares(const std::vector<char>& isAsked) {
        for (const Equation& equation : m_merged.set.equations) {
            if (equation.constraint < 0)
                add(m_merged, m_merged.values, equation);
        }
        std::array<std::vector<int>, 3> turns;  // coincidences, others, tangencies
        for (std::size_t c = 0; c < isAsked.size(); ++c) {
            const ConstraintType type = m_sketch.constraints[c].type;
            const bool isTangency = traitsOf(type).residual == ConstraintResidual::tangent;
            if (isAsked[c])
                turns[type == ConstraintType::coincident ? 0 : isTangency ? 2 : 1].push_back(static_cast<int>(c));
        }
        for (const int c : turns[0])
            addOwn(c);
        for (const std::vector<int>& turn : turns)
            for (const int c : turn)
                addImplied(c);
        for (const int c : turns[1])
            addOwn(c);
        for (const int c : turns[2])
            addOwn(c);
        return std::move(m_spares);
    }

private:
    static std::vector<int> equationsOf(const EquationSystem& system, int constraint) {
        const auto [first, last] =
            std::equal_range(system.constraintEquations.begin(), system.constraintEquations.end(),
                             std::pair{constraint, 0}, [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<int> equations;
        for (auto i = first; i != last; ++i)
            equations.push_back(i->second);
        return equations;
    }

    void addImplied(int constraint) {
        for (const int e : equationsOf(m_plain, constraint))
            if (const Equation& equation = m_plain.set.equations[at(e)]; equation.isImplied)
                add(m_plain, m_plainValues, equation);
    }

    /// As it was merged or, where it was an equation, as that.
    void addOwn(int constraint) {
        const std::vector<int> merged = equationsOf(m_merged, constraint);
        for (const int e : equationsOf(m_plain, constraint))
            if (const Equation& equation = m_plain.set.equations[at(e)]; merged.empty() && !equation.isImplied)
                note(add(m_plain, m_plainValues, equation), equation);
        for (const int e : merged)
            if (const Equation& equation = m_merged.set.equations[at(e)]; !equation.isImplied)
                note(add(m_merged, m_merged.values, equation), equation);
    }

    void note(int spare, const Equation& equation) {
        if (spare > 0)
            m_spares[equation.constraint] += spare;
    }

    /// How many of the equation's rows others imply.
    int add(const EquationSystem& system, std::span<const double> values, const Equation& equation) {
        linearise(system.set, equation, values, m_slopes);
        const auto inputs = system.set.inputsOf(equation);
        int spare = 0;
        for (std::size_t row = 0; row < equation.rows; ++row) {
            GaussianElimination::Entries entries;
            for (std::size_t k = 0; k < inputs.size(); ++k) {
                const double slope = m_slopes[row * inputs.size() + k];
                if (const int column = columnOf(system, inputs[k]); column >= 0 && slope != 0.0)
                    entries.emplace_back(column, slope / system.metric[at(inputs[k])]);
            }
            spare += m_elimination.add(entries) ? 0 : 1;
        }
        return spare;
    }

    /// Contacts of the two systems are columns of their own; constants have none.
    int columnOf(const EquationSystem& system, int value) const {
        if (value < system.figureValueCount)
            return m_sketch.entities[at(system.entityOfValue[at(value)])].fixed ? -1 : value;
        if (system.links[at(value)].unknown < 0)
            return -1;
        return &system == &m_merged ? value : static_cast<int>(m_merged.values.size()) + value;
    }

    const SketchData& m_sketch;
    const EquationSystem& m_merged;
    const EquationSystem& m_plain;
    std::vector<double> m_plainValues;
    GaussianElimination m_elimination;
    std::vector<double> m_slopes;
    std::map<int, int> m_spares;
};

}  // namespace

std::map<int, int> sparesInValues(const SketchData& sketch, const EquationSystem& merged, const EquationSystem& plain,
                                  const std::vector<char>& isAsked) {
    assert(isAsked.size() == sketch.constraints.size());
    assert(merged.figureValueCount == plain.figureValueCount);
    return ValueSpace(sketch, merged, plain).spares(isAsked);
}

}  // namespace holdfast::solver::detail
