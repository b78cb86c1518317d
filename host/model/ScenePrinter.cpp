#include "host/model/ScenePrinter.h"

#include <charconv>
#include <cmath>
#include <numbers>

#include "host/src/EntityAccess.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/YxDbConstraints/Subentities.h"

namespace holdfast {

namespace {

std::string number(double value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value == 0.0 ? 0.0 : value);
    return {text, end};
}

std::string degrees(double radians) {
    const double value = radians * 180.0 / std::numbers::pi;
    const double whole = std::round(value);
    return number(std::abs(value - whole) < 1e-9 ? whole : value);
}

template <class T>
std::string pair(const T& value) {
    return number(value.x) + "," + number(value.y);
}

template <class T>
const T& as(const YxDbObject& object) {
    return static_cast<const T&>(object);
}

std::string directed(const char* kind, const std::string& name, const DirectedData& data) {
    return std::string(kind) + " " + name + " " + pair(data.base) + " dir " + pair(data.direction);
}

std::string arcText(const std::string& name, const ArcData& data) {
    return "arc " + name + " centre " + pair(data.centre) + " radius " + number(data.radius) + " from " +
           degrees(data.startAngle) + " to " + degrees(data.endAngle) + (data.normal.z < 0.0 ? " down" : "");
}

std::string ellipseText(const std::string& name, const EllipseData& data) {
    const bool full = std::abs(data.endAngle - data.startAngle - 2.0 * std::numbers::pi) < 1e-12;
    return "ellipse " + name + " centre " + pair(data.centre) + " major " + pair(data.majorAxis) + " ratio " +
           number(data.ratio) + (full ? "" : " from " + degrees(data.startAngle) + " to " + degrees(data.endAngle));
}

std::string splineText(const std::string& name, const SplineData& data) {
    std::string text = "spline " + name + " degree " + std::to_string(data.degree) + " at";
    for (const YxGePoint3d& point : data.control)
        text += " " + pair(point);
    text += " knots";
    for (const double knot : data.knots)
        text += " " + number(knot);
    if (!data.weights.empty())
        text += " weights";
    for (const double weight : data.weights)
        text += " " + number(weight);
    return text + (data.periodic ? " periodic" : "");
}

std::string textText(const char* kind, const std::string& name, const TextData& data) {
    return std::string(kind) + " " + name + " " + pair(data.position) + " rotation " + degrees(data.rotation) +
           (data.text.empty() ? "" : " \"" + data.text + "\"");
}

struct KindName {
    const YxRxClass* type;
    const char* name;
};

const char* kindOf(const YxGeomConstraint& constraint) {
    static const KindName names[] = {
        {YxPointCoincidenceConstraint::desc(), "coincident"},
        {YxPointCurveConstraint::desc(), "on"},
        {YxFixedConstraint::desc(), "fixed"},
        {YxHorizontalConstraint::desc(), "horizontal"},
        {YxVerticalConstraint::desc(), "vertical"},
        {YxParallelConstraint::desc(), "parallel"},
        {YxPerpendicularConstraint::desc(), "perpendicular"},
        {YxCollinearConstraint::desc(), "collinear"},
        {YxTangentConstraint::desc(), "tangent"},
        {YxConcentricConstraint::desc(), "concentric"},
        {YxEqualLengthConstraint::desc(), "equal"},
        {YxEqualRadiusConstraint::desc(), "equalradius"},
        {YxSymmetricConstraint::desc(), "symmetric"},
        {YxMidPointConstraint::desc(), "midpoint"},
        {YxInternalConstraint::desc(), "internalhelper"},
    };
    for (const KindName& name : names)
        if (constraint.isKindOf(name.type))
            return name.name;
    return "unknown";
}

std::string dimensionText(const YxDimensionConstraint& dimension, const std::string& places) {
    static constexpr const char* kNames[] = {"distance", "distancex", "distancey", "radius", "diameter", "angle"};
    const bool angle = dimension.kind() == YxDimensionConstraint::kAngle;
    return std::string(kNames[dimension.kind()]) + places + " = " +
           (angle ? degrees(dimension.value()) : number(dimension.value())) +
           (dimension.isDriving() ? "" : " measured");
}

void join(std::string& list, const std::string& item, const char* separator = "; ") {
    list += (list.empty() ? "" : separator) + item;
}

}  // namespace

std::string ScenePrinter::vertices(const YxDbPolyline& polyline) {
    const PolylineData data = EntityAccess::polyline(polyline);
    std::string text;
    for (const PolylineVertex& vertex : data.vertices)
        join(text,
             pair(vertex.point) + (vertex.identifier == 0 ? "" : "#" + std::to_string(vertex.identifier)) +
                 (vertex.bulge == 0.0 ? "" : "^" + number(vertex.bulge)),
             " ");
    return text + (data.closed ? " closed" : "");
}

std::string ScenePrinter::entity(const std::string& name, const YxDbObject& object) const {
    if (object.isKindOf(YxDbLine::desc())) {
        const LineData data = EntityAccess::line(as<YxDbLine>(object));
        return "line " + name + " " + pair(data.start) + " " + pair(data.end);
    }
    if (object.isKindOf(YxDbRay::desc()))
        return directed("ray", name, EntityAccess::ray(as<YxDbRay>(object)));
    if (object.isKindOf(YxDbXline::desc()))
        return directed("xline", name, EntityAccess::xline(as<YxDbXline>(object)));
    if (object.isKindOf(YxDbCircle::desc())) {
        const CircleData data = EntityAccess::circle(as<YxDbCircle>(object));
        return "circle " + name + " centre " + pair(data.centre) + " radius " + number(data.radius);
    }
    if (object.isKindOf(YxDbArc::desc()))
        return arcText(name, EntityAccess::arc(as<YxDbArc>(object)));
    if (object.isKindOf(YxDbEllipse::desc()))
        return ellipseText(name, EntityAccess::ellipse(as<YxDbEllipse>(object)));
    if (object.isKindOf(YxDbSpline::desc()))
        return splineText(name, EntityAccess::spline(as<YxDbSpline>(object)));
    if (object.isKindOf(YxDbPolyline::desc()))
        return "polyline " + name + " " + vertices(as<YxDbPolyline>(object));
    if (object.isKindOf(YxDbPoint::desc()))
        return "point " + name + " " + pair(EntityAccess::point(as<YxDbPoint>(object)));
    if (object.isKindOf(YxDbText::desc()))
        return textText("text", name, EntityAccess::text(as<YxDbText>(object)));
    return textText("mtext", name, EntityAccess::mtext(as<YxDbMText>(object)));
}

std::string ScenePrinter::part(const YxDbAssocGeomDependency& dependency) const {
    const YxDbObject* object = HostAccess::peek(HostAccess::objectOf(dependency));
    if (object == nullptr)
        return "detached";
    const std::string name = m_scene.m_process.nameOf(object);
    if (!object->isKindOf(YxDbPolyline::desc()))
        return name;
    const int segment = partOf(dependency, as<YxDbEntity>(*object)).index();
    return name + "[" + (segment > 0 ? std::to_string(segment) : "?") + "]";
}

std::string ScenePrinter::place(const YxConstrainedGeometry& geometry) const {
    const YxConstrainedGeometry* curve = &geometry;
    std::string point;
    if (geometry.isKindOf(YxConstrainedImplicitPoint::desc())) {
        const auto& implicit = static_cast<const YxConstrainedImplicitPoint&>(geometry);
        static constexpr const char* kPoints[] = {".start", ".end", ".mid", ".centre", ".control"};
        point = kPoints[implicit.pointType()];
        if (implicit.pointType() == YxDb::kControlImplicit)
            point += std::to_string(implicit.pointIndex());
        const auto& nodes = HostAccess::data(*HostAccess::groupOf(geometry));
        curve = static_cast<const YxConstrainedGeometry*>(nodes.node(implicit.constrainedCurveId()));
    }
    const YxDbObject* dependency = curve == nullptr ? nullptr : HostAccess::peek(HostAccess::dependencyOf(*curve));
    return (dependency == nullptr ? "?" : part(as<YxDbAssocGeomDependency>(*dependency))) + point;
}

std::string ScenePrinter::places(const YxGeomConstraint& constraint) const {
    std::string text;
    for (const YxConstrainedGeometry* geometry : HostAccess::geometries(constraint))
        text += " " + place(*geometry);
    return text;
}

std::string ScenePrinter::constraint(const YxGeomConstraint& constraint, bool named) const {
    std::string text;
    if (const auto name = m_scene.m_constraintNames.find(&constraint); named && name != m_scene.m_constraintNames.end())
        text += name->second + ": ";
    text += constraint.isInternal() ? "internal " : "";
    text += constraint.isImplied() ? "implied " : "";
    if (constraint.isKindOf(YxDimensionConstraint::desc()))
        return text + dimensionText(static_cast<const YxDimensionConstraint&>(constraint), places(constraint));
    if (!constraint.isKindOf(YxCompositeConstraint::desc()))
        return text + kindOf(constraint) + places(constraint);
    const auto& members = HostAccess::members(static_cast<const YxCompositeConstraint&>(constraint));
    if (constraint.isKindOf(YxG2SmoothConstraint::desc()))
        return text + "smooth" + (members.empty() ? "" : places(*members.front()));
    std::string list;
    for (const YxGeomConstraint* member : members)
        join(list, this->constraint(*member, named));
    return text + "composite { " + list + " }";
}

std::string ScenePrinter::constraints(const YxDbAssoc2dConstraintGroup& group, bool named) const {
    std::string text;
    for (const YxGeomConstraint* constraint : HostAccess::constraints(group))
        if (HostAccess::owner(*constraint) == nullptr)
            join(text, this->constraint(*constraint, named));
    return text;
}

std::string ScenePrinter::dependencies() const {
    std::string text;
    for (const auto& [name, id] : m_scene.m_dependencies) {
        const auto& dependency = as<YxDbAssocGeomDependency>(*HostAccess::peek(id));
        std::string line = name + ": " + part(dependency);
        if (const auto* edge = dynamic_cast<const YxDbAssocEdgePersSubentId*>(HostAccess::persistentId(dependency)))
            line += " " + std::to_string(edge->index1()) + "-" + std::to_string(edge->index2());
        if (const int status = HostAccess::status(dependency); status != kUpToDateAssocStatus)
            line += " status " + std::to_string(status);
        join(text, line);
    }
    return text;
}

std::string ScenePrinter::text() const {
    std::string text;
    for (const auto& [name, id] : m_scene.m_objects)
        if (!HostAccess::isErased(id))
            text += entity(name, *HostAccess::peek(id)) + "\n";
    for (const auto& [name, id] : m_scene.m_groups) {
        if (id != m_scene.groupId())
            text += "group " + name + "\n";
        const auto& group = HostBuilder::group(id);
        for (const YxGeomConstraint* constraint : HostAccess::constraints(group))
            if (HostAccess::owner(*constraint) == nullptr)
                text += this->constraint(*constraint, true) + "\n";
    }
    return text;
}

}  // namespace holdfast
