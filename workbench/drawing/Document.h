#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace holdfast {

/// A point or a vector of the drawing plane, in the drawing's length unit.
struct Vec2 {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const Vec2&, const Vec2&) = default;
};

// The shapes of a drawing, with the field names of the drawing files. Angles are radians.

struct LineShape {
    Vec2 start, end;
    friend bool operator==(const LineShape&, const LineShape&) = default;
};

/// Runs counter-clockwise from startAngle to endAngle; endAngle > startAngle and may exceed 2 pi.
struct ArcShape {
    Vec2 centre;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
    friend bool operator==(const ArcShape&, const ArcShape&) = default;
};

struct CircleShape {
    Vec2 centre;
    double radius = 0.0;
    friend bool operator==(const CircleShape&, const CircleShape&) = default;
};

/// A full ellipse: majorAxis is the vector from the centre to a major vertex, ratio is minor / major, in (0, 1].
struct EllipseShape {
    Vec2 centre, majorAxis;
    double ratio = 1.0;
    friend bool operator==(const EllipseShape&, const EllipseShape&) = default;
};

/// Part of an ellipse, counter-clockwise between two eccentric angles measured from the major axis.
struct EllipticalArcShape {
    Vec2 centre, majorAxis;
    double ratio = 1.0;
    double startParam = 0.0;
    double endParam = 0.0;
    friend bool operator==(const EllipticalArcShape&, const EllipticalArcShape&) = default;
};

/// A B-spline by control points. Not periodic: control.size() + degree + 1 flat knots. Periodic: the knots of one
/// period, first and last value with the same multiplicity. weights is empty for a polynomial spline.
struct SplineShape {
    int degree = 3;
    bool periodic = false;
    std::vector<Vec2> control;
    std::vector<double> knots;
    std::vector<double> weights;
    friend bool operator==(const SplineShape&, const SplineShape&) = default;
};

struct PointShape {
    Vec2 position;
    friend bool operator==(const PointShape&, const PointShape&) = default;
};

/// An unbounded line through a point.
struct XlineShape {
    Vec2 point, direction;
    friend bool operator==(const XlineShape&, const XlineShape&) = default;
};

/// A line bounded at its base point only.
struct RayShape {
    Vec2 point, direction;
    friend bool operator==(const RayShape&, const RayShape&) = default;
};

/// Straight segments and arcs joined at vertices. bulges[i] is tan(included angle / 4) of the segment from vertex i
/// to the next one, positive counter-clockwise, 0 for a straight segment; ids[i] is the vertex identifier, 0 for one
/// that was never referenced. Both arrays are as long as vertices.
struct PolylineShape {
    std::vector<Vec2> vertices;
    std::vector<double> bulges;
    std::vector<int> ids;
    bool closed = false;
    friend bool operator==(const PolylineShape&, const PolylineShape&) = default;
};

/// One line of text (text) or a paragraph (mtext).
struct TextShape {
    Vec2 position{};
    double rotation = 0.0;
    double height = 2.5;
    std::string text{};
    bool multiline = false;
    friend bool operator==(const TextShape&, const TextShape&) = default;
};

using Shape = std::variant<LineShape, ArcShape, CircleShape, EllipseShape, EllipticalArcShape, SplineShape, PointShape,
                           XlineShape, RayShape, PolylineShape, TextShape>;

/// One entity of a drawing.
struct Entity {
    std::string id;
    Shape shape;
    bool construction = false;  ///< helper geometry: drawn, never cut
    bool fixed = false;         ///< reference geometry that the drawing may not move

    friend bool operator==(const Entity&, const Entity&) = default;
};

/// Where on an entity a constraint holds.
enum class PlaceKind {
    whole,         ///< "whole": the entity itself (a point entity is always whole)
    start,         ///< "start"
    end,           ///< "end"
    centre,        ///< "centre"
    mid,           ///< "mid": the middle of a line or arc
    control,       ///< "control:i": control point i of a spline
    segment,       ///< "segment:i": segment i of a polyline as a curve, i counted from 0
    segmentStart,  ///< "segment:i.start": the vertex at which segment i starts
    segmentEnd,    ///< "segment:i.end"
    segmentMid,    ///< "segment:i.mid"
    segmentCentre  ///< "segment:i.centre": the centre of an arc segment
};

struct Place {
    std::string entity;
    PlaceKind kind = PlaceKind::whole;
    int index = 0;  ///< control point or segment number, else 0

    friend bool operator==(const Place&, const Place&) = default;
};

/// Constraint kinds by their names in drawing files.
enum class ConstraintType {
    coincident,
    concentric,
    pointOnCurve,
    fixed,
    horizontal,
    vertical,
    parallel,
    perpendicular,
    collinear,
    tangent,
    equal,
    symmetric,
    midpoint,
    internal,
    g2Smooth,
    composite,
    // dimensions: they carry a value
    distance,
    distanceX,
    distanceY,
    radius,
    diameter,
    angle
};

/// One constraint of a drawing.
struct Constraint {
    std::string id{};
    ConstraintType type = ConstraintType::coincident;
    std::vector<Place> refs{};
    std::optional<double> value{};       ///< dimensions
    std::string role{};                  ///< internal: major_diameter, minor_diameter, focus1, focus2
    std::string name{};                  ///< a user's name for a dimension, or empty
    bool driving = true;                 ///< false: a measured dimension that follows the geometry
    bool active = true;                  ///< false: switched off by its author
    bool implied = false;                ///< the host made it itself, at the corner of a polyline
    std::vector<std::string> members{};  ///< composite, g2_smooth: ids of the constraints that it owns

    friend bool operator==(const Constraint&, const Constraint&) = default;
};

/// Where a drawing comes from; empty strings where unknown.
struct Source {
    std::string repository, revision, file, sketch;
    friend bool operator==(const Source&, const Source&) = default;
};

/// The plane of the constraint group in world coordinates: x = right, y = up. Empty: the world's xy plane.
struct Plane {
    std::array<double, 3> origin{0.0, 0.0, 0.0};
    std::array<double, 3> xAxis{1.0, 0.0, 0.0};
    std::array<double, 3> yAxis{0.0, 1.0, 0.0};
    friend bool operator==(const Plane&, const Plane&) = default;
};

/// A whole drawing as its file holds it: plain values, no host objects. Order of entities and constraints is the order
/// in which they were drawn and added, and survives reading and writing.
struct Document {
    std::string name;
    std::optional<Source> source;
    std::string license;
    std::string lengthUnit = "mm";
    std::optional<Plane> plane;
    std::vector<Entity> entities;
    std::vector<Constraint> constraints;

    friend bool operator==(const Document&, const Document&) = default;
};

}  // namespace holdfast
