#include "workbench/evaluator/Iteration.h"

#include <algorithm>
#include <cmath>

namespace holdfast {

namespace {

constexpr double kLeastDamping = 1e-10;
constexpr double kMostDamping = 1e6;
constexpr double kNearEnough = 10.0;  // movement, in tolerances, below which sliding ends

/// One region's vectors while it is iterated.
class Stepper {
public:
    Stepper(Region& region, std::span<const double> weights) : m_region(region), m_weights(weights) {}

    std::vector<double> residual;

    void linearise(std::span<const double> x) { m_region.linearise(x, residual); }
    void evaluate(std::span<const double> x) { m_region.evaluate(x, residual); }

    bool factorise(double damping) {
        m_region.rowSquares(m_weights, m_damping);
        double sum = 0.0;
        for (const double square : m_damping)
            sum += square;
        const double floor = m_damping.empty() ? 1.0 : 1e-6 * sum / static_cast<double>(m_damping.size()) + 1e-300;
        for (double& square : m_damping)
            square = damping * std::max(square, floor);
        m_isExact = damping <= kLeastDamping;
        return m_region.linearSolver().factorise(m_weights, m_region.jacobian(), m_damping);
    }

    /// The least step that cancels the residual of now.
    std::span<const double> restoringStep() {
        m_step.assign(static_cast<std::size_t>(m_region.columnCount()), 0.0);
        return solve();
    }

    /// The step nearest to `wish` that cancels the residual of now.
    std::span<const double> slidingStep(std::span<const double> wish) {
        m_step.resize(wish.size());
        for (std::size_t j = 0; j < wish.size(); ++j)
            m_step[j] = m_weights[j] * wish[j];
        return solve();
    }

    /// Longest movement of geometry in a step.
    double reach(std::span<const double> step) const {
        double most = 0.0;
        for (std::size_t j = 0; j < step.size(); ++j)
            most = std::max(most, std::abs(step[j]) * metricOf(j));
        return most;
    }

private:
    std::span<const double> solve() {
        m_multiplier.resize(residual.size());
        std::transform(residual.begin(), residual.end(), m_multiplier.begin(), [](double f) { return -f; });
        m_region.linearSolver().solve(m_step, m_multiplier, m_isExact);
        return m_step;
    }

    double metricOf(std::size_t j) const {
        const EquationSystem& system = m_region.system();
        return system.metric[static_cast<std::size_t>(system.valuesOfUnknown[m_region.unknowns()[j]].front())];
    }

    Region& m_region;
    std::span<const double> m_weights;
    std::vector<double> m_damping, m_step, m_multiplier;
    bool m_isExact = true;
};

std::vector<double> moved(std::span<const double> x, std::span<const double> step, double factor) {
    std::vector<double> result(x.begin(), x.end());
    for (std::size_t j = 0; j < result.size(); ++j)
        result[j] += factor * step[j];
    return result;
}

double pullOf(const Pull& pull, std::span<const double> x) {
    double sum = 0.0;
    for (std::size_t j = 0; j < x.size(); ++j)
        sum += pull.weights[j] * (x[j] - pull.targets[j]) * (x[j] - pull.targets[j]);
    return 0.5 * sum;
}

/// Tries shorter and shorter parts of a step until the residual shrinks. Afterwards x and the stepper's residual are
/// those of the point taken.
bool shorten(Stepper& stepper, std::span<const double> step, double factor, std::vector<double>& x) {
    constexpr int halvings = 4;
    const double before = lengthOf(stepper.residual);
    const std::vector<double> old = stepper.residual;
    for (int i = 0; i <= halvings; ++i, factor *= 0.5) {
        const std::vector<double> next = moved(x, step, factor);
        stepper.evaluate(next);
        if (lengthOf(stepper.residual) < (1.0 - 1e-4 * factor) * before) {
            x = next;
            return true;
        }
    }
    stepper.residual = old;
    return false;
}

/// A few steps with the factors at hand, which cost next to nothing, until the residual is down to rounding.
bool polish(Stepper& stepper, double tolerance, std::vector<double>& x, int most) {
    double before = largest(stepper.residual);
    for (int i = 0; i < most && before > tolerance; ++i) {
        const std::vector<double> next = moved(x, stepper.restoringStep(), 1.0);
        const std::vector<double> old = stepper.residual;
        stepper.evaluate(next);
        const double now = largest(stepper.residual);
        if (!(now < 0.5 * before)) {
            stepper.residual = old;
            break;
        }
        x = next;
        before = now;
    }
    return before <= tolerance;
}

}  // namespace

IterationReport restore(Region& region, std::span<const double> weights, std::vector<double>& x,
                        const IterationLimits& limits) {
    const EquationSystem& system = region.system();
    Stepper stepper(region, weights);
    IterationReport report;
    double damping = kLeastDamping;
    stepper.evaluate(x);
    for (;;) {
        report.residual = largest(stepper.residual);
        report.isSatisfied = report.residual <= system.tolerance;
        if (report.isSatisfied || std::isnan(report.residual) || report.iterations >= limits.restoring)
            return report;
        stepper.linearise(x);
        ++report.iterations;
        bool hasMoved = false;
        while (!hasMoved && damping <= kMostDamping) {
            if (stepper.factorise(damping)) {
                const auto step = stepper.restoringStep();
                const double reach = stepper.reach(step);
                const double most = limits.stride * system.size;
                hasMoved = shorten(stepper, step, reach > most ? most / reach : 1.0, x);
            }
            damping = hasMoved ? std::max(kLeastDamping, damping * 0.01) : std::max(1e-4, damping * 30.0);
        }
        if (!hasMoved)
            return report;
        if (largest(stepper.residual) < 1e-4 * system.size)
            polish(stepper, 1e-3 * system.tolerance, x, 2);
    }
}

IterationReport slide(Region& region, const Pull& pull, std::vector<double>& x, const IterationLimits& limits) {
    const EquationSystem& system = region.system();
    Stepper stepper(region, pull.weights);
    IterationReport report;
    report.isSatisfied = true;
    double now = pullOf(pull, x);
    std::vector<double> wish(x.size());
    for (; report.iterations < limits.sliding; ++report.iterations) {
        stepper.linearise(x);
        if (!stepper.factorise(kLeastDamping))
            break;
        std::transform(pull.targets.begin(), pull.targets.end(), x.begin(), wish.begin(), std::minus<>());
        const auto found = stepper.slidingStep(wish);
        const std::vector<double> step(found.begin(), found.end());
        const double reach = stepper.reach(step);
        if (reach <= kNearEnough * system.tolerance) {
            report.isNearest = true;
            break;
        }
        constexpr int halvings = 7;
        double factor = std::min(1.0, limits.stride * system.size / reach);
        bool hasMoved = false;
        for (int i = 0; i < halvings && !hasMoved; ++i, factor *= 0.5) {
            std::vector<double> next = moved(x, step, factor);
            stepper.evaluate(next);
            if (!polish(stepper, system.tolerance, next, 6))
                continue;
            const double then = pullOf(pull, next);
            hasMoved = then < now;
            if (hasMoved) {
                now = then;
                x = next;
            }
        }
        if (!hasMoved)
            break;
    }
    stepper.evaluate(x);
    report.residual = largest(stepper.residual);
    return report;
}

IterationReport settle(Region& region, const Pull& pull, std::vector<double>& x, const IterationLimits& limits) {
    const IterationReport restored = restore(region, pull.weights, x, limits);
    if (!restored.isSatisfied)
        return restored;
    IterationReport report = slide(region, pull, x, limits);
    report.iterations += restored.iterations;
    return report;
}

}  // namespace holdfast
