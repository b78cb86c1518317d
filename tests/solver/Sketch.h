#pragma once

#include <map>
#include <string>
#include <string_view>

#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/SketchData.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

// Tests read sketches from drawings, which stand above the solver.
using namespace document;
using namespace hosting;

/// A sketch from a line of text per element and constraint, split by semicolons:
///
///     line a 0,0 10,0; circle c 5,5 2; arc b 0,0 5 0 90; horizontal a; distance a.start c.centre = 7
///
/// Elements: line, ray, xline (base, angle), circle (centre, radius), arc (centre, radius, angles), ellipse (centre,
/// major axis vector, ratio), ellipse_arc (and angles), point, text (position, angle), spline (degree, control
/// points, clamped), polyline (vertices, x,y or x,y:bulge; last word `closed`). Angles are degrees. `fixed!` in front
/// makes an element reference geometry. Constraints go by their names in drawing files; `off` in front switches one
/// off, `measured` makes a dimension follow, `as ROLE` at the end says which helper of an ellipse it is.
struct SketchText {
    SketchData sketch;
    std::map<std::string, int> numbers;  ///< of elements, by id

    explicit SketchText(std::string_view text);

    void add(std::string_view statement);

    /// Where a place is: "a.start", "p" for a point element.
    Vec2 at(std::string_view place) const;

    /// The first of the two values of a place, for edits.
    int valueOf(std::string_view place) const;

    /// Puts a place somewhere else without asking anybody.
    void move(std::string_view place, Vec2 to);

    double value(std::string_view entity, int index) const;

    /// Ids of constraints, space between them.
    std::string namesOf(std::span<const int> constraints) const;

    /// Largest residual of all constraints and rules, nothing merged.
    double worstViolation() const;

    SketchPlace place(std::string_view text) const;

private:
    bool addEntity(const std::vector<std::string>& words);
    void addConstraint(std::vector<std::string> words);
};

}  // namespace holdfast::solver::detail
