#include "workbench/evaluator/Iteration.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "workbench/evaluator/DenseStep.h"

namespace holdfast {

namespace {

constexpr double kLeastDamping = 1e-12;
constexpr double kMostDamping = 1e6;
constexpr int kMostDense = 150;       // rows or columns up to which a dense decomposition is affordable
constexpr int kSlow = 2;              // iterations without much progress before it is tried
constexpr double kNear = 1e-4;        // residual, as a part of the figure's size, that counts as near a solution
constexpr double kNearEnough = 10.0;  // movement, in tolerances, below which sliding ends
constexpr double kSharp = 30.0;       // aims that a residual may grow to while sliding
constexpr double kContracts = 0.3;    // what remains of a whole movement, at most, while sliding by tangents alone
constexpr double kExceeds = 1.2;      // the same for a shortened one, as a multiple of what was left out

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
        const double floor = m_damping.empty() ? 1.0 : 1e-6 * sum / static_cast<double>(m_damping.size()) + 1e-20;
        for (double& square : m_damping)
            square = damping * std::max(square, floor);
        m_isExact = damping <= kLeastDamping;
        if (m_isCurved)
            return m_region.curvature().factorise(m_weights, m_damping);
        return m_region.linearSolver().factorise(m_weights, m_region.jacobian(), m_damping);
    }

    /// From now on steps know how the equations bend, under these multipliers, where they were linearised last.
    void bend(std::span<const double> multiplier) {
        m_isCurved = true;
        m_region.curvature().update(multiplier);
    }

    /// Of the step before.
    std::span<const double> multiplier() const { return m_multiplier; }

    /// The least step that cancels the residual of now.
    std::span<const double> restoringStep() { return restoringStep(m_isExact); }

    /// The same for a residual that further steps will reduce anyway.
    std::span<const double> roughRestoringStep() { return restoringStep(false); }

    /// The same from a dense decomposition of the Jacobian of now.
    std::span<const double> denseRestoringStep() {
        m_step.resize(static_cast<std::size_t>(m_region.columnCount()));
        m_multiplier.resize(residual.size());
        std::transform(residual.begin(), residual.end(), m_multiplier.begin(), [](double f) { return -f; });
        denseStep(m_region.pattern(), m_region.jacobian(), m_weights, m_multiplier, m_step);
        return m_step;
    }

    /// The step nearest to `wish` that cancels the residual of now.
    std::span<const double> slidingStep(std::span<const double> wish) {
        m_step.resize(wish.size());
        for (std::size_t j = 0; j < wish.size(); ++j)
            m_step[j] = m_weights[j] * wish[j];
        return solve(m_isExact);
    }

    /// The same with the factors of an earlier point, which differ little: the gradient is the one of now, the
    /// multiplier the last one, and the step's own multiplier is what it changes by.
    std::span<const double> chordStep(std::span<const double> wish, std::span<const double> lastMultiplier) {
        const ColumnPattern& pattern = m_region.pattern();
        const std::span<const double> jacobian = m_region.jacobian();
        m_step.resize(wish.size());
        for (std::size_t j = 0; j < wish.size(); ++j) {
            m_step[j] = m_weights[j] * wish[j];
            for (auto k = static_cast<std::size_t>(pattern.starts[j]);
                 k < static_cast<std::size_t>(pattern.starts[j + 1]); ++k)
                m_step[j] -= jacobian[k] * lastMultiplier[static_cast<std::size_t>(pattern.rows[k])];
        }
        return solve(false);
    }

    /// Longest movement of geometry in a step.
    double reach(std::span<const double> step) const {
        double most = 0.0;
        for (std::size_t j = 0; j < step.size(); ++j)
            most = std::max(most, std::abs(step[j]) * m_region.metric()[j]);
        return most;
    }

private:
    std::span<const double> restoringStep(bool isExact) {
        m_step.assign(static_cast<std::size_t>(m_region.columnCount()), 0.0);
        return solve(isExact);
    }

    std::span<const double> solve(bool isExact) {
        m_multiplier.resize(residual.size());
        std::transform(residual.begin(), residual.end(), m_multiplier.begin(), [](double f) { return -f; });
        if (m_isCurved)
            m_region.curvature().solve(m_step, m_multiplier, isExact);
        else
            m_region.linearSolver().solve(m_step, m_multiplier, isExact);
        return m_step;
    }

    Region& m_region;
    std::span<const double> m_weights;
    std::vector<double> m_damping, m_step, m_multiplier;
    bool m_isExact = true;
    bool m_isCurved = false;
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

/// A few steps with the factors at hand, which cost next to nothing, until the residual is down to the aim or to
/// rounding. True when it ends within the tolerance.
bool polish(Stepper& stepper, const EquationSystem& system, std::vector<double>& x, int most, double aim) {
    double before = largest(stepper.residual);
    for (int i = 0; i < most && before > aim; ++i) {
        const std::vector<double> next = moved(x, stepper.roughRestoringStep(), 1.0);
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
    return before <= system.tolerance;
}

}  // namespace

namespace {

/// One damped step, with more and more damping until it helps. False when none does.
bool dampedStep(Stepper& stepper, double most, double& damping, std::vector<double>& x) {
    for (bool hasMoved = false; damping <= kMostDamping;) {
        if (stepper.factorise(damping)) {
            const auto step = stepper.restoringStep();
            const double reach = stepper.reach(step);
            hasMoved = shorten(stepper, step, reach > most ? most / reach : 1.0, x);
        }
        damping = hasMoved ? std::max(kLeastDamping, damping * 0.01) : std::max(1e-4, damping * 30.0);
        if (hasMoved)
            return true;
    }
    return false;
}

bool denselySolvedStep(Stepper& stepper, double most, std::vector<double>& x) {
    const auto step = stepper.denseRestoringStep();
    const double reach = stepper.reach(step);
    return shorten(stepper, step, reach > most ? most / reach : 1.0, x);
}

}  // namespace

IterationReport restore(Region& region, std::span<const double> weights, std::vector<double>& x,
                        const IterationLimits& limits) {
    const EquationSystem& system = region.system();
    const double most = limits.stride * system.size;
    const bool isSmall = region.columnCount() <= kMostDense && region.rowCount() <= kMostDense;
    Stepper stepper(region, weights);
    IterationReport report;
    double damping = kLeastDamping;
    int slow = 0;
    stepper.evaluate(x);
    for (;;) {
        const double before = report.residual;
        report.residual = largest(stepper.residual);
        report.isSatisfied = report.residual <= system.tolerance;
        if (report.residual <= system.aim || std::isnan(report.residual) || report.iterations >= limits.restoring)
            return report;
        slow = report.iterations > 0 && report.residual > 0.2 * before ? slow + 1 : 0;
        stepper.linearise(x);
        ++report.iterations;
        // Near a double root the equations become dependent: steps shrink slowly and the sparse factors blur them.
        const bool isDense = isSmall && slow >= kSlow && report.residual < kNear * system.size;
        if (isDense ? !denselySolvedStep(stepper, most, x) : !dampedStep(stepper, most, damping, x))
            return report;
        if (!isDense && report.residual < kNear * system.size)
            polish(stepper, system, x, 3, system.aim);
    }
}

namespace {

/// The way along the equations from one point to the next.
class Slider {
public:
    /// x is written, and the residual there is known.
    Slider(Region& region, const Pull& pull, std::vector<double>& x, const IterationLimits& limits, double residual)
        : m_region(region),
          m_system(region.system()),
          m_pull(pull),
          m_x(x),
          m_limits(limits),
          m_stepper(region, pull.weights),
          m_pullNow(pullOf(pull, x)),
          m_residual(std::max(residual, kSharp * m_system.aim)),
          m_residualNow(residual) {
        m_isGuarded = m_limits.isSound && m_limits.isSound(1.0);
    }

    /// Writes the point that was reached; the residual there.
    double finish() {
        m_region.write(m_x);
        return m_residualNow;
    }

    enum class Outcome { moved, nearest, stuck };

    /// Steps along the tangents first. Where they do not contract, the bends of the equations come in.
    Outcome advance() {
        const bool wasCurved = m_isCurved;
        const Outcome outcome = step();
        if (outcome == Outcome::stuck && !wasCurved) {
            m_isCurved = true;
            return step();
        }
        return outcome;
    }

private:
    Outcome step() {
        m_stepper.linearise(m_x);
        m_wish.resize(m_x.size());
        std::transform(m_pull.targets.begin(), m_pull.targets.end(), m_x.begin(), m_wish.begin(), std::minus<>());
        if (std::vector<double> way = chord(); !way.empty())
            return followed(way, m_stepper.reach(way));
        m_isStale = false;
        if (m_isCurved && !m_multiplier.empty())
            m_stepper.bend(m_multiplier);
        if (!m_stepper.factorise(kLeastDamping))
            return Outcome::stuck;
        const auto found = m_stepper.slidingStep(m_wish);
        m_multiplier.assign(m_stepper.multiplier().begin(), m_stepper.multiplier().end());
        const std::vector<double> way(found.begin(), found.end());
        const double reach = m_stepper.reach(way);
        if (reach > m_expected && !m_isCurved && !hasArrived(way, reach)) {
            m_isCurved = true;
            return step();
        }
        return followed(way, reach);
    }

    bool hasArrived(std::span<const double> way, double reach) const {
        return reach <= kNearEnough * m_system.tolerance || squared(way) <= kRounding * m_pullNow;
    }

    Outcome followed(std::span<const double> way, double reach) {
        return hasArrived(way, reach) ? Outcome::nearest : follow(way, reach);
    }

    /// A step with the factors at hand; none where the last step was not taken as a whole or this one is longer than
    /// new factors would be expected to make it.
    std::vector<double> chord() {
        if (m_isStale || m_isCurved || m_whole <= 0.0)
            return {};
        const auto found = m_stepper.chordStep(m_wish, m_multiplier);
        if (!(m_stepper.reach(found) <= kContracts * m_whole))
            return {};
        for (std::size_t i = 0; i < m_multiplier.size(); ++i)
            m_multiplier[i] += m_stepper.multiplier()[i];
        return {found.begin(), found.end()};
    }

    Outcome follow(std::span<const double> step, double reach) {
        constexpr int halvings = 7;
        const double whole = std::min(1.0, m_limits.stride * m_system.size / reach);
        double factor = whole;
        for (int i = 0; i < halvings; ++i, factor *= 0.5) {
            if (!accepts(moved(m_x, step, factor), i % 2 == 0))
                continue;
            m_isCurved = m_isCurved || factor < whole;
            m_expected = std::max(kContracts, kExceeds * (1.0 - factor)) * reach;
            const double next = reach / std::exchange(m_whole, factor < 1.0 ? 0.0 : reach) * reach;
            return next <= kNearEnough * m_system.tolerance ? Outcome::nearest : Outcome::moved;
        }
        return Outcome::stuck;
    }

    /// Length in the measure of the pull.
    double squared(std::span<const double> way) const {
        double sum = 0.0;
        for (std::size_t j = 0; j < way.size(); ++j)
            sum += m_pull.weights[j] * way[j] * way[j];
        return sum;
    }

    /// Brings the point back to the equations and takes it if it is nearer to the targets.
    bool accepts(std::vector<double> next, bool isWorthRestoring) {
        if (!returnsByPolishing(next) && !(isWorthRestoring && returnsByRestoring(next)))
            return false;
        const double then = pullOf(m_pull, next);
        if (!(then < m_pullNow) || (m_isGuarded && !m_limits.isSound(kMargin)))
            return false;
        m_pullNow = then;
        m_residualNow = m_residualOfNext;
        m_x = std::move(next);
        return true;
    }

    bool returnsByPolishing(std::vector<double>& next) {
        if (m_isStale) {
            m_stepper.linearise(m_x);
            m_stepper.factorise(kLeastDamping);
            m_isStale = false;
        }
        m_stepper.evaluate(next);
        const bool holds = polish(m_stepper, m_system, next, 6, 0.3 * m_residual);
        m_residualOfNext = largest(m_stepper.residual);
        return holds && m_residualOfNext <= m_residual;
    }

    /// A long step bends too far for the factors at hand: new ones bring it back.
    bool returnsByRestoring(std::vector<double>& next) {
        IterationLimits limits;
        limits.restoring = kMostRestoring;
        m_isStale = true;
        m_residualOfNext = restore(m_region, m_pull.weights, next, limits).residual;
        return m_residualOfNext <= m_residual;
    }

    static constexpr int kMostRestoring = 10;
    static constexpr double kMargin = 2.0;
    static constexpr double kRounding = 1e-14;  // of the pull: no step that promises less can be seen to help

    Region& m_region;
    const EquationSystem& m_system;
    const Pull& m_pull;
    std::vector<double>& m_x;
    const IterationLimits& m_limits;
    Stepper m_stepper;
    std::vector<double> m_wish, m_multiplier;
    double m_whole = 0.0;  ///< reach of the step before if it was taken as a whole; steps shrink by about one factor
    double m_expected = std::numeric_limits<double>::max();  ///< what the step before promised of the next one's reach
    double m_pullNow;
    double m_residual;  ///< that a point may have
    double m_residualNow, m_residualOfNext = 0.0;
    bool m_isGuarded = false;
    bool m_isCurved = false;
    bool m_isStale = false;  ///< the factors are no longer those of m_x
};

}  // namespace

namespace {

IterationReport slideFrom(Slider slider, int most) {
    IterationReport report;
    report.isSatisfied = true;
    for (auto outcome = Slider::Outcome::moved; outcome == Slider::Outcome::moved && report.iterations < most;
         ++report.iterations) {
        outcome = slider.advance();
        report.isNearest = outcome == Slider::Outcome::nearest;
    }
    report.residual = slider.finish();
    return report;
}

}  // namespace

IterationReport settle(Region& region, const Pull& pull, std::vector<double>& x, const IterationLimits& limits) {
    std::vector<double> rows;
    region.evaluate(x, rows);
    double residual = largest(rows);
    IterationReport restored;
    if (!(residual <= kSharp * region.system().aim)) {
        restored = restore(region, pull.weights, x, limits);
        if (!restored.isSatisfied)
            return restored;
        residual = restored.residual;
        region.write(x);
    }
    IterationReport report = slideFrom({region, pull, x, limits, residual}, limits.sliding);
    report.iterations += restored.iterations;
    return report;
}

}  // namespace holdfast
