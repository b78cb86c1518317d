#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Subproblem.h"

namespace holdfast::solver::detail {

/// Tells dependent equations apart and shortens no step.
constexpr double kLeastDamping = 1e-12;

/// One subproblem's vectors while it is iterated.
class Stepper {
public:
    Stepper(Subproblem& subproblem, std::span<const double> weights) : m_subproblem(subproblem), m_weights(weights) {}

    std::vector<double> residual;

    void linearise(std::span<const double> x) { m_subproblem.linearise(x, residual); }
    /// What wishes miss there goes into x.
    void evaluate(std::vector<double>& x) {
        m_subproblem.evaluate(x, residual);
        m_subproblem.absorb(x, residual);
    }

    /// With the rows' squares damped by this part of them, or of their mean where they are next to nothing. False when
    /// there are no factors.
    bool factorise(double damping);

    /// From now on steps know how the equations bend, under these multipliers, where they were linearised last.
    void useHessian(std::span<const double> multiplier);

    bool isCurved() const { return m_isCurved; }
    /// From now on steps are computed with the factors at hand that know how the equations bend, or with those that do
    /// not.
    void takeFactors(bool areCurved) { m_isCurved = areCurved; }

    /// Of the step before.
    std::span<const double> multiplier() const { return m_multiplier; }

    /// The least step that cancels the residual of now.
    std::span<const double> restorationStep() { return restorationStep(m_isExact); }

    /// The same for a residual that further steps will reduce anyway.
    std::span<const double> roughRestorationStep() { return restorationStep(false); }

    /// The same from a dense decomposition of the Jacobian of now.
    std::span<const double> denseRestorationStep();

    /// The step nearest to `wish` that cancels the residual of now.
    std::span<const double> tangentialStep(std::span<const double> wish);

    /// The same with the factors of an earlier point, which differ little: the gradient is the one of now, the
    /// multiplier the last one, and the step's own multiplier is what it changes by.
    std::span<const double> chordStep(std::span<const double> wish, std::span<const double> lastMultiplier);

    /// From a point that is nearest to its targets: to the one that is when these change, with the factors at hand.
    std::span<const double> followingStep(std::span<const double> change);

    /// Steps that were computed, each from factors at hand.
    int solves() const { return m_solves; }

    /// Longest movement of geometry in a step.
    double reach(std::span<const double> step) const;

    /// A few steps with the factors at hand, which cost next to nothing, until the residual is down to the aim or to
    /// rounding. True when it ends within the system's tolerance.
    bool polish(std::vector<double>& x, int most, double aim);

private:
    std::span<const double> restorationStep(bool isExact);
    std::span<const double> solve(bool isExact);

    Subproblem& m_subproblem;
    std::span<const double> m_weights;
    std::vector<double> m_damping, m_step, m_multiplier;
    int m_solves = 0;
    bool m_isExact = true;
    bool m_isCurved = false;
};

/// x and a part of a step.
std::vector<double> moved(std::span<const double> x, std::span<const double> step, double factor);

}  // namespace holdfast::solver::detail
