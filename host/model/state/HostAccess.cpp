#include "host/model/state/HostAccess.h"

#include <algorithm>
#include <utility>

#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

YxDbObjectId HostAccess::idOf(YxDbStub* stub) {
    YxDbObjectId id;
    id.m_stub = stub;
    return id;
}

YxDbObjectId HostAccess::idOf(const YxDbObject& object) {
    return idOf(object.m_data->stub);
}

std::unique_ptr<YxDbDatabase> HostAccess::makeDatabase() {
    return std::unique_ptr<YxDbDatabase>(new YxDbDatabase());
}

YxDbObjectId HostAccess::addToDatabase(YxDbDatabase& database, std::unique_ptr<YxDbObject> object) {
    YxDbDatabaseData& databaseData = data(database);
    auto stub = std::make_unique<YxDbStub>();
    stub->database = &database;
    stub->handle = databaseData.stubs.size() + 1;
    databaseData.stubs.push_back(std::move(stub));  // what can fail comes before the object has a new owner
    YxDbStub& place = *databaseData.stubs.back();
    if (object->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        databaseData.groups.push_back(&place);
    object->m_data->stub = &place;
    HostState::leave(*object);
    place.object = std::move(object);
    tellChange(*place.object);
    return idOf(&place);
}

void HostAccess::erase(const YxDbObjectId& id, bool erased) {
    YxDbObject* object = peek(id);
    if (object == nullptr)
        return;
    tellChange(*object);
    data(*object).erased = erased;
}

void HostAccess::tellChanges(YxDbDatabase& database, HostChanges* changes) {
    data(database).changes = changes;
}

void HostAccess::tellChange(const YxDbObject& object) {
    YxDbStub* stub = data(object).stub;
    if (stub != nullptr && data(*stub->database).changes != nullptr)
        data(*stub->database).changes->objects.insert(stub);
}

void HostAccess::tellChange(const YxGeomConstraint& constraint) {
    const YxDbStub* group = constraint.m_group == nullptr ? nullptr : stub(idOf(*constraint.m_group));
    if (group != nullptr && data(*group->database).changes != nullptr)
        data(*group->database).changes->constraints.insert(&constraint);
}

void HostAccess::tellDeletion(const YxGeomConstraint& constraint) {
    tellChange(constraint);
    const YxDbStub* group = stub(idOf(*constraint.m_group));
    if (group != nullptr && data(*group->database).changes != nullptr)
        data(*group->database).changes->deletions.push_back(&constraint);
}

YxDbObject* HostAccess::peek(const YxDbObjectId& id) {
    return id.m_stub == nullptr ? nullptr : id.m_stub->object.get();
}

bool HostAccess::isErased(const YxDbObjectId& id) {
    const YxDbObject* object = peek(id);
    return object == nullptr || data(*object).erased;
}

int HostAccess::openCount(const YxDbObject& object) {
    return static_cast<int>(data(object).openModes.size());
}

int HostAccess::openCount(const YxDbDatabase& database) {
    return database.m_data->opens;
}

bool HostAccess::isWritable(const YxDbObject& object) {
    return data(object).stub == nullptr || data(object).writeOpens > 0;
}

std::span<YxDbStub* const> HostAccess::groupStubs(const YxDbDatabase& database) {
    return database.m_data->groups;
}

std::vector<YxDbObjectId> HostAccess::allIds(const YxDbDatabase& database) {
    std::vector<YxDbObjectId> ids;
    for (const auto& stub : database.m_data->stubs)
        if (stub->object != nullptr)
            ids.push_back(idOf(stub.get()));
    return ids;
}

void HostAccess::addReactor(YxDbObject& object, const YxDbObjectId& reactor) {
    tellChange(object);
    data(object).reactors.add(reactor);
}

std::vector<YxDbObjectId> HostAccess::reactors(const YxDbObject& object) {
    return data(object).reactors.ids();
}

std::size_t HostAccess::reactorCount(const YxDbObject& object, const YxDbObjectId& reactor) {
    return data(object).reactors.count(reactor);
}

std::unique_ptr<YxDbAssocGeomDependency> HostAccess::makeGeomDependency(const YxDbObjectId& action) {
    std::unique_ptr<YxDbAssocGeomDependency> dependency(new YxDbAssocGeomDependency());
    dependency->m_owningAction = action;
    return dependency;
}

std::unique_ptr<YxDbAssocEdgePersSubentId> HostAccess::makeEdgeId(int index1, int index2) {
    auto id = std::make_unique<YxDbAssocEdgePersSubentId>();
    id->m_index1 = index1;
    id->m_index2 = index2;
    return id;
}

void HostAccess::setPersistentId(YxDbAssocGeomDependency& dependency, std::unique_ptr<YxDbAssocPersSubentId> id) {
    tellChange(dependency);
    dependency.m_persistentId = std::move(id);
}

std::unique_ptr<YxDbAssoc2dConstraintGroup> HostAccess::makeGroup() {
    return std::unique_ptr<YxDbAssoc2dConstraintGroup>(new YxDbAssoc2dConstraintGroup());
}

YxConstrainedGeometry& HostAccess::addGeometry(YxDbAssoc2dConstraintGroup& group,
                                               std::unique_ptr<YxConstrainedGeometry> geometry,
                                               const YxDbObjectId& dependency) {
    YxDbConstraintGroupData& groupData = data(group);
    geometry->m_nodeId = groupData.nextNodeId();
    geometry->m_group = &group;
    geometry->m_dependency = dependency;
    YxConstrainedGeometry& added = *geometry;
    groupData.add(std::move(geometry));
    return added;
}

YxConstrainedImplicitPoint& HostAccess::addImplicitPoint(YxDbAssoc2dConstraintGroup& group,
                                                         const YxConstrainedGeometry& curve,
                                                         YxDb::ImplicitPointType type, int pointIndex) {
    auto point = std::make_unique<YxConstrainedImplicitPoint>();
    point->m_curveId = nodeId(curve);
    point->m_pointType = type;
    point->m_pointIndex = pointIndex;
    return static_cast<YxConstrainedImplicitPoint&>(addGeometry(group, std::move(point), YxDbObjectId()));
}

void HostAccess::setPointType(YxConstrainedImplicitPoint& point, YxDb::ImplicitPointType type) {
    const YxGraphNode* curve = data(*point.m_group).node(point.m_curveId);
    const YxDbObject* dependency =
        curve == nullptr ? nullptr : peek(static_cast<const YxConstrainedGeometry*>(curve)->m_dependency);
    if (dependency != nullptr)
        tellChange(*dependency);
    point.m_pointType = type;
}

YxGeomConstraint& HostAccess::addConstraint(YxDbAssoc2dConstraintGroup& group,
                                            std::unique_ptr<YxGeomConstraint> constraint,
                                            const std::vector<YxConstrainedGeometry*>& geometries) {
    YxDbConstraintGroupData& groupData = data(group);
    constraint->m_nodeId = groupData.nextNodeId();
    constraint->m_group = &group;
    constraint->m_geometries = geometries;
    for (YxConstrainedGeometry* geometry : geometries)
        if (geometry->m_connected.empty() || geometry->m_connected.back() != constraint.get())
            geometry->m_connected.push_back(constraint.get());
    YxGeomConstraint& added = *constraint;
    groupData.add(std::move(constraint));
    tellChange(added);
    return added;
}

void HostAccess::own(YxCompositeConstraint& composite, YxGeomConstraint& member) {
    tellChange(composite);
    member.m_owner = &composite;
    composite.m_members.push_back(&member);
}

void HostAccess::setDimension(YxDimensionConstraint& dimension, YxDimensionConstraint::Kind kind, double value,
                              bool driving) {
    tellChange(dimension);
    dimension.m_kind = kind;
    dimension.m_value = value;
    dimension.m_driving = driving;
}

Yxrt::ErrorStatus HostAccess::deleteConstraint(YxDbAssoc2dConstraintGroup& group, YxGeomConstraint* constraint) {
    if (constraint == nullptr || constraint->m_group != &group)
        return Yxrt::eInvalidInput;
    if (constraint->m_deleted)
        return Yxrt::eWasErased;
    tellDeletion(*constraint);
    if (constraint->m_owner != nullptr)
        tellChange(*constraint->m_owner);
    constraint->m_deleted = true;
    data(group).forget(*constraint);
    for (YxConstrainedGeometry* geometry : constraint->m_geometries)
        countDeleted(geometry->m_connected, geometry->m_deletedCount);
    if (YxCompositeConstraint* owner = std::exchange(constraint->m_owner, nullptr))
        countDeleted(owner->m_members, owner->m_deletedCount);
    if (!constraint->isKindOf(YxCompositeConstraint::desc()))
        return Yxrt::eOk;
    for (YxGeomConstraint* member : std::exchange(static_cast<YxCompositeConstraint*>(constraint)->m_members, {})) {
        member->m_owner = nullptr;
        deleteConstraint(group, member);
    }
    return Yxrt::eOk;
}

const HostAccess::Constraints& HostAccess::withoutDeleted(Constraints& listed, std::size_t& deletedCount) {
    if (deletedCount > 0)
        std::erase_if(listed, [](const YxGeomConstraint* constraint) { return constraint->m_deleted; });
    deletedCount = 0;
    return listed;
}

void HostAccess::countDeleted(Constraints& listed, std::size_t& deletedCount) {
    if (++deletedCount > listed.size() / 2)
        withoutDeleted(listed, deletedCount);
}

std::vector<YxGeomConstraint*> HostAccess::constraints(const YxDbAssoc2dConstraintGroup& group) {
    return data(group).liveConstraints();
}

const std::vector<YxConstrainedGeometry*>& HostAccess::geometries(const YxDbAssoc2dConstraintGroup& group) {
    return data(group).geometries();
}

YxConstrainedGeometry* HostAccess::geometryOn(const YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency) {
    return data(group).geometryOn(dependency);
}

const YxDbObjectId& HostAccess::standsOn(const YxConstrainedGeometry& geometry) {
    const auto* point = dynamic_cast<const YxConstrainedImplicitPoint*>(&geometry);
    if (point == nullptr)
        return dependencyOf(geometry);
    const YxGraphNode* curve = data(*point->m_group).node(point->m_curveId);
    return dependencyOf(curve == nullptr ? geometry : static_cast<const YxConstrainedGeometry&>(*curve));
}

YxConstrainedImplicitPoint* HostAccess::implicitPoint(const YxDbAssoc2dConstraintGroup& group,
                                                      const YxConstrainedGeometry& curve, YxDb::ImplicitPointType type,
                                                      int pointIndex) {
    return data(group).implicitPoint(nodeId(curve), type, pointIndex);
}

std::vector<YxConstrainedImplicitPoint*> HostAccess::pointsOf(const YxDbAssoc2dConstraintGroup& group,
                                                              const YxConstrainedGeometry& curve) {
    return data(group).pointsOf(nodeId(curve));
}

bool HostAccess::isConstrained(const YxDbAssoc2dConstraintGroup& group, const YxConstrainedGeometry& geometry) {
    return !connected(geometry).empty() ||
           std::ranges::any_of(pointsOf(group, geometry), [](const auto* point) { return !connected(*point).empty(); });
}

YxConstrainedGeometry* HostAccess::curveOf(const YxDbAssoc2dConstraintGroup& group,
                                           const YxConstrainedImplicitPoint& point) {
    return static_cast<YxConstrainedGeometry*>(data(group).node(curveId(point)));
}

YxGeomConstraint* HostAccess::topLevel(YxGeomConstraint& constraint) {
    YxGeomConstraint* top = &constraint;
    while (top->m_owner != nullptr)
        top = top->m_owner;
    return top;
}

AssocConstraintHeader* HostAccess::header(YxDbAssoc2dConstraintGroup& group) {
    return &data(group).header;
}

void HostAccess::replaceObject(const YxDbObjectId& id, std::unique_ptr<YxDbObject> successor) {
    tellChange(*id.m_stub->object);
    std::unique_ptr<YxDbObject> former = std::exchange(id.m_stub->object, std::move(successor));
    YxDbObject& resident = *id.m_stub->object;
    data(resident).stub = id.m_stub;
    data(resident).reactors = std::move(data(*former).reactors);
    HostState::leave(resident);
    data(*former).stub = nullptr;
    hostState().enter(*former);
}

void HostAccess::eraseDependency(const YxDbObjectId& dependency) {
    YxDbObject* object = peek(dependency);
    if (object == nullptr || !object->isKindOf(YxDbAssocGeomDependency::desc()))
        return;
    auto& erased = static_cast<YxDbAssocGeomDependency&>(*object);
    tellChange(erased);
    if (YxDbObject* entity = peek(erased.m_object)) {
        tellChange(*entity);
        data(*entity).reactors.remove(dependency);
    }
    erased.m_object = YxDbObjectId();
    YxDbObject* action = peek(erased.m_owningAction);
    if (action != nullptr && action->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        data(static_cast<YxDbAssoc2dConstraintGroup&>(*action)).removeGeometryOn(dependency);
    erase(dependency);
}

}  // namespace holdfast
