#include "solver/src/numerics/Iteration.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "solver/src/numerics/Stepper.h"
#include "solver/src/numerics/TangentialPhase.h"

namespace holdfast::solver::detail {

namespace {

/// Parts of the rows' squares. From Newton's step damping begins at the first and grows to the most, by which the step
/// has become that of steepest descent; what has helped shrinks it.
constexpr double kFirstDamping = 1e-4, kMostDamping = 1e6, kMoreDamping = 30.0, kLessDamping = 0.01;
constexpr int kMostDense = 150;     // rows or columns up to which a dense decomposition is affordable
constexpr int kSlow = 2;            // iterations without much progress before it is tried
constexpr double kSlowly = 0.2;     // of the residual before: Newton leaves far less, a double root a quarter
constexpr double kDoubtful = 0.02;  // the same with a few steps by the same factors: worth a look at twice the step
constexpr double kLame = 0.5;       // the same: only shortened steps leave more
constexpr int kPolishing = 3;       // steps with factors at hand: near a solution each gains the digits of a new one
constexpr double kNear = 1e-4;      // residual, as a part of the sketch's size, that counts as near a solution
constexpr int kLookBack = 6;        // iterations that together have to gain the part below, else no more are made
constexpr double kGain = 0.02;      // strides of a quarter of the size gain more from fifty sizes away

/// Tries shorter and shorter parts of a step until the residual shrinks. Afterwards x and the stepper's residual are
/// those of the point taken.
bool shorten(Stepper& stepper, std::span<const double> step, double factor, std::vector<double>& x) {
    constexpr int halvings = 4;          // shorter steps than a sixteenth are better damped
    constexpr double sufficient = 1e-4;  // decrease for each part of the step (J. Nocedal, S. Wright, 3.1)
    const double before = lengthOf(stepper.residual);
    const std::vector<double> old = stepper.residual;
    for (int i = 0; i <= halvings; ++i, factor *= 0.5) {
        std::vector<double> next = moved(x, step, factor);
        stepper.evaluate(next);
        if (lengthOf(stepper.residual) < (1.0 - sufficient * factor) * before) {
            x = next;
            return true;
        }
    }
    stepper.residual = old;
    return false;
}

/// At a double root a step leads half the way only: where the steps before have left much, twice the step is taken if
/// that leaves less (D. Decker, H. Keller, C. Kelley, Convergence rates for Newton's method at singular points). What
/// lands on the root itself may find no slope there to come right by: then it goes on from the step alone, for good.
class Doubling {
public:
    /// A step, shortened as far as it takes; twice as long where it may be.
    bool take(Stepper& stepper, std::span<const double> step, double most, std::vector<double>& x) {
        const double reach = stepper.reach(step);
        const bool isTried = m_mayDouble && !m_isOver && 2.0 * reach <= most;
        std::vector<double> twice = isTried ? moved(x, step, 2.0) : std::vector<double>();
        if (!shorten(stepper, step, reach > most ? most / reach : 1.0, x))
            return false;
        m_onceBefore = std::exchange(m_once, {});
        if (!isTried)
            return true;
        const std::vector<double> once = stepper.residual;
        stepper.evaluate(twice);
        if (lengthOf(stepper.residual) < lengthOf(once))
            m_once = std::exchange(x, std::move(twice));
        else
            stepper.residual = once;
        return true;
    }

    /// For the next step.
    void allow(bool mayDouble) { m_mayDouble = mayDouble; }

    /// After a step that has hardly helped, or where none could be taken: true when the one before it was doubled. Then
    /// x is where that one alone has led.
    bool takeBack(Stepper& stepper, bool hasMoved, std::vector<double>& x) {
        std::vector<double>& once = hasMoved ? m_onceBefore : m_once;
        if (once.empty())
            return false;
        x = std::move(once);
        m_once.clear();
        m_onceBefore.clear();
        stepper.evaluate(x);
        m_isOver = true;
        return true;
    }

private:
    bool m_mayDouble = false, m_isOver = false;
    std::vector<double> m_once, m_onceBefore;  ///< where the last step and the one before lead alone, if doubled
};

/// One damped step, with more and more damping until it helps. False when none does.
bool dampedStep(Stepper& stepper, double most, Doubling& doubling, double& damping, std::vector<double>& x) {
    for (bool hasMoved = false; damping <= kMostDamping;) {
        if (stepper.factorise(damping))
            hasMoved = doubling.take(stepper, stepper.restorationStep(), most, x);
        damping = hasMoved ? std::max(kLeastDamping, damping * kLessDamping)
                           : std::max(kFirstDamping, damping * kMoreDamping);
        if (hasMoved)
            return true;
    }
    return false;
}

/// Sees when the residual hardly shrinks any more: there is no solution where it leads to.
class Progress {
public:
    bool hasEnded(int iterations, std::span<const double> residual) {
        if (iterations % kLookBack != 0)
            return false;
        const double now = lengthOf(residual);
        const bool gains = now < (1.0 - kGain) * m_before;
        m_before = now;
        return !gains;
    }

private:
    double m_before = std::numeric_limits<double>::max();
};

}  // namespace

IterationReport restore(Subproblem& subproblem, std::span<const double> weights, std::vector<double>& x,
                        const IterationLimits& limits) {
    const EquationSystem& system = subproblem.system();
    const double most = limits.stride * system.size;
    const bool isSmall = subproblem.columnCount() <= kMostDense && subproblem.rowCount() <= kMostDense;
    Stepper stepper(subproblem, weights);
    IterationReport report;
    double damping = kLeastDamping;
    int slow = 0, lame = 0;
    Doubling doubling;
    Progress progress;
    stepper.evaluate(x);
    for (;;) {
        const double before = report.residual;
        if (largest(stepper.residual) > std::max(kLame * before, system.tolerance) &&
            doubling.takeBack(stepper, true, x))
            progress = {};
        report.residual = largest(stepper.residual);
        report.isSatisfied = report.residual <= system.tolerance;
        if (report.residual <= system.aim || std::isnan(report.residual) || report.iterations >= limits.restoring)
            return report;
        if (limits.givesUp && progress.hasEnded(report.iterations, stepper.residual))
            return report;
        lame = report.iterations > 0 && report.residual > kLame * before ? lame + 1 : 0;
        if (lame >= limits.lame)
            return report;
        slow = report.iterations > 0 && report.residual > kSlowly * before ? slow + 1 : 0;
        if (!maySpend(limits.budget))
            return report;
        stepper.linearise(x);
        ++report.iterations;
        // Near a double root the equations become dependent: steps shrink slowly and the sparse factors blur them.
        const bool isNear = report.residual < kNear * system.size;
        const bool isDense = isSmall && slow >= kSlow && isNear;
        const bool isDoubtful = isNear && report.iterations > 1 && report.residual > kDoubtful * before;
        doubling.allow(limits.mayDouble && (isDense || isDoubtful));
        if (isDense ? !doubling.take(stepper, stepper.denseRestorationStep(), most, x)
                    : !dampedStep(stepper, most, doubling, damping, x)) {
            if (report.isSatisfied || !doubling.takeBack(stepper, false, x))
                return report;
            damping = kLeastDamping;
            progress = {};
            continue;
        }
        if (!isDense && isNear)
            stepper.polish(x, kPolishing, system.aim);
    }
}

IterationReport settle(Subproblem& subproblem, const Pull& pull, std::vector<double>& x,
                       const IterationLimits& limits) {
    if (hasCarriedTo(subproblem, pull, x)) {
        subproblem.write(x);
        return slide(subproblem, pull, x, limits, subproblem.carried().residual);
    }
    std::vector<double> rows;
    subproblem.evaluate(x, rows);
    double residual = largest(rows);
    IterationReport restored;
    if (!(residual <= kSharp * subproblem.system().aim)) {
        restored = restore(subproblem, pull.weights, x, limits);
        if (!restored.isSatisfied)
            return restored;
        residual = restored.residual;
        subproblem.write(x);
    }
    IterationReport report = slide(subproblem, pull, x, limits, residual);
    report.iterations += restored.iterations;
    return report;
}

}  // namespace holdfast::solver::detail
