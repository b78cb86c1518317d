#include "solver/src/numerics/LagrangianHessian.h"

#include <algorithm>
#include <functional>

#include "solver/src/numerics/Subproblem.h"
#include "solver/src/sketch/Index.h"

#include <Eigen/Eigenvalues>
#include <utility>

namespace holdfast::solver::detail {

namespace {

/// Length of the differences, as a part of the sketch's size.
constexpr double kDifference = 1e-6;

/// The same matrix with its negative eigenvalues set to none.
Eigen::MatrixXd withoutNegative(const Eigen::MatrixXd& matrix) {
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> found(0.5 * (matrix + matrix.transpose()));
    return found.eigenvectors() * found.eigenvalues().cwiseMax(0.0).asDiagonal() * found.eigenvectors().transpose();
}

}  // namespace

LagrangianHessian::LagrangianHessian(Subproblem& subproblem) : m_subproblem(subproblem) {
    std::vector<std::pair<int, int>> pairs;
    std::size_t size = 0;
    for (std::size_t e = 0; e < subproblem.equations().size(); ++e) {
        Block block;
        for (const Subproblem::Slot& slot : subproblem.slotsOf(e))
            block.columns.push_back(slot.column);
        std::sort(block.columns.begin(), block.columns.end());
        block.columns.erase(std::unique(block.columns.begin(), block.columns.end()), block.columns.end());
        for (std::size_t i = 0; i < block.columns.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j)
                pairs.emplace_back(block.columns[j], block.columns[i]);
        }
        for (const Subproblem::Slot& slot : subproblem.slotsOf(e))
            block.places.push_back(static_cast<int>(
                std::lower_bound(block.columns.begin(), block.columns.end(), slot.column) - block.columns.begin()));
        block.first = size;
        size += block.columns.size() * block.columns.size();
        m_blocks.push_back(std::move(block));
    }
    m_second.resize(size);
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    const ListTable table = tabulate(subproblem.columnCount(), pairs);
    m_pattern = {subproblem.columnCount(), table.starts, table.items};
    for (Block& block : m_blocks) {
        for (std::size_t i = 0; i < block.columns.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                const auto found =
                    std::lower_bound(pairs.begin(), pairs.end(), std::pair(block.columns[j], block.columns[i]));
                block.entries.push_back(static_cast<int>(found - pairs.begin()));
            }
        }
    }
    m_linear.analyse(subproblem.pattern(), m_pattern);
}

void LagrangianHessian::update(std::span<const double> multiplier) {
    m_multiplier.assign(multiplier.begin(), multiplier.end());
    std::fill(m_second.begin(), m_second.end(), 0.0);
    for (std::size_t e = 0; e < m_blocks.size(); ++e)
        differentiate(e);
    sum(false);
}

void LagrangianHessian::sum(bool isProjected) {
    m_diagonal.assign(at(m_subproblem.columnCount()), 0.0);
    m_values.assign(m_pattern.rows.size(), 0.0);
    for (std::size_t e = 0; e < m_blocks.size(); ++e)
        add(e, isProjected);
}

void LagrangianHessian::differentiate(std::size_t number) {
    EquationSystem& system = m_subproblem.system();
    const Equation& equation = system.set.equations[at(m_subproblem.equations()[number])];
    const auto rows = std::span(m_multiplier).subspan(at(m_subproblem.firstRowOf(number)), equation.rows);
    const auto slots = m_subproblem.slotsOf(number);
    const auto inputs = system.set.inputsOf(equation);
    const Block& block = m_blocks[number];
    m_inputs.clear();
    for (const int v : inputs)
        m_inputs.push_back(system.values[at(v)]);
    for (std::size_t j = 0; j < block.columns.size(); ++j) {
        double* const column = m_second.data() + block.first + j * block.columns.size();
        const int unknown = m_subproblem.unknowns()[at(block.columns[j])];
        const double h = kDifference * system.size / system.metric[at(system.valuesOfUnknown[unknown].front())];
        for (const double side : {1.0, -1.0}) {
            for (const Subproblem::Slot& slot : slots) {
                if (slot.column == block.columns[j])
                    system.values[at(inputs[at(slot.input)])] = m_inputs[at(slot.input)] + side * slot.sign * h;
            }
            linearise(system.set, equation, system.values, m_slopes);
            for (std::size_t s = 0; s < slots.size(); ++s) {
                const Subproblem::Slot& slot = slots[s];
                for (std::size_t r = 0; r < equation.rows; ++r)
                    column[block.places[s]] +=
                        side * rows[r] * slot.sign * m_slopes[r * at(equation.inputCount) + at(slot.input)] / (2 * h);
            }
            for (std::size_t k = 0; k < m_inputs.size(); ++k)
                system.values[at(inputs[k])] = m_inputs[k];
        }
    }
}

void LagrangianHessian::add(std::size_t number, bool isProjected) {
    const Block& block = m_blocks[number];
    const auto count = static_cast<Eigen::Index>(block.columns.size());
    const Eigen::Map<const Eigen::MatrixXd> second(m_second.data() + block.first, count, count);
    if (count == 0 || !second.allFinite() || second.isZero(0.0))
        return;
    Eigen::MatrixXd projected;
    if (isProjected)
        projected = withoutNegative(second);
    const double* const entries = isProjected ? projected.data() : second.data();
    auto entry = block.entries.begin();
    for (Eigen::Index i = 0; i < count; ++i) {
        m_diagonal[at(block.columns[static_cast<std::size_t>(i)])] += entries[i + i * count];
        for (Eigen::Index j = 0; j < i; ++j)
            m_values[at(*entry++)] += entries[i + j * count];
    }
}

bool LagrangianHessian::factorise(std::span<const double> weights, std::span<const double> damping) {
    // With one negative pivot for each equation the weights are positive along the equations: steps lead downhill.
    if (factoriseOnce(weights, damping) && m_linear.negativePivots() == m_subproblem.rowCount())
        return true;
    sum(true);
    return factoriseOnce(weights, damping);
}

bool LagrangianHessian::factoriseOnce(std::span<const double> weights, std::span<const double> damping) {
    m_weights.resize(weights.size());
    std::transform(weights.begin(), weights.end(), m_diagonal.begin(), m_weights.begin(), std::plus<>());
    const bool hasFactors = m_linear.factorise(m_weights, m_subproblem.jacobian(), damping, m_values);
    m_subproblem.countFactors(m_linear);
    return hasFactors;
}

}  // namespace holdfast::solver::detail
