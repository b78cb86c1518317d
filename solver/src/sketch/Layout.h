#pragma once

#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Which values of an entity are points, free vectors and directions; of points and vectors the first of the two.
/// Their numbers in SketchData::values; -1: it has none.
struct Layout {
    std::vector<int> points{};
    int start = -1, end = -1;  ///< those of the points that the entity begins and ends with
    int vector = -1, direction = -1;
};

Layout layoutOf(const SketchEntity& entity);

}  // namespace holdfast::solver::detail
