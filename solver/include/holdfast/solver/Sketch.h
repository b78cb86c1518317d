#pragma once

#include <memory>
#include <span>
#include <vector>

#include <holdfast/solver/Constraints.h>
#include <holdfast/solver/Export.h>
#include <holdfast/solver/Ids.h>
#include <holdfast/solver/Result.h>
#include <holdfast/solver/Vec2.h>

namespace holdfast::solver {

/// The kinds of entities, and the numbers that each has.
enum class EntityKind {
    line,           ///< x1 y1 x2 y2
    ray,            ///< x y angle
    xline,          ///< x y angle
    circle,         ///< cx cy r
    arc,            ///< cx cy r, start x y, end x y; counter-clockwise from start to end
    ellipse,        ///< cx cy, major axis vector ux uy, minor radius b
    ellipticalArc,  ///< as ellipse, start x y, end x y; counter-clockwise
    point,          ///< x y
    text,           ///< x y angle
    spline,         ///< x y of each control point
    polyline        ///< x y of each vertex, then the bulge of each arc segment
};

/// A B-spline; its control points can move, its knots and weights cannot.
struct SplineData {
    int degree = 3;  ///< 1 to 25
    std::vector<Vec2> control{};
    /// Ascending. Not periodic: as many as control points plus degree plus 1; empty: clamped and evenly spaced.
    /// Periodic: those of one period, the first and the last with the same multiplicity.
    std::vector<double> knots{};
    std::vector<double> weights{};  ///< empty: all 1
    bool isPeriodic = false;
};

struct PolylineData {
    std::vector<Vec2> vertices{};
    /// tan(included angle / 4) of the segment from each vertex to the next one, positive counter-clockwise, 0 for a
    /// straight one; empty: all straight. Segments stay straight, or arcs, for good.
    std::vector<double> bulges{};
    bool isClosed = false;
};

/// Entities in the plane and the constraints between them.
///
/// Lengths are in any one unit; angles are radians, counter-clockwise from the x axis. What is added is checked: an
/// error says what is wrong, where, and what would do, and the sketch is as before. Where the entities are when a solve
/// begins chooses between solutions that differ in sides, senses or inner and outer contact.
///
/// A sketch is a value: copies are of their own, and several sketches may be used in several threads at once; one
/// sketch may be read in several as long as nobody changes it. A sketch that was moved from can only be assigned to and
/// destroyed. No exception leaves any function of this library but std::bad_alloc and what SolveOptions::isCancelled
/// throws; after either the sketch may be read, solved again and destroyed, and what was being added is not there. A
/// residual function of a user's own must not throw.
///
/// Costs: adding is independent of the sketch's size, on average; removing an entity or a constraint, copying and
/// solving are linear in it.
class HOLDFAST_SOLVER_EXPORT Sketch {
public:
    Sketch();
    ~Sketch();
    Sketch(const Sketch& other);
    Sketch& operator=(const Sketch& other);
    Sketch(Sketch&& other) noexcept;
    Sketch& operator=(Sketch&& other) noexcept;

    // ---- entities

    Result<EntityId> addPoint(Vec2 position);
    Result<EntityId> addLine(Vec2 start, Vec2 end);
    Result<EntityId> addRay(Vec2 base, double angle);
    Result<EntityId> addXline(Vec2 base, double angle);
    Result<EntityId> addCircle(Vec2 centre, double radius);
    /// Counter-clockwise from startAngle to endAngle, which is above it by less than a full turn.
    Result<EntityId> addArc(Vec2 centre, double radius, double startAngle, double endAngle);
    /// majorAxis: from the centre to a vertex; ratio: minor to major radius, above 0 and at most 1.
    Result<EntityId> addEllipse(Vec2 centre, Vec2 majorAxis, double ratio);
    /// Eccentric angles, from the major axis.
    Result<EntityId> addEllipticalArc(Vec2 centre, Vec2 majorAxis, double ratio, double startAngle, double endAngle);
    Result<EntityId> addSpline(const SplineData& spline);
    Result<EntityId> addPolyline(const PolylineData& polyline);
    /// A position with a direction. The height says by how much a turn moves it.
    Result<EntityId> addText(Vec2 position, double angle, double height);

    /// Removes the entity with all constraints that name it, which are returned.
    Result<std::vector<ConstraintId>> remove(EntityId entity);

    /// No solve changes a fixed entity.
    Result<Done> fix(EntityId entity);
    Result<Done> unfix(EntityId entity);

    bool contains(EntityId entity) const;
    bool isFixed(EntityId entity) const;
    /// Of an entity that the sketch contains.
    EntityKind kindOf(EntityId entity) const;
    std::vector<EntityId> entities() const;

    /// The entity's numbers, in the order that EntityKind tells; empty where there is no such entity. They stay valid
    /// until the sketch is changed.
    std::span<const double> values(EntityId entity) const;
    /// Puts the entity elsewhere: as many finite numbers as it has, and radii above 0.
    Result<Done> setValues(EntityId entity, std::span<const double> values);
    /// Where the point is; not a number where there is no such point. Cost: the entity's numbers at most.
    Vec2 position(PointId point) const;

    // ---- constraints

    Result<ConstraintId> add(const Constraint& constraint);
    Result<Done> remove(ConstraintId constraint);

    /// Of a dimension.
    Result<Done> setValue(ConstraintId dimension, double value);
    /// An inactive constraint is as good as not there.
    Result<Done> setActive(ConstraintId constraint, bool isActive);
    /// A dimension that does not drive only measures.
    Result<Done> setDriving(ConstraintId dimension, bool isDriving);

    bool contains(ConstraintId constraint) const;
    bool isActive(ConstraintId constraint) const;
    bool isDriving(ConstraintId constraint) const;
    /// Of a constraint that the sketch contains; with the value of now.
    const Constraint& constraint(ConstraintId constraint) const;
    std::vector<ConstraintId> constraints() const;

private:
    friend struct SketchAccess;
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// How far a constraint is from holding: its largest residual, as a length; 0 for one that is switched off or only
/// measures. Cost: linear in the sketch.
HOLDFAST_SOLVER_EXPORT Result<double> residual(const Sketch& sketch, ConstraintId constraint);

/// What a dimension measures now, whether it drives or not: a length, or radians in [0, 2 pi), AngleAt in [0, pi).
HOLDFAST_SOLVER_EXPORT Result<double> measure(const Sketch& sketch, ConstraintId dimension);

}  // namespace holdfast::solver
