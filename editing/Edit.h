#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "document/Document.h"
#include "editing/Figures.h"
#include "editing/Sourced.h"
#include "editing/Uses.h"
#include "editing/commands/values/Properties.h"
#include "geometry/CurveEnd.h"

namespace holdfast::editing {

// The editing commands as plain values: they can be made in code, compared, stored and done again on any drawing:
//
//     session.apply(Trim{.entity = "g3", .at = {8, 0}, .by = {"g7"}});
//
// Points, displacements, lengths and radii are in the drawing's length unit, angles in degrees, counter-clockwise;
// numbers are finite. Vertices, control points, corners and segments are counted from 0. Points on a curve may be
// away from it by a thousandth of its size, as what a user reads off a picture. Entities are called by their names in
// the drawing, and no list of them is empty but that of Define.

/// Cuts a curve in two at a point, or takes the part between two points out of it; of a closed curve the part that
/// begins at the first point and runs in the curve's own direction.
struct Break {
    Name entity;
    Vec2 from;
    std::optional<Vec2> to{};  ///< none: the curve is cut at `from` and nothing of it goes
    friend bool operator==(const Break&, const Break&) = default;
};

/// Removes the part of a curve between cutting edges.
struct Trim {
    Name entity;
    Vec2 at;               ///< on the part that goes
    std::vector<Name> by;  ///< the cutting edges
    friend bool operator==(const Trim&, const Trim&) = default;
};

/// Leads one end of a curve on to the first boundary that it meets.
struct Extend {
    Name entity;
    CurveEnd end = CurveEnd::end;
    std::vector<Name> to;  ///< the boundaries
    friend bool operator==(const Extend&, const Extend&) = default;
};

/// Where a user picked two curves.
struct FilletPicks {
    Vec2 first, second;
    friend bool operator==(const FilletPicks&, const FilletPicks&) = default;
};

/// Joins two curves, or the ends of polylines, by an arc.
struct Fillet {
    Name first, second;
    Sourced<double> radius = 0.0;        ///< 0: a sharp corner
    std::optional<FilletPicks> picks{};  ///< none: where the curves come closest as they are drawn
    bool keepCorner = false;             ///< a construction point stays at the corner and carries what held on it
    friend bool operator==(const Fillet&, const Fillet&) = default;
};

/// Rounds one corner of a polyline.
struct FilletCorner {
    Name polyline;
    int corner = 0;                ///< the number of its vertex
    Sourced<double> radius = 0.0;  ///< 0: a sharp corner
    bool keepCorner = false;       ///< a construction point stays at the corner and carries what held on it
    friend bool operator==(const FilletCorner&, const FilletCorner&) = default;
};

/// Joins two segments of one polyline by an arc; what lies between them goes.
struct FilletSegments {
    Name polyline;
    int from = 0;  ///< the segment that the arc leaves
    int to = 1;    ///< the segment to which it leads
    Sourced<double> radius = 0.0;
    friend bool operator==(const FilletSegments&, const FilletSegments&) = default;
};

/// Makes one polyline of lines, arcs and polylines that meet end to end.
struct Join {
    std::vector<Name> entities;  ///< two or more, each once
    friend bool operator==(const Join&, const Join&) = default;
};

/// Moves one end of a curve along it.
struct Lengthen {
    enum class Way { by, to };

    Name entity;
    CurveEnd end = CurveEnd::end;
    Way way = Way::by;
    double length = 0.0;  ///< by: what is added, negative to shorten; to: the whole length
    friend bool operator==(const Lengthen&, const Lengthen&) = default;
};

/// Moves all ends, vertices and control points in a window, and the centres of closed curves.
struct Stretch {
    Vec2 first, second;  ///< opposite corners of the window
    Vec2 by;
    friend bool operator==(const Stretch&, const Stretch&) = default;
};

/// Reflects entities in a line, or adds their reflection. About a line of the drawing a reflection that is added is
/// tied to the originals: symmetric in that line.
struct Mirror {
    std::vector<Name> entities;  ///< each once
    Vec2 first, second;          ///< two different points of the mirror line, where no entity is that
    bool keep = false;           ///< the originals stay, and the reflection has a copy of the constraints among them
    Name about{};                ///< the mirror line: a line, ray or construction line; empty: through the points
    friend bool operator==(const Mirror&, const Mirror&) = default;
};

/// A second pair of points of an alignment.
struct AlignDirection {
    Vec2 from, to;       ///< the direction to `from` is turned into that to `to`
    bool scale = false;  ///< the length is adjusted, too
    friend bool operator==(const AlignDirection&, const AlignDirection&) = default;
};

/// Moves entities so that a source point comes to a destination point.
struct Align {
    std::vector<Name> entities;  ///< each once
    Vec2 from, to;
    std::optional<AlignDirection> direction{};  ///< none: they are shifted only
    friend bool operator==(const Align&, const Align&) = default;
};

/// Turns entities about a point.
struct Rotate {
    std::vector<Name> entities;  ///< each once
    Vec2 about;
    double degrees = 0.0;
    friend bool operator==(const Rotate&, const Rotate&) = default;
};

/// Pulls entities, or one place of one entity, as far as the constraints let them.
struct Drag {
    /// Whole entities, each once; or one place. An index belongs to a place of a kind that is counted and is 0 for
    /// others. Where no entity has the name of the place's, but one is called "name.place", that one is held.
    using Held = std::variant<std::vector<Name>, Sourced<Place>>;

    Held held;
    Vec2 by;
    Sourced<int> steps = 1;  ///< 1 to 1000: so many steps the cursor takes on its straight way
    friend bool operator==(const Drag&, const Drag&) = default;
};

/// One coordinate of a point.
struct Coordinate {
    enum class Axis { x, y };

    Axis axis = Axis::x;
    double value = 0.0;
    friend bool operator==(const Coordinate&, const Coordinate&) = default;
};

/// Gives a property of an entity another value.
struct Set {
    Name entity;
    Sourced<Property> property = Property::start;
    Sourced<int> index = 0;  ///< of a vertex or control point; 0 for every other property
    /// Points by both coordinates or by one, everything else by a number; Properties.h tells which property is what.
    std::variant<Vec2, Coordinate, double> value;
    friend bool operator==(const Set&, const Set&) = default;
};

/// Gives a dimension another value; what hangs on it follows.
struct SetDimension {
    Name dimension;      ///< its id, or the name that its author gave it
    double value = 0.0;  ///< an angle in degrees
    friend bool operator==(const SetDimension&, const SetDimension&) = default;
};

/// Has a dimension hold the drawing at what it measures, or measure it only.
struct SetDriving {
    Name dimension;
    bool driving = true;
    friend bool operator==(const SetDriving&, const SetDriving&) = default;
};

/// Has a driving dimension calculated from parameters and other dimensions; what hangs on it follows. A plain number
/// gives it that value and takes its formula away.
struct SetFormula {
    Name dimension;
    Sourced<std::string> formula;  ///< as document::Formula reads it, without blanks or ends of lines around it
    friend bool operator==(const SetFormula&, const SetFormula&) = default;
};

/// Makes a parameter, or gives it another formula; what is calculated from it follows.
struct SetParameter {
    Name parameter;
    Sourced<std::string> formula;  ///< "80", "width / 2 + 3 mm", as above
    friend bool operator==(const SetParameter&, const SetParameter&) = default;
};

/// Adds a constraint; the drawing moves as little as it takes for it to hold.
struct Constrain {
    Sourced<ConstraintType> type = ConstraintType::coincident;
    std::vector<Sourced<Place>> places;  ///< as many as the kind takes
    /// Of a dimension: its value, an angle in degrees; none: what it measures now.
    std::optional<double> value{};
    bool anyway = false;             ///< a dimension that cannot drive the drawing is added to measure it
    Name as{};                       ///< its id; empty: a fresh one
    Sourced<std::string> formula{};  ///< of a dimension without a value: what calculates it; empty: none
    friend bool operator==(const Constrain&, const Constrain&) = default;
};

/// Switches constraints off, so that they stay in the drawing and hold nothing, or on again: the drawing then moves as
/// little as it takes for them to hold. A composite takes its members along.
struct SetActive {
    std::vector<Name> constraints;  ///< each once
    bool active = false;
    friend bool operator==(const SetActive&, const SetActive&) = default;
};

/// Deletes constraints, and parameters that no formula uses.
struct Delete {
    std::vector<Name> constraints;  ///< or parameters; each once
    friend bool operator==(const Delete&, const Delete&) = default;
};

/// Erases entities with the constraints on them.
struct Erase {
    std::vector<Name> entities;  ///< each once
    friend bool operator==(const Erase&, const Erase&) = default;
};

/// Adds an entity.
struct Draw {
    Figure figure;
    bool construction = false;  ///< helper geometry
    Name as{};                  ///< its name; empty: a fresh one
    friend bool operator==(const Draw&, const Draw&) = default;
};

/// Shifts entities; what is tied to them follows.
struct Move {
    std::vector<Name> entities;  ///< each once
    Vec2 by;                     ///< not 0,0
    friend bool operator==(const Move&, const Move&) = default;
};

/// Copies in a row.
struct CopyRow {
    Vec2 by;                 ///< from one to the next; not 0,0
    Sourced<int> times = 1;  ///< so many beside what is there already; 1 or more
    friend bool operator==(const CopyRow&, const CopyRow&) = default;
};

/// A row of copies, or that row, with the originals, once more so many times.
struct CopyGrid {
    CopyRow row;
    std::optional<CopyRow> rows{};
    friend bool operator==(const CopyGrid&, const CopyGrid&) = default;
};

/// Copies that are turned about a point, each by the same angle more.
struct CopyRing {
    Vec2 about;
    double degrees = 0.0;
    Sourced<int> times = 1;  ///< so many beside the originals; 1 or more
    friend bool operator==(const CopyRing&, const CopyRing&) = default;
};

/// Adds copies of entities. Each has a copy of the constraints and dimensions among the originals, as far as they hold
/// of it, and none of those that tie the originals to others.
///
/// Linked copies have no dimensions of their own but follow their originals: equal lengths and radii, parallel lines
/// (in rings at right angles after a quarter turn), and in rows and grids the same spacing throughout, for whose first
/// steps the edit adds dimensions. Nothing of that is added that follows already.
struct Copy {
    std::vector<Name> entities;  ///< each once
    std::variant<CopyGrid, CopyRing> to;
    bool linked = false;
    friend bool operator==(const Copy&, const Copy&) = default;
};

/// Makes entities larger or smaller about a point. Dimensions among them are scaled, too; what is tied to them follows.
struct Scale {
    std::vector<Name> entities;  ///< each once
    Vec2 about;
    Sourced<double> factor = 1.0;  ///< above 0, not 1
    friend bool operator==(const Scale&, const Scale&) = default;
};

/// Adds the constraints and dimensions that entities lack for being fully determined, as few as can be; nothing moves.
struct Define {
    std::vector<Name> entities{};  ///< each once; empty: the whole drawing
    /// Dimensions that the edit adds are led to values with so many decimals, 0 to 9, and the drawing moves for that;
    /// none: they have the values that they measure, and nothing moves.
    std::optional<Sourced<int>> decimals{};
    friend bool operator==(const Define&, const Define&) = default;
};

/// How far before a corner a chamfer begins, measured along the curves.
struct ChamferLengths {
    Sourced<double> first;                    ///< along the first curve; above 0
    std::optional<Sourced<double>> second{};  ///< along the second; none: the same
    friend bool operator==(const ChamferLengths&, const ChamferLengths&) = default;
};

/// Cuts two curves off before their corner, to which they are led on where they do not reach it, and puts a line
/// between their ends that is tied to both. One of them may be a polyline; two of these become one.
struct Chamfer {
    Name first, second;
    ChamferLengths by;
    std::optional<FilletPicks> picks{};  ///< none: where the curves come closest as they are drawn
    bool keepCorner = false;             ///< a construction point stays where the corner was, with what was tied to it
    friend bool operator==(const Chamfer&, const Chamfer&) = default;
};

/// Cuts one corner of a polyline off.
struct ChamferCorner {
    Name polyline;
    int corner = 0;           ///< the number of its vertex
    ChamferLengths by;        ///< first along the segment that leads to the corner
    bool keepCorner = false;  ///< as above
    friend bool operator==(const ChamferCorner&, const ChamferCorner&) = default;
};

/// Makes lines and arcs of polylines, one of each segment that has a length: with the constraints that were on it, tied
/// to its neighbours, and as a tangent to those that it runs smoothly into. Makes entities of block references.
struct Explode {
    std::vector<Name> entities;  ///< polylines and block references, each once
    friend bool operator==(const Explode&, const Explode&) = default;
};

/// Adds curves beside others. Lines, arcs and open polylines whose ends meet are offset as one chain, with mitred
/// corners; all others one by one.
///
/// The new curves have the geometric constraints among their originals that hold of them, and are tied where they meet.
/// An arc whose radius the distance takes up has none beside it; its neighbours meet instead, which is told. What lies
/// beside an ellipse or a spline is none, and is refused.
struct Offset {
    std::vector<Name> entities;  ///< each once
    /// Not 0. Above 0: outside of circles, arcs and what is closed; to the left of a line or an open polyline on its
    /// way from start to end. Below: on the other side. Of an open chain the curve that is named first counts.
    Sourced<double> by = 1.0;
    bool rounded = false;  ///< outer corners are rounded by arcs about the corners of the originals
    friend bool operator==(const Offset&, const Offset&) = default;
};

/// Takes the last edit back that was done.
struct Undo {
    friend bool operator==(const Undo&, const Undo&) = default;
};

/// Does the edit again that was taken back last, unless another one has been done since.
struct Redo {
    friend bool operator==(const Redo&, const Redo&) = default;
};

/// Any editing command.
using Edit =
    std::variant<Break, Trim, Extend, Fillet, FilletCorner, FilletSegments, Join, Lengthen, Stretch, Mirror, Align,
                 Rotate, Drag, Set, SetDimension, SetDriving, Constrain, Delete, Erase, Draw, Move, Copy, Scale, Define,
                 SetFormula, SetParameter, Chamfer, ChamferCorner, Explode, Offset, SetActive, Undo, Redo>;

}  // namespace holdfast::editing
