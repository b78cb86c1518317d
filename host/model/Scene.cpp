#include "host/model/Scene.h"

#include <stdexcept>

#include "host/model/scene/SceneEntities.h"
#include "host/model/scene/ScenePlaces.h"
#include "host/model/scene/ScenePrinter.h"
#include "host/model/scene/SceneReader.h"
#include "host/model/state/HostCall.h"

namespace holdfast {

Scene::Scene(std::string_view text) : m_builder(m_process.database()) {
    {
        const Unwatched unwatched;
        addGroup("group");
        SceneReader(*this).read(text);
    }
    m_process.faults().setNames([this](std::string_view name) { return objectNamed(name); });
    m_process.journal().clear();
    m_process.faults().clear();
}

Scene::~Scene() = default;

YxDbObjectId Scene::id(std::string_view name) const {
    const auto found = m_ids.find(std::string(name));
    return found == m_ids.end() ? YxDbObjectId() : found->second;
}

YxGeomConstraint* Scene::constraint(std::string_view name) const {
    const auto found = m_constraints.find(std::string(name));
    return found == m_constraints.end() ? nullptr : found->second;
}

YxDbAssoc2dConstraintGroup& Scene::group(std::string_view name) const {
    return HostBuilder::group(id(name));
}

YxDbAssocGeomDependency* Scene::dependency(std::string_view place) const {
    const auto found = m_dependencyNamed.find(std::string(place));
    if (found == m_dependencyNamed.end())
        return nullptr;
    return static_cast<YxDbAssocGeomDependency*>(HostAccess::peek(found->second));
}

YxConstrainedGeometry* Scene::geometry(std::string_view place) const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    const BuiltPlace at = scenePlace(*this, place);
    const YxDbAssocGeomDependency* on = dependency(at.isPosition ? place : place.substr(0, place.find('.')));
    if (on == nullptr)
        return nullptr;
    const YxDbAssoc2dConstraintGroup& group = HostBuilder::group(HostAccess::actionOf(*on));
    YxConstrainedGeometry* curve = HostAccess::geometryOn(group, HostAccess::idOf(*on));
    if (curve == nullptr || !at.isPoint || curve->isKindOf(YxConstrainedPoint::desc()))
        return curve;
    return HostAccess::implicitPoint(group, *curve, at.pointType, at.pointIndex);
}

YxDbObjectId Scene::addGroup(std::string name) {
    const YxDbObjectId id = m_builder.addGroup();
    m_groups.emplace_back(name, id);
    nameObject(id, std::move(name));
    return id;
}

void Scene::nameObject(const YxDbObjectId& id, std::string name) {
    m_process.name(HostAccess::peek(id), name);
    m_ids[name] = id;
    if (HostAccess::peek(id)->isKindOf(YxDbEntity::desc()))
        m_objects.emplace_back(std::move(name), id);
}

void Scene::nameDependency(const std::string& place, const YxDbObjectId& id) {
    if (!m_namedDependencies.insert(HostAccess::stub(id)).second)
        return;
    m_dependencies.emplace_back(place, id);
    m_dependencyNamed.emplace(place, id);
    m_process.name(HostAccess::peek(id), "dependency " + place);
}

bool Scene::nameConstraint(YxGeomConstraint& constraint, const std::string& name) {
    if (!m_constraints.emplace(name, &constraint).second)
        return false;
    m_process.name(&constraint, name);
    m_constraintNames.emplace(&constraint, name);
    return true;
}

YxDbObjectId Scene::add(std::string name, std::unique_ptr<YxDbEntity> entity) {
    const YxDbObjectId id = m_builder.add(std::move(entity));
    nameObject(id, std::move(name));
    return id;
}

const YxRxObject* Scene::objectNamed(std::string_view name) const {
    if (const YxDbObject* object = HostAccess::peek(id(name)))
        return object;
    if (const YxDbAssocGeomDependency* found = dependency(name))
        return found;
    return constraint(name);
}

std::string Scene::constraints() const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    return ScenePrinter(*this).constraints(group());
}

std::string Scene::constraints(std::string_view groupName) const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    return ScenePrinter(*this).constraints(group(groupName));
}

std::string Scene::dependencies() const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    return ScenePrinter(*this).dependencies();
}

std::string Scene::vertices(std::string_view polyline) const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    const auto* found = entity<YxDbPolyline>(polyline);
    if (found == nullptr)
        throw std::invalid_argument("the scene has no polyline \"" + std::string(polyline) + "\"");
    return verticesText(*found);
}

std::string Scene::text() const {
    const HostProcess::Scope bound(m_process);
    const Unwatched unwatched;
    return ScenePrinter(*this).text();
}

void Scene::refuseOpen(std::string_view name) {
    m_process.faults().refuseOpen(name);
}

std::vector<std::string> Scene::audit() {
    return auditHost(m_process);
}

}  // namespace holdfast
