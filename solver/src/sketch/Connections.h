#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// The element that a value belongs to. Logarithmic in the elements.
int entityOfValue(const SketchData& sketch, int value);

/// Elements and constraints in the order in which a walk meets them.
struct Surroundings {
    std::vector<int> elements;
    std::vector<int> constraints;
};

/// Walks from some elements along some constraints to the elements that they hold on, and on from there. Fixed elements
/// lead nowhere and are left out. Linear in the sketch and the constraints.
Surroundings surroundingsOf(const SketchData& sketch, std::span<const int> constraints, std::vector<int> elements);

}  // namespace holdfast::solver::detail
