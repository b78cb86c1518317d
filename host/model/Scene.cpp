#include "host/model/Scene.h"

#include <stdexcept>

#include "host/model/ScenePrinter.h"
#include "host/model/SceneReader.h"
#include "host/src/EntityAccess.h"
#include "host/src/HostCall.h"

namespace holdfast {

Scene::Scene(std::string_view text) : m_builder(m_process.database()) {
    {
        const Unwatched unwatched;
        m_groups.emplace_back("group", m_builder.addGroup());
        m_process.name(HostAccess::peek(groupId()), "group");
        SceneReader(*this, text).readAll();
    }
    m_process.journal().clear();
    m_process.faults().clear();
}

Scene::~Scene() = default;

YxDbObjectId Scene::id(std::string_view name) const {
    const auto found = m_ids.find(std::string(name));
    if (found != m_ids.end())
        return found->second;
    for (const auto& [groupName, group] : m_groups)
        if (groupName == name)
            return group;
    return {};
}

YxGeomConstraint* Scene::constraint(std::string_view name) const {
    const auto found = m_constraints.find(std::string(name));
    return found == m_constraints.end() ? nullptr : found->second;
}

YxDbAssoc2dConstraintGroup& Scene::group(std::string_view name) const {
    return HostBuilder::group(id(name));
}

YxDbAssocGeomDependency* Scene::dependency(std::string_view place) const {
    for (const auto& [name, id] : m_dependencies)
        if (name == place)
            return static_cast<YxDbAssocGeomDependency*>(HostAccess::peek(id));
    return nullptr;
}

YxConstrainedGeometry* Scene::geometry(std::string_view place) const {
    const std::size_t dot = place.find('.');
    const YxDbAssocGeomDependency* on = dependency(place.substr(0, dot));
    if (on == nullptr)
        return nullptr;
    const YxDbAssoc2dConstraintGroup& group = HostBuilder::group(HostAccess::actionOf(*on));
    YxConstrainedGeometry* curve = HostAccess::geometryOn(group, on->objectId());
    if (curve == nullptr || dot == std::string_view::npos)
        return curve;
    const Unwatched unwatched;
    const BuiltPlace at = SceneReader(const_cast<Scene&>(*this), "").place(place);
    return HostAccess::implicitPoint(group, *curve, at.pointType, at.pointIndex);
}

void Scene::nameObject(const YxDbObjectId& id, std::string name) {
    m_process.name(HostAccess::peek(id), name);
    m_ids[name] = id;
    if (HostAccess::peek(id)->isKindOf(YxDbEntity::desc()))
        m_objects.emplace_back(std::move(name), id);
}

YxDbObjectId Scene::add(std::string name, std::unique_ptr<YxDbEntity> entity) {
    const YxDbObjectId id = m_builder.add(std::move(entity));
    nameObject(id, std::move(name));
    return id;
}

std::string Scene::constraints() const {
    const Unwatched unwatched;
    return ScenePrinter(*this).constraints(group(), false);
}

std::string Scene::constraints(std::string_view groupName) const {
    const Unwatched unwatched;
    return ScenePrinter(*this).constraints(group(groupName), false);
}

std::string Scene::dependencies() const {
    const Unwatched unwatched;
    return ScenePrinter(*this).dependencies();
}

std::string Scene::vertices(std::string_view polyline) const {
    const Unwatched unwatched;
    const auto* found = entity<YxDbPolyline>(polyline);
    if (found == nullptr)
        throw std::invalid_argument("the scene has no polyline \"" + std::string(polyline) + "\"");
    return ScenePrinter::vertices(*found);
}

std::string Scene::text() const {
    const Unwatched unwatched;
    return ScenePrinter(*this).text();
}

void Scene::refuseOpen(std::string_view name) {
    m_process.faults().refuse("openObject", HostAccess::peek(id(name)));
    m_process.faults().refuse("yxdbOpenObject", HostAccess::peek(id(name)));
}

std::vector<std::string> Scene::audit() {
    return auditHost(m_process);
}

}  // namespace holdfast
