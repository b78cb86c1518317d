#pragma once

#include <optional>

#include "solver/src/api/SketchImpl.h"

namespace holdfast::solver {

// What is wrong with an entity that is to be added; nothing when it can be. Cost: linear in its numbers.

std::optional<Error> faultOf(const geometry::LineShape& line);
std::optional<Error> faultOf(const geometry::CircleShape& circle);
std::optional<Error> faultOf(const geometry::ArcShape& arc);
std::optional<Error> faultOf(const geometry::EllipticalArcShape& arc, const char* name);
std::optional<Error> faultOf(const SplineData& spline);
std::optional<Error> faultOf(const PolylineData& polyline);

/// A position with a direction.
std::optional<Error> faultOf(Vec2 position, double angle, const char* name);

/// The spline with the knots that it leaves out.
geometry::SplineShape shapeOf(const SplineData& spline);
geometry::PolylineShape shapeOf(const PolylineData& polyline);

/// What is wrong with the numbers that an entity is to have.
std::optional<Error> faultOf(const detail::SketchEntity& entity, std::span<const double> values);

}  // namespace holdfast::solver
