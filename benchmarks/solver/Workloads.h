#pragma once

#include <string>
#include <vector>

#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// A sketch of a chosen size that holds as it stands, and a point of it to drag.
struct Workload {
    std::string name;
    SketchData sketch;
    int handle = -1;  ///< first of two values
};

/// Families of sketches, each with about as many constraints as asked for. Points that meet are separate points with a
/// coincidence between them, as a host holds them.
///
/// chain: level and upright rectangles joined at their corners.
/// grid: a net of lines; in every cell two neighbours are equally long. (Right angles would not compare solvers: the
/// other one spends its time on the long expressions that it makes of them.)
/// islands: triangles of their own, level at the bottom, two sides equal.
/// mechanism: lines and arcs in turns, tangent where they meet, all radii equal.
Workload chainOf(int constraints);
Workload gridOf(int constraints);
Workload islandsOf(int constraints);
Workload mechanismOf(int constraints);

/// Lines from one point outwards, each of its own length.
SketchData starOf(int lines);

/// Slots side by side, all of one radius.
SketchData slotsOf(int entities);

/// Adds triangles like those of islandsOf beside the sketch.
void addIslands(SketchData& sketch, int count);

/// Moves every free coordinate by up to the amount, always in the same way.
void disturb(SketchData& sketch, double amount);

}  // namespace holdfast::solver::detail
