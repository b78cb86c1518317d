#include "solver/src/numerics/Stepper.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "solver/src/numerics/DenseStep.h"

namespace holdfast::solver::detail {

namespace {

/// Parts of the rows' mean square, and a square, that a row counts as at least when it is damped: one without a
/// gradient would leave a pivot of nothing.
constexpr double kLeastRow = 1e-6, kLeastSquare = 1e-20;

/// What a step with factors at hand must leave of the residual at most: less gain is not worth another.
constexpr double kPolishes = 0.5;

}  // namespace

std::vector<double> moved(std::span<const double> x, std::span<const double> step, double factor) {
    std::vector<double> result(x.begin(), x.end());
    for (std::size_t j = 0; j < result.size(); ++j)
        result[j] += factor * step[j];
    return result;
}

bool Stepper::factorise(double damping) {
    m_subproblem.carried().weights.clear();
    m_subproblem.rowSquares(m_weights, m_damping);
    double sum = 0.0;
    for (const double square : m_damping)
        sum += square;
    const double floor =
        m_damping.empty() ? 1.0 : kLeastRow * sum / static_cast<double>(m_damping.size()) + kLeastSquare;
    for (double& square : m_damping)
        square = damping * std::max(square, floor);
    m_isExact = damping <= kLeastDamping;
    if (m_isCurved)
        return m_subproblem.curvature().factorise(m_weights, m_damping);
    const bool hasFactors = m_subproblem.linearSolver().factorise(m_weights, m_subproblem.jacobian(), m_damping);
    m_subproblem.countFactors(m_subproblem.linearSolver());
    return hasFactors;
}

void Stepper::useHessian(std::span<const double> multiplier) {
    m_isCurved = true;
    m_subproblem.curvature().update(multiplier);
}

std::span<const double> Stepper::denseRestorationStep() {
    m_step.resize(static_cast<std::size_t>(m_subproblem.columnCount()));
    m_multiplier.resize(residual.size());
    std::transform(residual.begin(), residual.end(), m_multiplier.begin(), [](double f) { return -f; });
    denseStep(m_subproblem.pattern(), m_subproblem.jacobian(), m_weights, m_multiplier, m_step);
    m_subproblem.countDense();
    return m_step;
}

std::span<const double> Stepper::tangentialStep(std::span<const double> wish) {
    m_step.resize(wish.size());
    for (std::size_t j = 0; j < wish.size(); ++j)
        m_step[j] = m_weights[j] * wish[j];
    return solve(m_isExact);
}

std::span<const double> Stepper::chordStep(std::span<const double> wish, std::span<const double> lastMultiplier) {
    const ColumnPattern& pattern = m_subproblem.pattern();
    const std::span<const double> jacobian = m_subproblem.jacobian();
    m_step.resize(wish.size());
    for (std::size_t j = 0; j < wish.size(); ++j) {
        m_step[j] = m_weights[j] * wish[j];
        for (auto k = static_cast<std::size_t>(pattern.starts[j]); k < static_cast<std::size_t>(pattern.starts[j + 1]);
             ++k)
            m_step[j] -= jacobian[k] * lastMultiplier[static_cast<std::size_t>(pattern.rows[k])];
    }
    return solve(false);
}

std::span<const double> Stepper::followingStep(std::span<const double> change) {
    residual.assign(static_cast<std::size_t>(m_subproblem.rowCount()), 0.0);
    m_step.resize(change.size());
    std::transform(m_weights.begin(), m_weights.end(), change.begin(), m_step.begin(), std::multiplies<>());
    return solve(false);
}

double Stepper::reach(std::span<const double> step) const {
    double most = 0.0;
    for (std::size_t j = 0; j < step.size(); ++j)
        most = std::max(most, std::abs(step[j]) * m_subproblem.metric()[j]);
    return most;
}

bool Stepper::polish(std::vector<double>& x, int most, double aim) {
    double before = largest(residual);
    for (int i = 0; i < most && before > aim; ++i) {
        std::vector<double> next = moved(x, roughRestorationStep(), 1.0);
        const std::vector<double> old = residual;
        evaluate(next);
        const double now = largest(residual);
        if (!(now < kPolishes * before)) {
            residual = old;
            break;
        }
        x = next;
        before = now;
    }
    return before <= m_subproblem.system().tolerance;
}

std::span<const double> Stepper::restorationStep(bool isExact) {
    m_step.assign(static_cast<std::size_t>(m_subproblem.columnCount()), 0.0);
    return solve(isExact);
}

std::span<const double> Stepper::solve(bool isExact) {
    ++m_solves;
    m_multiplier.resize(residual.size());
    std::transform(residual.begin(), residual.end(), m_multiplier.begin(), [](double f) { return -f; });
    if (m_isCurved)
        m_subproblem.curvature().solve(m_step, m_multiplier, isExact);
    else
        m_subproblem.linearSolver().solve(m_step, m_multiplier, isExact);
    return m_step;
}

}  // namespace holdfast::solver::detail
