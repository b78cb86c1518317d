#pragma once

#include <memory>
#include <string_view>
#include <variant>
#include <vector>

#include <holdfast/solver/Export.h>
#include <holdfast/solver/Ids.h>
#include <holdfast/solver/ResidualFunction.h>

namespace holdfast::solver {

// One struct for each kind of constraint. Ids have no default and neither have dimensions, so what is left out does not
// compile. Which entities a kind takes stands beside it; "line" means a line, a ray, an unbounded line, the direction
// of a text or a straight segment, and "circle" a circle, an arc or an arc segment. docs/solver.md has the equations.

/// The number of a dimension: a length in the sketch's unit, or an angle in radians.
class Value {
public:
    constexpr Value(double number) : m_number(number) {}    // NOLINT(google-explicit-constructor): reads like a number
    constexpr operator double() const { return m_number; }  // NOLINT(google-explicit-constructor)

private:
    double m_number;
};

// ---- where points and curves are

struct Coincident {
    PointId first, second;
};
/// Circles, ellipses and their arcs.
struct Concentric {
    CurveId first, second;
};
/// The curve is taken as endless, the line beyond its ends and the whole circle of an arc; but a spline ends at its
/// ends.
struct PointOnCurve {
    PointId point;
    CurveId curve;
};
/// The point stays where it is when the solve begins.
struct FixedPoint {
    PointId point;
};
/// The curve stays where it is when the solve begins; a line may slide along itself, an arc along its circle. To hold
/// an entity with all that it has, see Sketch::fix.
struct FixedCurve {
    CurveId curve;
};
struct Horizontal {
    CurveId line;
};
struct Vertical {
    CurveId line;
};
struct HorizontalPoints {
    PointId first, second;
};
struct VerticalPoints {
    PointId first, second;
};
/// The point is the middle of a line, a segment or an arc.
struct Midpoint {
    PointId point;
    CurveId curve;
};
/// The points are mirror images of each other about a line.
struct Symmetric {
    PointId first, second;
    CurveId axis;
};
/// The centre is the middle between the points.
struct SymmetricAboutPoint {
    PointId first, second, centre;
};
/// Two lines, two circles or two ellipses are mirror images of each other about a line.
struct SymmetricCurves {
    CurveId first, second;
    CurveId axis;
};

// ---- directions and sizes

struct Parallel {
    CurveId first, second;
};
/// Two lines, or a line and a circle.
struct Perpendicular {
    CurveId first, second;
};
/// Any two curves, which both run through the point.
struct PerpendicularAt {
    CurveId first, second;
    PointId point;
};
/// Two ends of curves meet at a right angle.
struct PerpendicularEnds {
    PointId first, second;
};
struct Collinear {
    CurveId first, second;
};
/// Any two curves but two lines; they may touch anywhere.
struct Tangent {
    CurveId first, second;
};
/// Any two curves, which both run through the point.
struct TangentAt {
    CurveId first, second;
    PointId point;
};
/// Two ends of curves meet without a corner.
struct TangentEnds {
    PointId first, second;
};
/// The end of a curve lies on another one and runs along it.
struct TangentEnd {
    PointId end;
    CurveId curve;
};
/// Two ends of curves meet with the same direction and the same curvature.
struct Smooth {
    PointId first, second;
};
/// Lengths of lines or segments, radii of circles, both radii of ellipses.
struct Equal {
    CurveId first, second;
};
/// The line is the ellipse's diameter along its major (minor) axis.
struct MajorDiameter {
    EntityId line, ellipse;
};
struct MinorDiameter {
    EntityId line, ellipse;
};
/// The point is the focus of the ellipse on whose side it stands.
struct Focus {
    PointId point;
    EntityId ellipse;
};

// ---- dimensions

struct Distance {
    PointId first, second;
    Value value;  ///< 0 or more
};
/// From a point to a line or to a circle, at right angles to it.
struct PointCurveDistance {
    PointId point;
    CurveId curve;
    Value value;  ///< 0 or more
};
/// The gap between a line and a circle or between two circles, at its narrowest.
struct CurveDistance {
    CurveId first, second;
    Value value;  ///< 0 or more
};
/// From the first line to the middle of the second one, or to the base of one without ends: of parallel lines their
/// gap. Directions stay free; lines that are to be parallel have a Parallel as well.
struct LineDistance {
    CurveId first, second;
    Value value;  ///< 0 or more
};
/// x of the second point less x of the first one.
struct DistanceX {
    PointId first, second;
    Value value;
};
struct DistanceY {
    PointId first, second;
    Value value;
};
/// Of a line, a segment or an arc.
struct Length {
    CurveId curve;
    Value value;  ///< 0 or more
};
struct Radius {
    CurveId circle;
    Value value;  ///< above 0
};
struct Diameter {
    CurveId circle;
    Value value;  ///< above 0
};
/// The direction of a line, counter-clockwise from the x axis.
struct Direction {
    CurveId line;
    Value value;  ///< radians
};
/// The angle that an arc spans.
struct Sweep {
    CurveId arc;
    Value value;  ///< radians
};
/// Counter-clockwise from the direction of the first line (start to end) to that of the second one.
struct Angle {
    CurveId first, second;
    Value value;  ///< radians
};
/// The same for any two curves, which both run through the point; their sense does not matter.
struct AngleAt {
    CurveId first, second;
    PointId point;
    Value value;  ///< radians
};

/// Equations of the user's own, of points (two numbers each) and then of entities (all their numbers, see
/// Sketch::values). See makeResidual.
struct OwnResidual {
    std::vector<PointId> points;
    std::vector<EntityId> entities;
    std::shared_ptr<const ResidualFunction> function;
};

using Constraint =
    std::variant<Coincident, Concentric, PointOnCurve, FixedPoint, FixedCurve, Horizontal, Vertical, HorizontalPoints,
                 VerticalPoints, Midpoint, Symmetric, SymmetricAboutPoint, SymmetricCurves, Parallel, Perpendicular,
                 PerpendicularAt, PerpendicularEnds, Collinear, Tangent, TangentAt, TangentEnds, TangentEnd, Smooth,
                 Equal, MajorDiameter, MinorDiameter, Focus, Distance, PointCurveDistance, CurveDistance, LineDistance,
                 DistanceX, DistanceY, Length, Radius, Diameter, Direction, Sweep, Angle, AngleAt, OwnResidual>;

/// "point on curve": the kind in words.
HOLDFAST_SOLVER_EXPORT std::string_view nameOfKind(const Constraint& constraint);

}  // namespace holdfast::solver
