#pragma once

#include <variant>
#include <vector>

#include "geometry/Box.h"
#include "geometry/Shapes.h"

namespace holdfast::geometry {

/// Whether a curve ends where it is drawn or goes on along its carrier: a line or ray as the unbounded line, an arc as
/// the circle, an elliptical arc as the ellipse, an open polyline along the carriers of its first and last segment.
/// Splines, circles and ellipses are their own carriers.
enum class Extent { bounded, carrier };

// The three forms to which every curve comes down.

/// origin + t direction; direction has length 1, so that t is a distance.
struct LineForm {
    Vec2 origin, direction;
};

/// centre + cos t major + sin t minor, the two at right angles. Clockwise where minor lies to the right of major.
struct ConicForm {
    Vec2 centre, major, minor;

    bool isClockwise() const { return cross(major, minor) < 0.0; }
};

/// A Bezier curve over t = 0 ... 1; weights is empty for a polynomial one.
struct BezierForm {
    std::vector<Vec2> poles;
    std::vector<double> weights;
};

using Form = std::variant<LineForm, ConicForm, BezierForm>;

/// A curve's point and its first two derivatives by the parameter.
struct Derivatives {
    Vec2 point, first, second;
};

Derivatives derivatives(const Form& form, double t);

/// True for a conic whose radii agree to the last digits.
bool isCircle(const Form& form);

/// One form over a range of its parameter, and how that parameter maps to the one of the shape it is part of.
struct Piece {
    Form form;
    double first = 0.0;  ///< may be infinite for lines
    double last = 0.0;
    double ownerAtZero = 0.0;
    double ownerRate = 1.0;

    double ownerAt(double t) const { return ownerAtZero + ownerRate * t; }
    double localAt(double ownerParam) const { return (ownerParam - ownerAtZero) / ownerRate; }
};

/// The pieces of a curve in order: one for simple curves, one for each segment of a polyline that has a length, one
/// Bezier curve (a line where it is straight) for each span of a spline. GeometryError for points, texts and unsound
/// shapes.
std::vector<Piece> spansOf(const Shape& shape, Extent extent = Extent::bounded);

/// The same with the Bezier curves cut until they are nearly flat.
std::vector<Piece> piecesOf(const Shape& shape, Extent extent = Extent::bounded);

/// A curve in pieces, and what its parameter does in one round of a closed one.
struct PieceList {
    std::vector<Piece> pieces;
    double first = 0.0;   ///< the parameter of the seam
    double period = 0.0;  ///< 0 for an open curve

    /// first + period is the seam again and becomes first.
    double atSeam(double param) const { return period > 0.0 && param >= first + period ? param - period : param; }
};
PieceList pieceListOf(const Shape& shape, Extent extent);

/// The piece of a simple curve, or of the polyline segment at a parameter; polylines go on beyond their ends.
/// Not for splines, which are evaluated whole.
Piece pieceAt(const Shape& shape, double param);

/// One segment of a polyline; GeometryError where it has no length.
Piece segmentPiece(const PolylineShape& polyline, std::size_t index);

/// A box around the piece, tight for lines and conics, that of the control points for Bezier curves.
Box boundsOf(const Piece& piece);
Box boundsOf(const std::vector<Piece>& pieces);

/// A shift and a scale by a power of two, which bring a figure to the size for which tolerances are meant.
struct Frame {
    Vec2 origin;
    double scale = 1.0;

    Vec2 enter(Vec2 p) const { return scale * (p - origin); }
    Vec2 leave(Vec2 p) const { return (1.0 / scale) * p + origin; }
};

/// The frame in which a figure of the given middle and size is between 64 and 128 units large.
Frame frameOf(Vec2 middle, double size);

/// The frame of a piece's whole carrier; not for lines.
Frame frameOf(const Piece& piece);
Piece inFrame(const Piece& piece, const Frame& frame);

/// Two points closer than this are one, in the coordinates of a frame: 1e-9 of a figure's size.
inline constexpr double kFrameTolerance = 1e-7;

}  // namespace holdfast::geometry
