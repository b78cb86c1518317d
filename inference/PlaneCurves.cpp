#include "inference/PlaneCurves.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "document/Places.h"
#include "geometry/Conics.h"
#include "geometry/SplineCurve.h"

namespace holdfast::inference {
namespace {

Vec2 difference(Vec2 from, Vec2 to) {
    return {to.x - from.x, to.y - from.y};
}
Vec2 acrossRadius(double angle) {
    return {-std::sin(angle), std::cos(angle)};
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
        curve.startDirection = ellipseTangent(arc.majorAxis, arc.ratio, arc.startParam);
        curve.endDirection = ellipseTangent(arc.majorAxis, arc.ratio, arc.endParam);
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

/// The box around what is drawn: a flat arc of a huge radius is no huge drawing.
struct DrawnBox {
    Box box;

    void operator()(const LineShape& line) { addAll({line.start, line.end}); }
    void operator()(const ArcShape& arc) {
        box.add(ellipticBox(arc.centre, {arc.radius, 0.0}, 1.0, arc.startAngle, arc.endAngle));
    }
    void operator()(const CircleShape& circle) { addRound(circle.centre, circle.radius); }
    void operator()(const EllipseShape& e) { addRound(e.centre, norm(e.majorAxis)); }
    void operator()(const EllipticalArcShape& e) {
        box.add(ellipticBox(e.centre, e.majorAxis, e.ratio, e.startParam, e.endParam));
    }
    void operator()(const SplineShape& spline) { addAll(spline.control); }
    void operator()(const PointShape& point) { box.add(point.position); }
    void operator()(const XlineShape&) {}
    void operator()(const RayShape& ray) { box.add(ray.point); }
    void operator()(const PolylineShape& polyline) {
        addAll(polyline.vertices);
        for (std::size_t i = 0; i < segmentCount(polyline); ++i)
            if (polyline.bulges[i] != 0.0)
                (*this)(arcOfBulge(polyline.vertices[i], polyline.vertices[segmentEndVertex(polyline, i)],
                                   polyline.bulges[i]));
    }
    void operator()(const TextShape& text) { box.add(text.position); }

    double side() const { return std::max(box.width(), box.height()); }

private:
    void addRound(Vec2 centre, double radius) { box.add(boxAround(centre, 2.0 * radius, 2.0 * radius)); }
    void addAll(const std::vector<Vec2>& points) {
        for (const Vec2 point : points)
            box.add(point);
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

double drawnSizeOf(const Document& document) {
    DrawnBox own, references;
    for (const Entity& entity : document.entities)
        std::visit(entity.fixed ? references : own, entity.shape);
    return own.side() > 0.0 ? own.side() : references.side();
}

}  // namespace holdfast::inference
