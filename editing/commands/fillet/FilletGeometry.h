#pragma once

#include <optional>
#include <string>

#include "document/Document.h"
#include "editing/Uses.h"
#include "geometry/CurveEnd.h"

namespace holdfast::editing {

/// One of the two curves of a fillet.
struct FilletSide {
    std::string name;  ///< for messages
    Shape shape;
    std::optional<Vec2> pick{};       ///< where the user picked it, if he did
    std::optional<CurveEnd> moves{};  ///< the end that the fillet moves; none: the one that suits it best
    bool mayGrow = true;              ///< that end may be led on beyond where it is
    std::string verb = "fillet";      ///< what is done to it, for messages
};

/// Two curves after their fillet; without an arc they meet in a sharp corner.
struct CurveFillet {
    Shape first;
    Shape second;
    std::optional<ArcShape> arc{};
    CurveEnd firstEnd = CurveEnd::end;  ///< which end of the first was moved; says nothing about closed curves
    CurveEnd secondEnd = CurveEnd::end;
};

/// The point of a curve that a user means by one near it; see paramOnCurve.
Vec2 pickOn(const FilletSide& side, Vec2 point, std::vector<std::string>* remarks = nullptr);

/// Joins two curves by an arc, or with radius 0 in a corner: where they touch it, nearest to the picks. Without picks:
/// on the curves as drawn, nearest to where their ends are closest, else nearest to their middles. Closed curves stay
/// whole. Parallel lines are joined by a half circle, of the only radius that fits. EditError where the curves have no
/// such arc or corner, or where nothing of a curve would be left.
CurveFillet filletCurves(const FilletSide& a, const FilletSide& b, double radius);

/// The same with radius 0; nothing where the curves do not meet, not even when they are prolonged.
std::optional<CurveFillet> sharpCorner(const FilletSide& a, const FilletSide& b);

/// EditError for curves whose ends meet where the one goes on in the direction of the other: there is no corner.
void refuseSmooth(const FilletSide& a, const FilletSide& b);

}  // namespace holdfast::editing
