#pragma once

#include <cmath>
#include <numbers>
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

/// The number of the constraint that stands last in the text.
inline int lastConstraintOf(const SketchText& sketch) {
    return static_cast<int>(sketch.sketch.constraints.size()) - 1;
}

/// Gives the first dimension of a kind a value, and keeps shapes.
inline SolveResult set(SketchText& sketch, ConstraintType type, double value) {
    return solve(sketch.sketch, {.values = {{constraintOf(sketch, type), value}}, .keepsShapes = true});
}

inline double lengthOf(const SketchText& sketch, const char* line) {
    const Vec2 p = sketch.at(std::string(line) + ".start"), q = sketch.at(std::string(line) + ".end");
    return std::hypot(q.x - p.x, q.y - p.y);
}

/// Turns a line, as an edit of it, about its start to an angle with the x-axis; its length stays.
inline SolveResult turn(SketchText& sketch, const char* line, double degrees) {
    const double angle = degrees * std::numbers::pi / 180.0, length = lengthOf(sketch, line);
    const int v = sketch.valueOf(std::string(line) + ".start");
    const Vec2 start = sketch.at(std::string(line) + ".start");
    return solve(sketch.sketch, {.targets = {{v, start.x},
                                             {v + 1, start.y},
                                             {v + 2, start.x + length * std::cos(angle)},
                                             {v + 3, start.y + length * std::sin(angle)}},
                                 .edited = {sketch.numbers.at(line)},
                                 .keepsShapes = true});
}

}  // namespace holdfast::solver::detail
