#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "formats/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::formats {

/// What one element may draw, and all of them together.
inline constexpr std::size_t kSvgMostCurves = 1'000'000;

/// Draws subpaths piece by piece, and keeps each piece as a shape of its own: straight pieces as lines, arcs as arcs
/// and elliptical arcs, curves as splines of one span. Pieces without length are none. Arcs that go on along one circle
/// or ellipse are one, and a closed subpath of arcs alone that goes round one is that, whole. A cubic piece that stands
/// for a quarter of a circle, or of an ellipse along its axes, in the way that all programs draw those, is such an arc.
class SvgPen {
public:
    struct Arc {
        double xRadius = 0.0, yRadius = 0.0;
        double turn = 0.0;  ///< of the x radius, in radians
        bool isLarge = false, isForward = false;
    };

    void moveTo(Vec2 to);
    void lineTo(Vec2 to);
    void quadTo(Vec2 control, Vec2 to);
    void cubicTo(Vec2 first, Vec2 second, Vec2 to);
    void arcTo(const Arc& arc, Vec2 to);
    /// Back to where the subpath began, straight, unless it is there but for rounding.
    void close();

    Vec2 at() const { return m_at; }

    // Beyond kSvgMostCurves pieces all of these throw SvgFault.

    /// The shapes of all subpaths, and the places of those that have no length at all.
    struct Drawn {
        std::vector<Shape> shapes;
        std::vector<Vec2> dots;
        int roundCubics = 0;  ///< cubic pieces that have become arcs
    };
    Drawn finish();

private:
    /// An arc by its centre: the x radius of the ellipse, its ratio, and where on it the arc runs.
    struct Course {
        Vec2 centre, axis;
        double ratio = 1.0;
        double start = 0.0, sweep = 0.0;
        Vec2 from;  ///< where it begins
        bool isOfCubic = false;
    };

    static Course courseOf(const Arc& arc, Vec2 from, Vec2 to);
    static Shape shapeOf(const Course& course);
    static bool goesOn(const Course& before, const Course& arc);
    static Course joined(const Course& before, Vec2 at, Vec2 to);
    static std::optional<Course> quarterOf(Vec2 from, Vec2 first, Vec2 second, Vec2 to);
    void goAlong(const Course& course, Vec2 to);
    void add(Shape shape, Vec2 to);
    void addDot();
    void endSubpath();
    bool goesRound() const;

    Drawn m_drawn;
    Vec2 m_start, m_at;
    double m_reach = 0.0;      // how far the subpath leads from its start
    std::size_t m_first = 0;   // of the subpath's shapes
    bool m_isOpen = false;     // a subpath has begun
    bool m_hasPieces = false;  // also such without length
    bool m_endsInArc = false;  // the last piece that has length is the last of these
    std::vector<Course> m_arcs;
};

}  // namespace holdfast::formats
