#include "inference/PlaneCurves.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "document/Places.h"
#include "geometry/SplineCurve.h"

namespace holdfast::inference {
namespace {

Vec2 difference(Vec2 from, Vec2 to) {
    return {to.x - from.x, to.y - from.y};
}
Vec2 acrossRadius(double angle) {
    return {-std::sin(angle), std::cos(angle)};
}

Vec2 alongEllipse(const EllipticalArcShape& arc, double param) {
    const double s = std::sin(param), c = arc.ratio * std::cos(param);
    return {-s * arc.majorAxis.x - c * arc.majorAxis.y, -s * arc.majorAxis.y + c * arc.majorAxis.x};
}

Vec2 planar(const WeightedPoint& p) {
    return {p.x / p.w, p.y / p.w};
}

class Collector {
public:
    Collector(PlaneCurves& result, double smallest) : m_result(result), m_smallest(smallest) {}

    void collect(const Entity& entity, std::size_t position) {
        m_entity = &entity;
        m_position = position;
        std::visit(*this, entity.shape);
    }

    void operator()(const LineShape& line) {
        if (distance(line.start, line.end) > m_smallest)
            addLine(line);
    }
    void operator()(const ArcShape& arc) {
        if (arc.radius * std::min(1.0, arc.endAngle - arc.startAngle) <= m_smallest)
            return;
        PlaneCurve curve = bounded(PlaneCurve::Kind::round, arc);
        curve.centreNode = addNode(PlaceKind::centre, arc.centre, true);
        curve.size = arc.radius;
        curve.startDirection = acrossRadius(arc.startAngle);
        curve.endDirection = acrossRadius(arc.endAngle);
        m_result.curves.push_back(std::move(curve));
    }
    void operator()(const CircleShape& circle) {
        if (circle.radius <= m_smallest)
            return;
        PlaneCurve curve = begin(PlaneCurve::Kind::round);
        curve.centreNode = addNode(PlaceKind::centre, circle.centre, true);
        curve.size = circle.radius;
        m_result.curves.push_back(std::move(curve));
    }
    void operator()(const EllipseShape& ellipse) {
        PlaneCurve curve = begin(PlaneCurve::Kind::other);
        curve.centreNode = addNode(PlaceKind::centre, ellipse.centre, true);
        m_result.curves.push_back(std::move(curve));
    }
    void operator()(const EllipticalArcShape& arc) {
        PlaneCurve curve = bounded(PlaneCurve::Kind::other, arc);
        curve.centreNode = addNode(PlaceKind::centre, arc.centre, true);
        curve.startDirection = alongEllipse(arc, arc.startParam);
        curve.endDirection = alongEllipse(arc, arc.endParam);
        m_result.curves.push_back(std::move(curve));
    }
    void operator()(const SplineShape& spline) {
        if (spline.periodic)
            return;
        PlaneCurve curve = bounded(PlaneCurve::Kind::other, spline);
        const auto pieces = bezierPieces(spline);
        const auto &first = pieces.front(), &last = pieces.back();
        curve.startDirection = difference(planar(first[0]), planar(first[1]));
        curve.endDirection = difference(planar(last[last.size() - 2]), planar(last.back()));
        m_result.curves.push_back(std::move(curve));
    }
    void operator()(const PointShape& point) { addNode(PlaceKind::whole, point.position, false); }
    void operator()(const XlineShape&) {}
    void operator()(const RayShape& ray) { addNode(PlaceKind::start, ray.point, false); }
    void operator()(const TextShape&) {}
    void operator()(const PolylineShape& polyline) {
        const std::size_t count = segmentCount(polyline);
        std::vector<std::size_t> vertexNodes;
        for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
            const bool isLast = i == count;
            vertexNodes.push_back(addNode(isLast ? PlaceKind::segmentEnd : PlaceKind::segmentStart,
                                          polyline.vertices[i], false, isLast ? i - 1 : i));
        }
        for (std::size_t i = 0; i < count; ++i)
            addSegment(polyline, i, vertexNodes[i], vertexNodes[segmentEndVertex(polyline, i)]);
    }

private:
    Place place(PlaceKind kind, std::size_t index = 0) const {
        return Place{m_entity->id, kind, static_cast<int>(index)};
    }

    PlaneCurve begin(PlaneCurve::Kind kind) const {
        PlaneCurve curve;
        curve.kind = kind;
        curve.whole = place(PlaceKind::whole);
        curve.entity = m_position;
        curve.fixed = m_entity->fixed;
        return curve;
    }

    std::size_t addNode(PlaceKind kind, Vec2 point, bool isCentre, std::size_t index = 0) {
        m_result.nodes.push_back({place(kind, index), point, isCentre, m_entity->fixed});
        return m_result.nodes.size() - 1;
    }

    /// A curve of its own with the entity's start and end.
    PlaneCurve bounded(PlaneCurve::Kind kind, const Shape& shape) {
        PlaneCurve curve = begin(kind);
        curve.startPlace = place(PlaceKind::start);
        curve.endPlace = place(PlaceKind::end);
        curve.startNode = addNode(PlaceKind::start, *pointAt(shape, curve.startPlace), false);
        curve.endNode = addNode(PlaceKind::end, *pointAt(shape, curve.endPlace), false);
        return curve;
    }

    void addLine(const LineShape& line) {
        PlaneCurve curve = bounded(PlaneCurve::Kind::line, line);
        curve.size = distance(line.start, line.end);
        curve.startDirection = curve.endDirection = difference(line.start, line.end);
        m_result.curves.push_back(std::move(curve));
    }

    void addSegment(const PolylineShape& polyline, std::size_t i, std::size_t startNode, std::size_t endNode) {
        const Vec2 from = m_result.nodes[startNode].point, to = m_result.nodes[endNode].point;
        const double bulge = polyline.bulges[i];
        if (distance(from, to) <= m_smallest)
            return;
        PlaneCurve curve = begin(bulge == 0.0 ? PlaneCurve::Kind::line : PlaneCurve::Kind::round);
        curve.whole = place(PlaceKind::segment, i);
        curve.startPlace = place(PlaceKind::segmentStart, i);
        curve.endPlace = place(PlaceKind::segmentEnd, i);
        curve.startNode = startNode;
        curve.endNode = endNode;
        curve.size = distance(from, to);
        curve.startDirection = curve.endDirection = difference(from, to);
        if (bulge != 0.0)
            bend(curve, arcOfBulge(from, to, bulge), bulge, i);
        m_result.curves.push_back(std::move(curve));
    }

    void bend(PlaneCurve& curve, const ArcShape& arc, double bulge, std::size_t i) {
        curve.centreNode = addNode(PlaceKind::segmentCentre, arc.centre, true, i);
        curve.size = arc.radius;
        const Vec2 first = acrossRadius(arc.startAngle), last = acrossRadius(arc.endAngle);
        curve.startDirection = bulge > 0 ? first : last;
        curve.endDirection = bulge > 0 ? last : first;
    }

    PlaneCurves& m_result;
    double m_smallest;
    const Entity* m_entity = nullptr;
    std::size_t m_position = 0;
};

/// A box that grows with the points that entities are given by; round curves count with their square.
class Box {
public:
    void add(Vec2 p, double around = 0.0) {
        m_left = std::min(m_left, p.x - around);
        m_right = std::max(m_right, p.x + around);
        m_bottom = std::min(m_bottom, p.y - around);
        m_top = std::max(m_top, p.y + around);
    }
    double side() const { return m_left > m_right ? 0.0 : std::max(m_right - m_left, m_top - m_bottom); }

    void operator()(const LineShape& line) {
        add(line.start);
        add(line.end);
    }
    void operator()(const ArcShape& arc) { add(arc.centre, arc.radius); }
    void operator()(const CircleShape& circle) { add(circle.centre, circle.radius); }
    void operator()(const EllipseShape& e) { add(e.centre, std::hypot(e.majorAxis.x, e.majorAxis.y)); }
    void operator()(const EllipticalArcShape& e) { add(e.centre, std::hypot(e.majorAxis.x, e.majorAxis.y)); }
    void operator()(const SplineShape& spline) { addAll(spline.control); }
    void operator()(const PointShape& point) { add(point.position); }
    void operator()(const XlineShape&) {}
    void operator()(const RayShape& ray) { add(ray.point); }
    void operator()(const PolylineShape& polyline) { addAll(polyline.vertices); }
    void operator()(const TextShape& text) { add(text.position); }

private:
    void addAll(const std::vector<Vec2>& points) {
        for (const Vec2 point : points)
            add(point);
    }

    static constexpr double kFar = std::numeric_limits<double>::infinity();
    double m_left = kFar, m_right = -kFar, m_bottom = kFar, m_top = -kFar;
};

/// The same for what is drawn of round curves: a part of an ellipse counts with its ends and with the ends of the axes
/// that lie on it. A flat arc of a huge radius is no huge drawing.
class DrawnBox : public Box {
public:
    using Box::operator();
    void operator()(const ArcShape& arc) { addTurn(arc.centre, {arc.radius, 0.0}, 1.0, arc.startAngle, arc.endAngle); }
    void operator()(const EllipticalArcShape& e) { addTurn(e.centre, e.majorAxis, e.ratio, e.startParam, e.endParam); }
    void operator()(const PolylineShape& polyline) {
        Box::operator()(polyline);
        for (std::size_t i = 0; i < segmentCount(polyline); ++i)
            if (polyline.bulges[i] != 0.0)
                (*this)(arcOfBulge(polyline.vertices[i], polyline.vertices[segmentEndVertex(polyline, i)],
                                   polyline.bulges[i]));
    }

private:
    void addTurn(Vec2 centre, Vec2 major, double ratio, double from, double to) {
        const auto addAt = [&](double param) {
            const double c = std::cos(param), s = ratio * std::sin(param);
            add({centre.x + c * major.x - s * major.y, centre.y + c * major.y + s * major.x});
        };
        constexpr double quarter = std::numbers::pi / 2;
        addAt(from);
        addAt(to);
        const double first = std::ceil(from / quarter);
        for (int i = 0; i < 4 && (first + i) * quarter < to; ++i)
            addAt((first + i) * quarter);
    }
};

}  // namespace

PlaneCurves planeCurvesOf(const Document& document, double smallest) {
    PlaneCurves result;
    Collector collector(result, smallest);
    for (std::size_t i = 0; i < document.entities.size(); ++i)
        collector.collect(document.entities[i], i);
    return result;
}

double extentOf(const Document& document) {
    Box box;
    for (const Entity& entity : document.entities)
        std::visit(box, entity.shape);
    return box.side();
}

double drawnSizeOf(const Document& document) {
    DrawnBox own, references;
    for (const Entity& entity : document.entities)
        std::visit(entity.fixed ? references : own, entity.shape);
    return own.side() > 0.0 ? own.side() : references.side();
}

}  // namespace holdfast::inference
