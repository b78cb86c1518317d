#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document/Blocks.h"
#include "document/Look.h"
#include "document/Uses.h"
#include "geometry/ConstraintType.h"
#include "geometry/PlaceKind.h"
#include "geometry/Shapes.h"

#include "geometry/ConstraintKinds.h"

namespace holdfast::document {

/// One entity of a drawing.
struct Entity {
    std::string id;
    Shape shape;
    bool construction = false;  ///< helper geometry: drawn, never cut
    bool fixed = false;         ///< reference geometry that the drawing may not move
    SharedLook look{};

    friend bool operator==(const Entity&, const Entity&) = default;
};

struct Place {
    std::string entity;
    PlaceKind kind = PlaceKind::whole;
    int index = 0;  ///< control point or segment number, else 0

    friend bool operator==(const Place&, const Place&) = default;
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
    std::string formula{};               ///< a driving dimension's, of which the value is the result; empty: none

    friend bool operator==(const Constraint&, const Constraint&) = default;
};

/// A number with a name, from which dimensions can be calculated.
struct Parameter {
    std::string name;
    std::string formula;  ///< "80", "width / 2 + 3 mm"
    double value = 0.0;   ///< what it comes to: lengths in the drawing's unit, angles in radians
    friend bool operator==(const Parameter&, const Parameter&) = default;
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
    std::vector<Parameter> parameters{};       ///< in the order in which they were given
    std::vector<Layer> layers{};               ///< those that the file describes, in its order
    std::vector<BlockReference> references{};  ///< drawn, and no entities
    /// How many numbers the ids of added constraints have used up, so that deleted ones do not come again; 0 where what
    /// is there tells it (ConstraintNumbers.h).
    std::size_t constraintNumbers = 0;

    friend bool operator==(const Document&, const Document&) = default;
};

}  // namespace holdfast::document
