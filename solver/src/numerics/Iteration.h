#pragma once

#include <functional>
#include <limits>

#include "solver/src/Uses.h"
#include "solver/src/numerics/Budget.h"
#include "solver/src/numerics/Subproblem.h"

namespace holdfast::solver::detail {

/// Where the unknowns of a subproblem would like to be, and how much they count in the movement.
struct Pull {
    std::vector<double> targets;
    std::vector<double> weights;  ///< squared; above 0
};

struct IterationLimits {
    static constexpr int kRestoring = 60;    // Newton takes 3 to 10; the rest is for damped ways
    static constexpr int kSliding = 40;      // the same; the way may end anywhere
    static constexpr double kStride = 0.25;  // farther the linear equations say nothing
    int restoring = kRestoring;
    int sliding = kSliding;
    double stride = kStride;  ///< longest movement of one value in one iteration, as a part of the sketch's size
    int lame = std::numeric_limits<int>::max();  ///< iterations in a row that leave half or more, and end restoring
    /// Restoring ends where it hardly gains any more; without, it goes on to the least sum of squares.
    bool givesUp = true;
    /// Steps to a double root may be doubled, so that it is hit. Without, it is only approached: on the root itself the
    /// slopes show a freedom that it does not have.
    bool mayDouble = true;
    /// Asked at each point on the way while sliding: may it be passed? The margin is 1 at the beginning and more on the
    /// way, so that a way that ended at a border can be taken up again.
    std::function<bool(double margin)> isSound;
    /// At the nearest point, goes on beyond what the pull itself can show: to the last digits of the coordinates.
    bool sharpens = false;
    Budget* budget = nullptr;  ///< or none: then only the numbers above bound the iterations
};

struct IterationReport {
    bool isSatisfied = false;  ///< every equation holds to the system's tolerance
    bool isNearest = false;    ///< no movement along the equations comes nearer to the targets
    bool isBarred = false;  ///< points that are nearer were found, but IterationLimits::isSound had something against
    bool isSound = false;   ///< IterationLimits::isSound was asked there, and had nothing against it
    int iterations = 0;     ///< factorisations
    double residual = 0.0;  ///< largest
};

/// From x to a point where all equations hold: the least movement under the linearised equations, again and again,
/// damped as far as it takes (K. Levenberg; D. Marquardt). Where no such point is found, x is where the equations hold
/// best.
IterationReport restore(Subproblem& subproblem, std::span<const double> weights, std::vector<double>& x,
                        const IterationLimits& limits);

/// Restores; then, from there, along the equations to the point nearest to the targets. Every point on the way holds
/// the equations too, so it can stop at any time.
IterationReport settle(Subproblem& subproblem, const Pull& pull, std::vector<double>& x, const IterationLimits& limits);

}  // namespace holdfast::solver::detail
