#pragma once

#include "solver/src/Uses.h"
#include "solver/src/dragging/DragRegion.h"

namespace holdfast::solver::detail {

/// Pulls a drag's handles towards their goals within its region: in full while they arrive, less where they are held
/// back.
class DragPull {
public:
    explicit DragPull(DragRegion& region) : m_region(region) {}

    /// Leaves what it has found in the system's values.
    Attempt approach();

private:
    double wantedEmphasis();
    Attempt pullAgain(const Attempt& attempt, double wanted, const std::vector<double>& from);
    int overcomeCompliance();

    DragRegion& m_region;
};

}  // namespace holdfast::solver::detail
