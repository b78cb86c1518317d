#include "hosting/HostShapes.h"

#include <cmath>
#include <stdexcept>

#include "geometry/Angles.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::hosting {

namespace {

YxGePoint3d point3(Vec2 p) {
    return {p.x, p.y, 0.0};
}

YxGeVector3d vector3(Vec2 v) {
    return {v.x, v.y, 0.0};
}

template <class T>
Vec2 flat(const T& p) {
    return {p.x, p.y};
}

ArcData dataOf(const ArcShape& s) {
    return {.centre = point3(s.centre), .radius = s.radius, .startAngle = s.startAngle, .endAngle = s.endAngle};
}

EllipseData dataOf(const EllipseShape& s) {
    return {.centre = point3(s.centre), .majorAxis = vector3(s.majorAxis), .ratio = s.ratio};
}

/// The same arc in the terms of one that is seen from below: its start is the other end.
ArcData fromBelow(ArcData arc) {
    const double start = arc.startAngle;
    arc.startAngle = kPi - arc.endAngle;
    arc.endAngle = kPi - start;
    arc.normal = -YxGeVector3d::kZAxis;
    return arc;
}

EllipseData fromBelow(EllipseData ellipse) {
    const double start = ellipse.startAngle;
    ellipse.startAngle = -ellipse.endAngle;
    ellipse.endAngle = -start;
    ellipse.normal = -YxGeVector3d::kZAxis;
    return ellipse;
}

EllipseData dataOf(const EllipticalArcShape& s) {
    return {.centre = point3(s.centre),
            .majorAxis = vector3(s.majorAxis),
            .ratio = s.ratio,
            .startAngle = s.startParam,
            .endAngle = s.endParam};
}

SplineData dataOf(const SplineShape& s) {
    SplineData data{.degree = s.degree, .periodic = s.periodic, .control = {}, .knots = s.knots, .weights = s.weights};
    for (const Vec2& control : s.control)
        data.control.push_back(point3(control));
    return data;
}

PolylineData dataOf(const PolylineShape& s) {
    PolylineData data{.vertices = {}, .closed = s.closed};
    for (std::size_t i = 0; i < s.vertices.size(); ++i)
        data.vertices.push_back({.point = {s.vertices[i].x, s.vertices[i].y},
                                 .bulge = i < s.bulges.size() ? s.bulges[i] : 0.0,
                                 .identifier = i < s.ids.size() ? s.ids[i] : 0});
    return data;
}

TextData dataOf(const TextShape& s) {
    return {.position = point3(s.position), .rotation = s.rotation, .height = s.height, .text = s.text};
}

struct Maker {
    using Made = std::unique_ptr<YxDbEntity>;
    Made operator()(const LineShape& s) const { return EntityAccess::makeLine(point3(s.start), point3(s.end)); }
    Made operator()(const ArcShape& s) const { return EntityAccess::makeArc(dataOf(s)); }
    Made operator()(const CircleShape& s) const {
        return EntityAccess::makeCircle({.centre = point3(s.centre), .radius = s.radius});
    }
    Made operator()(const EllipseShape& s) const { return EntityAccess::makeEllipse(dataOf(s)); }
    Made operator()(const EllipticalArcShape& s) const { return EntityAccess::makeEllipse(dataOf(s)); }
    Made operator()(const SplineShape& s) const { return EntityAccess::makeSpline(dataOf(s)); }
    Made operator()(const PointShape& s) const { return EntityAccess::makePoint(point3(s.position)); }
    Made operator()(const XlineShape& s) const {
        return EntityAccess::makeXline(point3(s.point), vector3(s.direction));
    }
    Made operator()(const RayShape& s) const { return EntityAccess::makeRay(point3(s.point), vector3(s.direction)); }
    Made operator()(const PolylineShape& s) const { return EntityAccess::makePolyline(dataOf(s)); }
    Made operator()(const TextShape& s) const {
        if (s.multiline)
            return EntityAccess::makeMText(dataOf(s));
        return EntityAccess::makeText(dataOf(s));
    }
};

template <class T>
T& as(YxDbEntity& entity) {
    if (!entity.isKindOf(T::desc()))
        throw std::invalid_argument(std::string("a ") + entity.isA()->name() + " cannot take the shape of a " +
                                    T::desc()->name());
    return static_cast<T&>(entity);
}

template <class T>
const T* is(const YxDbEntity& entity) {
    return entity.isKindOf(T::desc()) ? static_cast<const T*>(&entity) : nullptr;
}

struct Writer {
    YxDbEntity& entity;
    void operator()(const LineShape& s) const {
        EntityAccess::setLine(as<YxDbLine>(entity), point3(s.start), point3(s.end));
    }
    void operator()(const ArcShape& s) const {
        EntityAccess::setArc(as<YxDbArc>(entity), isSeenFromBelow(entity) ? fromBelow(dataOf(s)) : dataOf(s));
    }
    void operator()(const CircleShape& s) const {
        EntityAccess::setCircle(as<YxDbCircle>(entity), {.centre = point3(s.centre), .radius = s.radius});
    }
    void operator()(const EllipseShape& s) const { EntityAccess::setEllipse(as<YxDbEllipse>(entity), dataOf(s)); }
    void operator()(const EllipticalArcShape& s) const {
        EntityAccess::setEllipse(as<YxDbEllipse>(entity), isSeenFromBelow(entity) ? fromBelow(dataOf(s)) : dataOf(s));
    }
    void operator()(const SplineShape& s) const { EntityAccess::setSpline(as<YxDbSpline>(entity), dataOf(s)); }
    void operator()(const PointShape& s) const { EntityAccess::setPoint(as<YxDbPoint>(entity), point3(s.position)); }
    void operator()(const XlineShape& s) const {
        EntityAccess::setXline(as<YxDbXline>(entity), point3(s.point), vector3(s.direction));
    }
    void operator()(const RayShape& s) const {
        EntityAccess::setRay(as<YxDbRay>(entity), point3(s.point), vector3(s.direction));
    }
    void operator()(const PolylineShape& s) const { EntityAccess::setPolyline(as<YxDbPolyline>(entity), dataOf(s)); }
    void operator()(const TextShape& s) const {
        if (s.multiline)
            EntityAccess::setMText(as<YxDbMText>(entity), dataOf(s));
        else
            EntityAccess::setText(as<YxDbText>(entity), dataOf(s));
    }
};

Shape shapeOf(const ArcData& data) {
    if (data.normal.z >= 0.0)
        return ArcShape{flat(data.centre), data.radius, data.startAngle, data.endAngle};
    // Seen from below, angles run clockwise from -x: the world's angle is pi minus the host's.
    return ArcShape{flat(data.centre), data.radius, kPi - data.endAngle, kPi - data.startAngle};
}

Shape shapeOf(const EllipseData& data) {
    if (data.startAngle == 0.0 && data.endAngle == kTurn)
        return EllipseShape{flat(data.centre), flat(data.majorAxis), data.ratio};
    if (data.normal.z >= 0.0)
        return EllipticalArcShape{flat(data.centre), flat(data.majorAxis), data.ratio, data.startAngle, data.endAngle};
    return EllipticalArcShape{flat(data.centre), flat(data.majorAxis), data.ratio, -data.endAngle, -data.startAngle};
}

Shape shapeOf(const SplineData& data) {
    SplineShape shape{
        .degree = data.degree, .periodic = data.periodic, .control = {}, .knots = data.knots, .weights = data.weights};
    for (const YxGePoint3d& control : data.control)
        shape.control.push_back(flat(control));
    return shape;
}

Shape shapeOf(const PolylineData& data) {
    PolylineShape shape;
    shape.closed = data.closed;
    for (const PolylineVertex& vertex : data.vertices) {
        shape.vertices.push_back(flat(vertex.point));
        shape.bulges.push_back(vertex.bulge);
        shape.ids.push_back(vertex.identifier);
    }
    return shape;
}

Shape shapeOf(const TextData& data, bool multiline) {
    return TextShape{flat(data.position), data.rotation, data.height, data.text, multiline};
}

}  // namespace

bool isSeenFromBelow(const YxDbEntity& entity) {
    if (const auto* arc = is<YxDbArc>(entity))
        return EntityAccess::arc(*arc).normal.z < 0.0;
    const auto* ellipse = is<YxDbEllipse>(entity);
    return ellipse != nullptr && EntityAccess::ellipse(*ellipse).normal.z < 0.0;
}

std::unique_ptr<YxDbEntity> makeEntity(const Shape& shape) {
    return std::visit(Maker(), shape);
}

void writeShape(YxDbEntity& entity, const Shape& shape) {
    std::visit(Writer{entity}, shape);
}

Shape readShape(const YxDbEntity& entity) {
    if (const auto* line = is<YxDbLine>(entity)) {
        const LineData data = EntityAccess::line(*line);
        return LineShape{flat(data.start), flat(data.end)};
    }
    if (const auto* arc = is<YxDbArc>(entity))
        return shapeOf(EntityAccess::arc(*arc));
    if (const auto* circle = is<YxDbCircle>(entity)) {
        const CircleData data = EntityAccess::circle(*circle);
        return CircleShape{flat(data.centre), data.radius};
    }
    if (const auto* ellipse = is<YxDbEllipse>(entity))
        return shapeOf(EntityAccess::ellipse(*ellipse));
    if (const auto* spline = is<YxDbSpline>(entity))
        return shapeOf(EntityAccess::spline(*spline));
    if (const auto* polyline = is<YxDbPolyline>(entity))
        return shapeOf(EntityAccess::polyline(*polyline));
    if (const auto* point = is<YxDbPoint>(entity))
        return PointShape{flat(EntityAccess::point(*point))};
    if (const auto* ray = is<YxDbRay>(entity)) {
        const DirectedData data = EntityAccess::ray(*ray);
        return RayShape{flat(data.base), flat(data.direction)};
    }
    if (const auto* xline = is<YxDbXline>(entity)) {
        const DirectedData data = EntityAccess::xline(*xline);
        return XlineShape{flat(data.base), flat(data.direction)};
    }
    if (const auto* text = is<YxDbText>(entity))
        return shapeOf(EntityAccess::text(*text), false);
    if (const auto* text = is<YxDbMText>(entity))
        return shapeOf(EntityAccess::mtext(*text), true);
    throw std::invalid_argument(std::string("a drawing cannot hold a ") + entity.isA()->name());
}

bool sameHostKind(const Shape& a, const Shape& b) {
    const auto kind = [](const Shape& shape) {
        constexpr std::size_t kEllipse = 3, kEllipticalArc = 4;
        return shape.index() == kEllipticalArc ? kEllipse : shape.index();
    };
    return kind(a) == kind(b);
}

}  // namespace holdfast::hosting
