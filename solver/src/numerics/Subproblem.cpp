#include "solver/src/numerics/Subproblem.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Multiplications of a factorisation that take as long as one unknown or row in an iteration.
constexpr double kMultiplicationsOfUnit = 400.0;

/// Of so large a part of all that there are, what is wanted is marked in a list of all: that is faster than looking for
/// each.
bool isMuchOf(std::size_t some, std::size_t all) {
    constexpr std::size_t kEighth = 8;
    return some >= all / kEighth;
}

/// Which column an unknown has; -1: none.
class Columns {
public:
    Columns(std::span<const int> unknowns, int count) {
        if (isMuchOf(unknowns.size(), at(count)))
            m_ofAll.assign(at(count), -1);
        else
            m_ofSome.reserve(unknowns.size());
        for (std::size_t j = 0; j < unknowns.size(); ++j)
            if (m_ofAll.empty())
                m_ofSome.emplace(unknowns[j], static_cast<int>(j));
            else
                m_ofAll[at(unknowns[j])] = static_cast<int>(j);
    }

    int operator[](int unknown) const {
        if (unknown < 0)
            return -1;
        if (!m_ofAll.empty())
            return m_ofAll[at(unknown)];
        const auto found = m_ofSome.find(unknown);
        return found == m_ofSome.end() ? -1 : found->second;
    }

private:
    std::vector<int> m_ofAll;
    std::unordered_map<int, int> m_ofSome;
};

}  // namespace

Subproblem::Subproblem(EquationSystem& system, std::span<const int> unknowns)
    : m_system(system), m_unknowns(unknowns.begin(), unknowns.end()) {
    collectEquations();
    m_entities = entitiesOf(m_system, m_unknowns);
    m_senses = sensesOf(m_system, m_equations);
    for (const int u : m_unknowns) {
        const int column = static_cast<int>(m_metric.size());
        const int first = m_system.valuesOfUnknown[u].front();
        // What a wish is missed by weighs more than it moves.
        const bool isSlack = first >= m_system.figureValueCount;
        m_metric.push_back(isSlack ? std::min(m_system.metric[at(first)], 1.0) : m_system.metric[at(first)]);
        m_weights.push_back(m_system.weightOf(u));
        for (const int v : m_system.valuesOfUnknown[u]) {
            const ValueLink& link = m_system.links[at(v)];
            if (link.sign == 1.0 && link.offset == 0.0)
                m_equals.push_back({v, column});
            else
                m_members.push_back({v, column, link.sign, link.offset});
        }
    }
    m_firstSlot.push_back(0);
    if (m_equations.empty()) {
        m_pattern.starts.assign(m_unknowns.size() + 1, 0);
        return;
    }
    makePattern();
    listSlacks();
}

Subproblem::~Subproblem() = default;

LinearSolver& Subproblem::linearSolver() {
    if (!m_linear.hasPattern())
        m_linear.analyse(m_pattern);
    return m_linear;
}

LagrangianHessian& Subproblem::curvature() {
    if (!m_curvature)
        m_curvature = std::make_unique<LagrangianHessian>(*this);
    return *m_curvature;
}

long Subproblem::workOf(const LinearSolver& factors) const {
    return columnCount() + rowCount() + static_cast<long>(factors.multiplications() / kMultiplicationsOfUnit);
}

/// An orthogonal decomposition from both sides takes about twice the product of rows, columns and the fewer of both;
/// what is dense goes four times as fast.
long Subproblem::workOfDense() const {
    const double rows = rowCount(), columns = columnCount();
    return static_cast<long>(0.5 * rows * columns * std::min(rows, columns) / kMultiplicationsOfUnit);
}

void Subproblem::collectEquations() {
    const std::size_t all = m_system.set.equations.size();
    std::vector<char> isRead(isMuchOf(m_unknowns.size(), at(m_system.unknownCount)) ? all : 0, 0);
    for (const int u : m_unknowns)
        for (const int e : m_system.equationsOfUnknown[u])
            if (isRead.empty())
                m_equations.push_back(e);
            else
                isRead[at(e)] = 1;
    for (int e = 0; e < static_cast<int>(isRead.size()); ++e)
        if (isRead[at(e)])
            m_equations.push_back(e);
    if (isRead.empty()) {
        std::sort(m_equations.begin(), m_equations.end());
        m_equations.erase(std::unique(m_equations.begin(), m_equations.end()), m_equations.end());
    }
    int row = 0;
    for (const int e : m_equations) {
        m_firstRow.push_back(row);
        row += m_system.set.equations[at(e)].rows;
    }
    m_pattern.rowCount = row;
}

void Subproblem::makePattern() {
    const Columns columns(m_unknowns, m_system.unknownCount);

    // Columns are counted first, then filled equation by equation, so that their rows ascend.
    std::vector<int> lastUse(m_unknowns.size(), -1);
    std::vector<int> count(m_unknowns.size() + 1, 0);
    for (std::size_t i = 0; i < m_equations.size(); ++i) {
        const Equation& equation = m_system.set.equations[at(m_equations[i])];
        const auto inputs = m_system.set.inputsOf(equation);
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const ValueLink& link = m_system.links[at(inputs[k])];
            const int column = columns[link.unknown];
            if (column < 0)
                continue;
            m_slots.push_back({static_cast<int>(k), 0, column, link.sign});
            if (std::exchange(lastUse[at(column)], static_cast<int>(i)) != static_cast<int>(i))
                count[at(column) + 1] += equation.rows;
        }
        m_firstSlot.push_back(static_cast<int>(m_slots.size()));
    }
    std::partial_sum(count.begin(), count.end(), count.begin());
    m_pattern.starts = count;
    m_pattern.rows.resize(at(count.back()));
    m_jacobian.resize(at(count.back()));

    std::vector<int> next(count.begin(), count.end() - 1);
    std::vector<int> entryNow(m_unknowns.size(), -1);
    std::fill(lastUse.begin(), lastUse.end(), -1);
    for (std::size_t i = 0; i < m_equations.size(); ++i) {
        const int rows = m_system.set.equations[at(m_equations[i])].rows;
        for (int s = m_firstSlot[i]; s < m_firstSlot[i + 1]; ++s) {
            const std::size_t column = at(m_slots[at(s)].column);
            if (std::exchange(lastUse[column], static_cast<int>(i)) != static_cast<int>(i)) {
                entryNow[column] = next[column];
                for (int r = 0; r < rows; ++r)
                    m_pattern.rows[at(next[column]++)] = m_firstRow[i] + r;
            }
            m_slots[at(s)].entry = entryNow[column];
            m_places.push_back(
                {entryNow[column], static_cast<std::int16_t>(m_slots[at(s)].input), m_slots[at(s)].sign < 0.0});
        }
    }
}

void Subproblem::listSlacks() {
    for (std::size_t i = 0; i < m_equations.size(); ++i) {
        const Equation& equation = m_system.set.equations[at(m_equations[i])];
        for (int s = m_firstSlot[i]; equation.slack >= 0 && s < m_firstSlot[i + 1]; ++s)
            if (m_slots[at(s)].input == equation.inputCount - 1)
                m_slacks.push_back({equation.slack, m_slots[at(s)].column, m_firstRow[i]});
    }
}

std::vector<double> Subproblem::read() const {
    std::vector<double> x(m_unknowns.size(), 0.0);
    const auto add = [&](int value, int column, double unknown) {
        x[at(column)] += m_system.metric[at(value)] * m_system.metric[at(value)] * unknown;
    };
    for (const Equal& equal : m_equals)
        add(equal.value, equal.column, m_system.values[at(equal.value)]);
    for (const Member& member : m_members)
        add(member.value, member.column, member.sign * (m_system.values[at(member.value)] - member.offset));
    for (std::size_t j = 0; j < x.size(); ++j)
        x[j] /= m_weights[j];
    return x;
}

void Subproblem::write(std::span<const double> x) {
    for (const Equal& equal : m_equals)
        m_system.values[at(equal.value)] = x[at(equal.column)];
    for (const Member& member : m_members)
        m_system.values[at(member.value)] = member.sign * x[at(member.column)] + member.offset;
}

void Subproblem::evaluate(std::span<const double> x, std::vector<double>& residual) {
    write(x);
    residual.resize(at(m_pattern.rowCount));
    for (std::size_t i = 0; i < m_equations.size(); ++i) {
        const Equation& equation = m_system.set.equations[at(m_equations[i])];
        const auto rows = residuals(m_system.set, equation, m_system.values);
        std::copy_n(rows.begin(), equation.rows, residual.begin() + m_firstRow[i]);
    }
}

void Subproblem::absorb(std::span<double> x, std::span<double> residual) {
    for (const Slack& slack : m_slacks) {
        x[at(slack.column)] += residual[at(slack.row)];
        m_system.values[at(slack.value)] = x[at(slack.column)];
        residual[at(slack.row)] = 0.0;
    }
}

void Subproblem::linearise(std::span<const double> x, std::vector<double>& residual) {
    write(x);
    residual.resize(at(m_pattern.rowCount));
    std::fill(m_jacobian.begin(), m_jacobian.end(), 0.0);
    for (std::size_t i = 0; i < m_equations.size(); ++i) {
        const Equation& equation = m_system.set.equations[at(m_equations[i])];
        const auto rows = detail::linearise(m_system.set, equation, m_system.values, m_slopes);
        std::copy_n(rows.begin(), equation.rows, residual.begin() + m_firstRow[i]);
        for (int s = m_firstSlot[i]; s < m_firstSlot[i + 1]; ++s) {
            const Place& place = m_places[at(s)];
            for (int r = 0; r < equation.rows; ++r) {
                const double slope = m_slopes[at(r * equation.inputCount + place.input)];
                m_jacobian[at(place.entry + r)] += place.isNegative ? -slope : slope;
            }
        }
    }
}

void Subproblem::rowSquares(std::span<const double> weights, std::vector<double>& squares) const {
    squares.assign(at(m_pattern.rowCount), 0.0);
    for (std::size_t j = 0; j < m_unknowns.size(); ++j) {
        const double inverse = 1.0 / weights[j];
        for (int k = m_pattern.starts[j]; k < m_pattern.starts[j + 1]; ++k)
            squares[at(m_pattern.rows[at(k)])] += inverse * m_jacobian[at(k)] * m_jacobian[at(k)];
    }
}

double largest(std::span<const double> numbers) {
    double worst = 0.0;
    for (const double x : numbers) {
        if (std::isnan(x))
            return x;
        worst = std::max(worst, std::abs(x));
    }
    return worst;
}

double lengthOf(std::span<const double> numbers) {
    double sum = 0.0;
    for (const double x : numbers)
        sum += x * x;
    return std::sqrt(sum);
}

}  // namespace holdfast::solver::detail
