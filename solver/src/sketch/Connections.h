#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// The entity that a value belongs to. Logarithmic in the entities.
int entityOfValue(const SketchData& sketch, int value);

/// Some constraints, by the entities that they are on.
ListTable constraintsByEntity(const SketchData& sketch, std::span<const int> constraints);

/// Entities and constraints in the order in which a walk meets them.
struct Surroundings {
    std::vector<int> entities;
    std::vector<int> constraints;
};

/// Walks from some entities along some constraints to the entities that they hold on, and on from there. Fixed entities
/// lead nowhere and are left out. Linear in the sketch and the constraints.
Surroundings surroundingsOf(const SketchData& sketch, std::span<const int> constraints, std::vector<int> entities);

}  // namespace holdfast::solver::detail
