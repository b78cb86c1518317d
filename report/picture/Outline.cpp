#include "report/picture/Outline.h"

#include <array>
#include <optional>

#include "document/Places.h"
#include "geometry/Conics.h"
#include "report/picture/SplinePieces.h"
#include "report/picture/TextElement.h"

namespace holdfast::report {

namespace {

Stroke moveTo(Vec2 to) {
    Stroke stroke;
    stroke.to = to;
    return stroke;
}

Stroke lineTo(Vec2 to) {
    Stroke stroke = moveTo(to);
    stroke.kind = Stroke::Kind::line;
    return stroke;
}

Stroke arcTo(Vec2 centre, Vec2 major, double ratio, double startParam, double endParam) {
    Stroke stroke = moveTo(ellipsePoint(centre, major, ratio, endParam));
    stroke.kind = Stroke::Kind::arc;
    stroke.centre = centre;
    stroke.major = major;
    stroke.minor = minorAxis(major, ratio);
    stroke.startParam = startParam;
    stroke.endParam = endParam;
    return stroke;
}

Outline ellipticOutline(Vec2 centre, Vec2 major, double ratio, double startParam, double endParam) {
    const bool full = endParam - startParam >= kTurn - 1e-12;
    return {{moveTo(ellipsePoint(centre, major, ratio, startParam)), arcTo(centre, major, ratio, startParam, endParam)},
            full};
}

/// The part of point + direction * t, from <= t, that lies in the box, by Liang and Barsky's clipping ("A New Concept
/// and Method for Line Clipping", 1984).
Outline clippedLine(Vec2 point, Vec2 direction, double from, const Box& window) {
    double low = from, high = std::numeric_limits<double>::infinity();
    const std::array<std::array<double, 3>, 2> axes{{{direction.x, window.low.x - point.x, window.high.x - point.x},
                                                     {direction.y, window.low.y - point.y, window.high.y - point.y}}};
    for (const auto& [slope, nearSide, farSide] : axes) {
        if (slope == 0.0) {
            if (nearSide > 0.0 || farSide < 0.0)
                return {};
            continue;
        }
        low = std::max(low, std::min(nearSide / slope, farSide / slope));
        high = std::min(high, std::max(nearSide / slope, farSide / slope));
    }
    if (!(low < high) || !std::isfinite(low) || !std::isfinite(high))
        return {};
    return {{moveTo(point + direction * low), lineTo(point + direction * high)}, false};
}

Stroke bezierTo(const CubicPiece& piece) {
    if (piece.degree == 1)
        return lineTo(piece.control[1]);
    Stroke stroke = moveTo(piece.control[static_cast<std::size_t>(piece.degree)]);
    stroke.kind = piece.degree == 2 ? Stroke::Kind::quadratic : Stroke::Kind::cubic;
    stroke.control1 = piece.control[1];
    stroke.control2 = piece.control[2];
    return stroke;
}

Outline throughPoints(const std::vector<Vec2>& points) {
    Outline outline;
    for (const Vec2& point : points)
        outline.strokes.push_back(outline.strokes.empty() ? moveTo(point) : lineTo(point));
    return outline;
}

/// The arc from `start` to `end` whose bulge is tan(included angle / 4); a negative bulge runs clockwise.
Stroke bulgeTo(Vec2 start, Vec2 end, double bulge) {
    const Vec2 centre = centreOfBulge(start, end, bulge);
    return arcTo(centre, start - centre, 1.0, 0.0, angleOfBulge(bulge));
}

struct OutlineMaker {
    const Box& window;
    double tolerance;

    Outline operator()(const LineShape& s) const { return {{moveTo(s.start), lineTo(s.end)}, false}; }
    Outline operator()(const ArcShape& s) const {
        return ellipticOutline(s.centre, {s.radius, 0.0}, 1.0, s.startAngle, s.endAngle);
    }
    Outline operator()(const CircleShape& s) const {
        return ellipticOutline(s.centre, {s.radius, 0.0}, 1.0, 0.0, kTurn);
    }
    Outline operator()(const EllipseShape& s) const {
        return ellipticOutline(s.centre, s.majorAxis, s.ratio, 0.0, kTurn);
    }
    Outline operator()(const EllipticalArcShape& s) const {
        return ellipticOutline(s.centre, s.majorAxis, s.ratio, s.startParam, s.endParam);
    }
    Outline operator()(const SplineShape& s) const {
        const std::vector<CubicPiece> pieces = cubicPieces(s);
        Outline outline;
        if (pieces.empty()) {
            outline = throughPoints(splinePoints(s, tolerance));
        } else {
            outline.strokes.push_back(moveTo(pieces.front().control[0]));
            for (const CubicPiece& piece : pieces)
                outline.strokes.push_back(bezierTo(piece));
        }
        outline.closed = s.periodic;
        return outline;
    }
    Outline operator()(const PointShape&) const { return {}; }
    Outline operator()(const XlineShape& s) const {
        return clippedLine(s.point, s.direction, -std::numeric_limits<double>::infinity(), window);
    }
    Outline operator()(const RayShape& s) const { return clippedLine(s.point, s.direction, 0.0, window); }
    Outline operator()(const PolylineShape& s) const {
        Outline outline;
        if (s.vertices.empty())
            return outline;
        outline.strokes.push_back(moveTo(s.vertices.front()));
        for (std::size_t i = 0; i < segmentCount(s); ++i) {
            const Vec2 start = s.vertices[i], end = s.vertices[segmentEndVertex(s, i)];
            const double bulge = i < s.bulges.size() ? s.bulges[i] : 0.0;
            outline.strokes.push_back(bulge == 0.0 ? lineTo(end) : bulgeTo(start, end, bulge));
        }
        outline.closed = s.closed;
        return outline;
    }
    Outline operator()(const TextShape&) const { return {}; }
};

/// Chords that a turn of `sweep` on this radius needs to stay within the tolerance.
int chordCount(double sweep, double radius, double tolerance) {
    if (!(radius > tolerance))
        return 2;
    const double step = 2.0 * std::acos(1.0 - tolerance / radius);
    return static_cast<int>(std::clamp(std::ceil(std::fabs(sweep) / std::max(step, 1e-4)), 2.0, 4096.0));
}

Vec2 onBezier(Vec2 start, const Stroke& stroke, double t) {
    const double u = 1.0 - t;
    if (stroke.kind == Stroke::Kind::quadratic)
        return start * (u * u) + stroke.control1 * (2 * u * t) + stroke.to * (t * t);
    return start * (u * u * u) + stroke.control1 * (3 * u * u * t) + stroke.control2 * (3 * u * t * t) +
           stroke.to * (t * t * t);
}

/// A chord of length h on a curve bent by the control polygon's excess e is off by about e / n^2 after n equal steps.
int bezierChordCount(Vec2 start, const Stroke& stroke, double tolerance) {
    const bool cubic = stroke.kind == Stroke::Kind::cubic;
    const double polygon = distance(start, stroke.control1) +
                           (cubic ? distance(stroke.control1, stroke.control2) + distance(stroke.control2, stroke.to)
                                  : distance(stroke.control1, stroke.to));
    return static_cast<int>(std::clamp(std::ceil(std::sqrt(polygon / std::max(tolerance, 1e-300))), 2.0, 64.0));
}

void appendChords(const Stroke& stroke, double tolerance, std::vector<Vec2>& run) {
    if (stroke.kind == Stroke::Kind::arc) {
        const double sweep = stroke.endParam - stroke.startParam;
        const int count = chordCount(sweep, std::max(norm(stroke.major), norm(stroke.minor)), tolerance);
        for (int i = 1; i <= count; ++i)
            run.push_back(
                ellipsePoint(stroke.centre, stroke.major, stroke.minor, stroke.startParam + sweep * i / count));
    } else if (stroke.kind == Stroke::Kind::line) {
        run.push_back(stroke.to);
    } else {
        const Vec2 start = run.back();
        const int count = bezierChordCount(start, stroke, tolerance);
        for (int i = 1; i <= count; ++i)
            run.push_back(onBezier(start, stroke, static_cast<double>(i) / count));
    }
}

Box boundsOfPoints(const std::vector<Vec2>& points) {
    Box box;
    for (const Vec2& point : points)
        box.add(point);
    return box;
}

struct BoundsMaker {
    Box operator()(const LineShape& s) const { return boundsOfPoints({s.start, s.end}); }
    Box operator()(const ArcShape& s) const {
        return ellipticBox(s.centre, {s.radius, 0.0}, 1.0, s.startAngle, s.endAngle);
    }
    Box operator()(const CircleShape& s) const { return boxAround(s.centre, 2 * s.radius, 2 * s.radius); }
    Box operator()(const EllipseShape& s) const { return ellipticBox(s.centre, s.majorAxis, s.ratio, 0.0, kTurn); }
    Box operator()(const EllipticalArcShape& s) const {
        return ellipticBox(s.centre, s.majorAxis, s.ratio, s.startParam, s.endParam);
    }
    Box operator()(const SplineShape& s) const {
        const Box hull = boundsOfPoints(s.control);
        return boundsOfPoints(splinePoints(s, hull.diagonal() / 500));
    }
    Box operator()(const PointShape& s) const { return boundsOfPoints({s.position}); }
    Box operator()(const XlineShape& s) const { return boundsOfPoints({s.point}); }
    Box operator()(const RayShape& s) const { return boundsOfPoints({s.point}); }
    Box operator()(const PolylineShape& s) const {
        Box box;
        for (std::size_t i = 0; i < segmentCount(s); ++i)
            box.add(boundsOf(segmentShape(s, static_cast<int>(i))));
        box.add(boundsOfPoints(s.vertices));
        return box;
    }
    Box operator()(const TextShape& s) const { return textBounds(s); }
};

}  // namespace

Outline outlineOf(const Shape& shape, const Box& window, double tolerance) {
    return std::visit(OutlineMaker{window, tolerance}, shape);
}

std::vector<std::vector<Vec2>> flattened(const Outline& outline, double tolerance) {
    std::vector<std::vector<Vec2>> runs;
    for (const Stroke& stroke : outline.strokes) {
        if (stroke.kind == Stroke::Kind::move || runs.empty())
            runs.push_back({stroke.to});
        else
            appendChords(stroke, tolerance, runs.back());
    }
    return runs;
}

Box boundsOf(const Shape& shape) {
    const Box box = std::visit(BoundsMaker{}, shape);
    return box.isBounded() ? box : Box();
}

Shape segmentShape(const PolylineShape& polyline, int index) {
    const auto at = static_cast<std::size_t>(index);
    if (index < 0 || at >= segmentCount(polyline)) {
        if (polyline.vertices.empty())
            return PointShape{};
        return PointShape{index < 0 ? polyline.vertices.front() : polyline.vertices.back()};
    }
    const Vec2 start = polyline.vertices[at], end = polyline.vertices[segmentEndVertex(polyline, at)];
    const double bulge = at < polyline.bulges.size() ? polyline.bulges[at] : 0.0;
    if (bulge == 0.0)
        return LineShape{start, end};
    return arcOfBulge(start, end, bulge);
}

}  // namespace holdfast::report
