#include "host/model/scene/ScenePrinter.h"

#include "host/model/ConstraintKinds.h"
#include "host/model/scene/SceneEntities.h"
#include "host/model/scene/SceneNumbers.h"
#include "host/model/scene/ScenePlaces.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

namespace {

constexpr char kUnknown = '?';

template <class T>
const T& as(const YxDbObject& object) {
    return static_cast<const T&>(object);
}

void join(std::string& list, const std::string& item) {
    list += (list.empty() ? "" : "; ") + item;
}

/// A statement of the whole text.
std::string line(const std::string& statement) {
    return (statement.find(kUnknown) == std::string::npos ? "" : "// ") + statement + "\n";
}

std::string valueText(const YxDimensionConstraint& dimension) {
    const bool isAngle = dimension.kind() == YxDimensionConstraint::kAngle;
    return " = " + (isAngle ? angleText(dimension.value()) : numberText(dimension.value())) +
           (dimension.isDriving() ? "" : " measured");
}

/// The curve that defines an implicit point; null when the group has lost it.
const YxConstrainedGeometry* curveOf(const YxConstrainedImplicitPoint& point) {
    const YxDbConstraintGroupData& nodes = HostAccess::data(*HostAccess::groupOf(point));
    return static_cast<const YxConstrainedGeometry*>(nodes.node(HostAccess::curveId(point)));
}

bool isImplicitPoint(const YxConstrainedGeometry& geometry) {
    return geometry.isKindOf(YxConstrainedImplicitPoint::desc());
}

std::string identifiersText(const YxDbAssocGeomDependency& dependency) {
    const YxDbAssocPersSubentId* name = HostAccess::persistentId(dependency);
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return "";
    const auto& edge = static_cast<const YxDbAssocEdgePersSubentId&>(*name);
    return " " + std::to_string(HostAccess::startVertexId(edge)) + "-" + std::to_string(HostAccess::endVertexId(edge));
}

std::string statusText(const YxDbAssocGeomDependency& dependency) {
    const int status = HostAccess::status(dependency);
    return status == kUpToDateAssocStatus ? "" : " status " + std::to_string(status);
}

}  // namespace

int ScenePrinter::segmentOf(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline) {
    const auto found = m_segments.try_emplace(&polyline, polyline).first;
    return found->second.segmentOf(dependency);
}

std::string ScenePrinter::part(const YxDbAssocGeomDependency& dependency) {
    const YxDbObject* object = HostAccess::peek(HostAccess::objectOf(dependency));
    if (object == nullptr)
        return "detached";
    const std::string name = m_scene.m_process.nameOf(object);
    if (!object->isKindOf(YxDbPolyline::desc()))
        return HostAccess::subentType(dependency) == YxDb::kVertexSubentType ? name + ".position" : name;
    const int segment = segmentOf(dependency, as<YxDbPolyline>(*object));
    return name + "[" + (segment < 0 ? std::string(1, kUnknown) : std::to_string(segment + 1)) + "]";
}

std::string ScenePrinter::place(const YxConstrainedGeometry& geometry) {
    if (isImplicitPoint(geometry)) {
        const auto& point = static_cast<const YxConstrainedImplicitPoint&>(geometry);
        const YxConstrainedGeometry* curve = curveOf(point);
        return (curve == nullptr ? std::string(1, kUnknown) : place(*curve)) + pointSuffix(point);
    }
    const YxDbObject* object = HostAccess::peek(HostAccess::dependencyOf(geometry));
    if (object == nullptr)
        return std::string(1, kUnknown);
    const auto& dependency = as<YxDbAssocGeomDependency>(*object);
    const bool isGone = HostAccess::isErased(HostAccess::objectOf(dependency));
    return part(dependency) + (isGone ? std::string(1, kUnknown) : "");
}

std::string ScenePrinter::places(const YxGeomConstraint& constraint) {
    std::string text;
    for (const YxConstrainedGeometry* geometry : HostAccess::geometries(constraint))
        text += " " + place(*geometry);
    return text;
}

std::string ScenePrinter::plain(const YxGeomConstraint& constraint) {
    const ConstraintKind* kind = kindOf(constraint);
    if (kind == nullptr)
        return constraint.isA()->name() + std::string(1, kUnknown) + places(constraint);
    std::string text(kind->word);
    if (kind->type() == YxInternalConstraint::desc())
        text += " " + HostAccess::role(static_cast<const YxInternalConstraint&>(constraint));
    text += places(constraint);
    return kind->dimension ? text + valueText(static_cast<const YxDimensionConstraint&>(constraint)) : text;
}

std::string ScenePrinter::composite(const YxCompositeConstraint& composite, Names names) {
    const auto& members = HostAccess::members(composite);
    const bool isSmooth = composite.isKindOf(YxG2SmoothConstraint::desc());
    const bool isPlainJoint =
        isSmooth && members.size() == 1 && members.front()->isKindOf(YxPointCoincidenceConstraint::desc());
    // The whole text names the joint too, so that it has the same name when it is read again.
    if (isPlainJoint && names == Names::no)
        return "smooth" + places(*members.front());
    std::string list;
    for (const YxGeomConstraint* member : members)
        join(list, constraint(*member, names));
    return (isSmooth ? "smooth { " : "composite { ") + list + " }";
}

std::string ScenePrinter::constraint(const YxGeomConstraint& constraint, Names names) {
    std::string text;
    const auto name = m_scene.m_constraintNames.find(&constraint);
    if (names == Names::yes && name != m_scene.m_constraintNames.end())
        text += name->second + ": ";
    text += HostAccess::isInternal(constraint) ? "internal " : "";
    text += HostAccess::isImplied(constraint) ? "implied " : "";
    if (constraint.isKindOf(YxCompositeConstraint::desc()))
        return text + composite(static_cast<const YxCompositeConstraint&>(constraint), names);
    return text + plain(constraint);
}

std::string ScenePrinter::constraints(const YxDbAssoc2dConstraintGroup& group) {
    std::string text;
    for (const YxGeomConstraint* top : HostAccess::constraints(group))
        if (HostAccess::owner(*top) == nullptr)
            join(text, constraint(*top, Names::no));
    return text;
}

std::string ScenePrinter::dependencies() {
    std::string text;
    for (const auto& [name, id] : m_scene.m_dependencies) {
        const auto& dependency = as<YxDbAssocGeomDependency>(*HostAccess::peek(id));
        join(text, name + ": " + part(dependency) + identifiersText(dependency) + statusText(dependency));
    }
    return text;
}

std::string ScenePrinter::settings() const {
    const YxDbDatabaseData& data = HostAccess::data(m_scene.m_process.database());
    const auto axes = [](const char* word, const YxGeVector3d& x, const YxGeVector3d& y) {
        const bool isWorld = x.isEqualTo(YxGeVector3d::kXAxis) && y.isEqualTo(YxGeVector3d::kYAxis);
        return isWorld ? "" : line(word + vectorText(x) + " " + vectorText(y));
    };
    return axes("ucs ", data.ucsX, data.ucsY) + axes("ucs paper ", data.paperUcsX, data.paperUcsY) +
           (data.tilemode ? "" : line("paper"));
}

std::string ScenePrinter::entities() const {
    std::string text;
    for (const auto& [name, id] : m_scene.m_objects)
        if (!HostAccess::isErased(id))
            text += entityText(name, as<YxDbEntity>(*HostAccess::peek(id))) + "\n";
    return text;
}

/// Geometry that no constraint names, and dependencies without geometry.
std::string ScenePrinter::idleGeometries(const YxDbAssoc2dConstraintGroup& group) {
    std::unordered_set<const YxConstrainedGeometry*> named;
    const auto& geometries = HostAccess::geometries(group);
    for (const YxConstrainedGeometry* geometry : geometries)
        if (!HostAccess::connected(*geometry).empty() || isImplicitPoint(*geometry))
            named.insert(isImplicitPoint(*geometry) ? curveOf(static_cast<const YxConstrainedImplicitPoint&>(*geometry))
                                                    : geometry);
    std::string text;
    for (const YxConstrainedGeometry* geometry : geometries)
        if (HostAccess::connected(*geometry).empty() && !named.contains(geometry))
            text += line("dependency " + place(*geometry));
    for (const auto& [name, id] : m_scene.m_dependencies) {
        const auto& dependency = as<YxDbAssocGeomDependency>(*HostAccess::peek(id));
        const bool isOfGroup = HostAccess::actionOf(dependency) == HostAccess::idOf(group);
        if (isOfGroup && HostAccess::objectOf(dependency).isValid() && HostAccess::geometryOn(group, id) == nullptr)
            text += line("bare dependency " + part(dependency));
    }
    return text;
}

std::string ScenePrinter::group(const std::string& name, const YxDbAssoc2dConstraintGroup& group) {
    std::string text = HostAccess::idOf(group) == m_scene.groupId() ? "" : line("group " + name);
    text += idleGeometries(group);
    for (const YxGeomConstraint* top : HostAccess::constraints(group))
        if (HostAccess::owner(*top) == nullptr)
            text += line(constraint(*top, Names::yes));
    return text;
}

std::string ScenePrinter::otherReactors() {
    std::string text;
    for (const auto& [name, id] : m_scene.m_objects)
        for (const YxDbObjectId& reactor : HostAccess::reactors(*HostAccess::peek(id)))
            if (!HostAccess::peek(reactor)->isKindOf(YxDbAssocGeomDependency::desc()))
                text += line("reactor " + name);
    return text;
}

std::string ScenePrinter::text() {
    std::string text = settings() + entities() + otherReactors();
    for (const auto& [name, id] : m_scene.m_groups)
        text += group(name, HostBuilder::group(id));
    return text;
}

}  // namespace holdfast
