#pragma once

#include <span>
#include <utility>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Where two straight pieces meet end to end: lines that coincidences join, and neighbouring segments of polylines.
class Corners {
public:
    /// Linear in the sketch.
    explicit Corners(const SketchData& sketch);

    /// Entities at corners that turn to the other side than before, ascending. Both are values of the sketch. Corners
    /// that are straight, before or now, turn to no side.
    std::vector<int> turnedOver(std::span<const double> before, std::span<const double> now) const;

private:
    /// One leg of a corner: the values of the point at the corner and of the one at its far end, and whose it is.
    struct Leg {
        int corner, far, entity;
    };

    static double turn(const Leg& a, const Leg& b, std::span<const double> values);

    std::vector<std::pair<Leg, Leg>> m_corners;
};

}  // namespace holdfast::solver::detail
