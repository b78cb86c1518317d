#pragma once

#include <optional>
#include <string>

#include "workbench/drawing/Document.h"

namespace holdfast {

/// One of the two curves of a fillet, and the point at which the user picked it, if he did.
struct FilletSide {
    std::string name;
    Shape shape;
    std::optional<Vec2> pick{};
};

/// Two curves after their fillet; without an arc they meet in a sharp corner.
struct CurveFillet {
    Shape first;
    Shape second;
    std::optional<ArcShape> arc{};
};

/// Joins two curves by an arc, or with radius 0 in a corner: where they touch it, nearest to the picks. Without picks:
/// on the curves as drawn, nearest to where their ends are closest, else nearest to their middles. Closed curves stay
/// whole. EditError where the curves have no such arc or corner; GeometryError where nothing of a curve would be left.
CurveFillet filletCurves(const FilletSide& a, const FilletSide& b, double radius);

}  // namespace holdfast
