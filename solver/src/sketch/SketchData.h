#pragma once

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <holdfast/solver/ResidualFunction.h>

#include "geometry/ConstraintType.h"
#include "geometry/PlaceKind.h"
#include "geometry/Shapes.h"
#include "geometry/SplineBasis.h"
#include "solver/src/Uses.h"
#include "solver/src/sketch/ConstraintLists.h"

namespace holdfast::solver::detail {

/// What an entity of a sketch is. The layout of each one's values stands beside it.
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
    polyline        ///< x y of each vertex, then one bulge for each arc segment
};

/// One entity of a sketch; its numbers are values[firstValue ... firstValue + valueCount) of the sketch.
struct SketchEntity {
    std::string id;
    EntityKind kind = EntityKind::point;
    bool fixed = false;  ///< reference geometry: no value of it ever changes
    int firstValue = 0;
    int valueCount = 0;
    int spline = -1;               ///< number in SketchData::splines
    int vertexCount = 0;           ///< polyline
    bool closed = false;           ///< polyline
    std::vector<int> bulgeValues;  ///< polyline: the value of each segment's bulge, -1 for a straight one
    double textHeight = 2.5;       ///< text

    int segmentCount() const { return closed ? vertexCount : vertexCount - 1; }
};

/// What an `internal` constraint ties to its ellipse.
enum class EllipseHelper { none, majorDiameter, minorDiameter, focus1, focus2 };

/// A place on an entity of the sketch. In angles `end` stands for the entity's direction turned round.
struct SketchPlace {
    int entity = -1;
    PlaceKind kind = PlaceKind::whole;
    int index = 0;  ///< control point or segment
};

struct SketchConstraint {
    std::string id;
    ConstraintType type = ConstraintType::coincident;
    std::vector<SketchPlace> refs;
    double value = 0.0;  ///< dimensions
    EllipseHelper helper = EllipseHelper::none;
    bool driving = true;
    bool active = true;

    /// A user's own equations instead of those of the type. They read, place by place: the two values of a point, or
    /// all values of a whole entity.
    std::shared_ptr<const ResidualFunction> own{};

    /// True for a constraint that the solver has to keep; measured and switched-off ones it leaves alone.
    bool binds() const { return driving && active && type != ConstraintType::composite; }
};

/// A constraint that its entities cannot have, or an entity that makes no sense: what, where, and what would do.
class SketchError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A constraint on places that its kind does not take.
class PlaceError : public SketchError {
public:
    PlaceError(const std::string& message, std::string places) : SketchError(message), m_places(std::move(places)) {}
    const std::string& places() const { return m_places; }  ///< what it is on: "line a, point p"

private:
    std::string m_places;
};

/// Entities in the plane of a constraint group and the constraints between them: what the solver works on.
///
/// values are where the entities are now. reference is where they were when the edit began: it decides every choice
/// between branches (sides, inner or outer tangency, the sense of arcs) and where a fixed place is.
struct SketchData {
    std::vector<SketchEntity> entities;
    std::vector<SplineKnots> splines;
    std::vector<SketchConstraint> constraints;
    ConstraintLists constraintsOn;  ///< of all constraints, while these come by addConstraint() alone
    std::vector<double> values;
    std::vector<double> reference;
    /// What counts as satisfied, as a part of the sketch's size: far above the rounding of coordinates (2e-16), and far
    /// below what a drawing states.
    static constexpr double kTolerance = 1e-10;
    double tolerance = kTolerance;
    double sizeAround = 0.0;  ///< of the drawing that the sketch is a part of; 0: it is the whole

    // Each returns the number of the new entity. Throws SketchError for a shape that is none.
    int addLine(std::string id, Vec2 start, Vec2 end);
    int addRay(std::string id, Vec2 base, double angle);
    int addXline(std::string id, Vec2 base, double angle);
    int addCircle(std::string id, Vec2 centre, double radius);
    int addArc(std::string id, const ArcShape& arc);
    int addEllipse(std::string id, const EllipseShape& ellipse);
    int addEllipticalArc(std::string id, const EllipticalArcShape& arc);
    int addPoint(std::string id, Vec2 position);
    int addText(std::string id, Vec2 position, double angle, double height);
    int addSpline(std::string id, const SplineShape& spline);
    int addPolyline(std::string id, const PolylineShape& polyline);

    /// Appends a constraint and returns its number. Places are checked when the equations are built.
    int addConstraint(SketchConstraint constraint);

    /// Makes the values of now those that branches are chosen by.
    void takeReference() { reference = values; }

    std::span<const double> valuesOf(int entity) const;

    /// The values of one segment's two vertices: first x of the start vertex, first x of the end vertex.
    int vertexValue(int entity, int vertex) const;

    /// Length of the diagonal of the box around all geometry, at least that of the drawing around it; 1 for an empty or
    /// pointlike sketch. Unbounded lines count with their base point.
    double size() const;
    /// The same of an element: of some all over the sketch as many are larger as smaller. Points are left out.
    double typicalSize() const;
    /// Rounding may leave residuals a little above what a solve has called satisfied: up to so many tolerances, what
    /// was satisfied still holds, and what differs is the same.
    static constexpr double kHolds = 10.0;
    /// In lengths: what a constraint that holds may be off by. Linear in the sketch.
    double slack() const { return kHolds * tolerance * size(); }

private:
    int add(std::string id, EntityKind kind, std::initializer_list<double> entityValues);
    void append(std::initializer_list<double> more);
};

}  // namespace holdfast::solver::detail
