#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/dragging/DragRegion.h"

namespace holdfast::solver::detail {

/// The end of a drag: handles come to their goals to rounding, or as near as they can, and everything else moves least
/// for just these places.
class DragLanding {
public:
    explicit DragLanding(DragRegion& region) : m_region(region) {}

    /// Leaves what it has found in the system's values; what the last step has left where it fails.
    Attempt land();

private:
    std::vector<double> seedGoals(std::span<const double> wanted);
    double farthestOfSeeds(std::span<const double> x, std::span<const double> wanted) const;
    IterationLimits sharp();
    std::vector<double> nearestHandles(std::span<const double> wanted, int& iterations);
    bool arrive(std::span<const double> reachable, int& iterations);
    bool putHandlesOn(std::span<const double> reachable);

    DragRegion& m_region;
};

}  // namespace holdfast::solver::detail
