#pragma once

#include <cmath>
#include <string>

#include "Sketch.h"

// What tests of following an edit ask for.
namespace holdfast::solver::detail {

/// The number of the first constraint of a kind; -1: there is none.
inline int constraintOf(const SketchText& sketch, ConstraintType type) {
    for (std::size_t c = 0; c < sketch.sketch.constraints.size(); ++c)
        if (sketch.sketch.constraints[c].type == type)
            return static_cast<int>(c);
    return -1;
}

/// Gives the first dimension of a kind a value, and keeps shapes.
inline SolveResult set(SketchText& sketch, ConstraintType type, double value) {
    return solve(sketch.sketch, {.values = {{constraintOf(sketch, type), value}}, .keepsShapes = true});
}

inline double lengthOf(const SketchText& sketch, const char* line) {
    const Vec2 p = sketch.at(std::string(line) + ".start"), q = sketch.at(std::string(line) + ".end");
    return std::hypot(q.x - p.x, q.y - p.y);
}

}  // namespace holdfast::solver::detail
