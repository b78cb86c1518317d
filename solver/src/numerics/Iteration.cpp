#include "solver/src/numerics/Iteration.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/src/numerics/Stepper.h"
#include "solver/src/numerics/TangentialPhase.h"

namespace holdfast::solver::detail {

namespace {

/// Parts of the rows' squares. From Newton's step damping begins at the first and grows to the most, by which the step
/// has become that of steepest descent; what has helped shrinks it.
constexpr double kFirstDamping = 1e-4, kMostDamping = 1e6, kMoreDamping = 30.0, kLessDamping = 0.01;
constexpr int kMostDense = 150;  // rows or columns up to which a dense decomposition is affordable
constexpr int kSlow = 2;         // iterations without much progress before it is tried
constexpr double kSlowly = 0.2;  // of the residual before: Newton leaves far less, a double root a quarter
constexpr int kPolishing = 3;    // steps with factors at hand: near a solution each gains the digits of a new one
constexpr double kNear = 1e-4;   // residual, as a part of the sketch's size, that counts as near a solution
constexpr int kLookBack = 6;     // iterations that together have to gain the part below, else no more are made
constexpr double kGain = 0.02;   // strides of a quarter of the size gain more from fifty sizes away

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

/// One damped step, with more and more damping until it helps. False when none does.
bool dampedStep(Stepper& stepper, double most, double& damping, std::vector<double>& x) {
    for (bool hasMoved = false; damping <= kMostDamping;) {
        if (stepper.factorise(damping)) {
            const auto step = stepper.restorationStep();
            const double reach = stepper.reach(step);
            hasMoved = shorten(stepper, step, reach > most ? most / reach : 1.0, x);
        }
        damping = hasMoved ? std::max(kLeastDamping, damping * kLessDamping)
                           : std::max(kFirstDamping, damping * kMoreDamping);
        if (hasMoved)
            return true;
    }
    return false;
}

bool denselySolvedStep(Stepper& stepper, double most, std::vector<double>& x) {
    const auto step = stepper.denseRestorationStep();
    const double reach = stepper.reach(step);
    return shorten(stepper, step, reach > most ? most / reach : 1.0, x);
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
    int slow = 0;
    Progress progress;
    stepper.evaluate(x);
    for (;;) {
        const double before = report.residual;
        report.residual = largest(stepper.residual);
        report.isSatisfied = report.residual <= system.tolerance;
        if (report.residual <= system.aim || std::isnan(report.residual) || report.iterations >= limits.restoring)
            return report;
        if (limits.givesUp && progress.hasEnded(report.iterations, stepper.residual))
            return report;
        slow = report.iterations > 0 && report.residual > kSlowly * before ? slow + 1 : 0;
        if (!maySpend(limits.budget))
            return report;
        stepper.linearise(x);
        ++report.iterations;
        // Near a double root the equations become dependent: steps shrink slowly and the sparse factors blur them.
        const bool isDense = isSmall && slow >= kSlow && report.residual < kNear * system.size;
        if (isDense ? !denselySolvedStep(stepper, most, x) : !dampedStep(stepper, most, damping, x))
            return report;
        if (!isDense && report.residual < kNear * system.size)
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
