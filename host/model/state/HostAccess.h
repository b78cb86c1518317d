#pragma once

#include <memory>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxcore/ConstraintDynamicEdit.h>
#include <yxdb/YxDbDatabase.h>
#include <yxdb/YxDbEntity.h>

#include "host/model/ConverterRecord.h"
#include "host/model/state/HostChanges.h"
#include "host/model/state/HostState.h"

class YxDbHostApplicationServices;

namespace holdfast {

/// Builds, inspects and changes platform objects from outside: what a host does with its own objects.
struct HostAccess {
    // Ids and databases
    static YxDbStub* stub(const YxDbObjectId& id) { return id.m_stub; }
    static YxDbObjectId idOf(YxDbStub* stub);
    static YxDbObjectId idOf(const YxDbObject& object);
    static std::unique_ptr<YxDbDatabase> makeDatabase();
    static YxDbDatabaseData& data(YxDbDatabase& database) { return *database.m_data; }
    static YxDbObjectData& data(YxDbObject& object) { return *object.m_data; }
    static const YxDbObjectData& data(const YxDbObject& object) { return *object.m_data; }
    /// The database owns the object from now on.
    static YxDbObjectId addToDatabase(YxDbDatabase& database, std::unique_ptr<YxDbObject> object);
    /// Erased objects stay in memory and do not open.
    static void erase(const YxDbObjectId& id, bool erased = true);
    /// The object of an id, erased or not, without opening it; null for the null id.
    static YxDbObject* peek(const YxDbObjectId& id);
    /// Another object takes the place of a resident one: same id, same reactors. The former one is freed.
    static void replaceObject(const YxDbObjectId& id, std::unique_ptr<YxDbObject> successor);
    static bool isErased(const YxDbObjectId& id);
    static int openCount(const YxDbObject& object);
    /// Of all objects of a database.
    static int openCount(const YxDbDatabase& database);
    static bool isWritable(const YxDbObject& object);
    static std::vector<YxDbObjectId> allIds(const YxDbDatabase& database);
    /// From now on the database tells its changes; null: to nobody.
    static void tellChanges(YxDbDatabase& database, HostChanges* changes);
    /// An object or a constraint is about to change. Nothing happens when nobody wants to know.
    static void tellChange(const YxDbObject& object);
    static void tellChange(const YxGeomConstraint& constraint);
    static void tellDeletion(const YxGeomConstraint& constraint);
    /// The places of the database's constraint groups, also of those that were erased.
    static std::span<YxDbStub* const> groupStubs(const YxDbDatabase& database);

    // Reactors and dependencies
    static void addReactor(YxDbObject& object, const YxDbObjectId& reactor);
    static std::vector<YxDbObjectId> reactors(const YxDbObject& object);
    /// How often a reactor stands among the object's.
    static std::size_t reactorCount(const YxDbObject& object, const YxDbObjectId& reactor);
    static std::unique_ptr<YxDbAssocGeomDependency> makeGeomDependency(const YxDbObjectId& action);
    /// Erases a geometry dependency with the geometry on it, which must carry no constraint any more.
    static void eraseDependency(const YxDbObjectId& dependency);
    static std::unique_ptr<YxDbAssocEdgePersSubentId> makeEdgeId(int index1, int index2);
    static int startVertexId(const YxDbAssocEdgePersSubentId& id) { return id.m_index1; }
    static int endVertexId(const YxDbAssocEdgePersSubentId& id) { return id.m_index2; }
    static unsigned int subentType(const YxDbAssocGeomDependency& dependency) { return dependency.m_subentType; }
    static void setSubentType(YxDbAssocGeomDependency& dependency, unsigned int type) {
        dependency.m_subentType = type;
    }
    static void setPersistentId(YxDbAssocGeomDependency& dependency, std::unique_ptr<YxDbAssocPersSubentId> id);
    static YxDbObjectId objectOf(const YxDbAssocDependency& dependency) { return dependency.m_object; }
    static YxDbObjectId actionOf(const YxDbAssocDependency& dependency) { return dependency.m_owningAction; }
    static const YxDbAssocPersSubentId* persistentId(const YxDbAssocGeomDependency& dependency) {
        return dependency.m_persistentId.get();
    }
    static void setObject(YxDbAssocDependency& dependency, const YxDbObjectId& object) { dependency.m_object = object; }
    static YxDbAssocStatus status(const YxDbAssocDependency& dependency) { return dependency.m_status; }
    static void setStatus(YxDbAssocDependency& dependency, YxDbAssocStatus status) { dependency.m_status = status; }
    static YxDbAssocStatus status(const YxDbAssocAction& action) { return action.m_status; }
    static void setStatus(YxDbAssocAction& action, YxDbAssocStatus status) { action.m_status = status; }
    static const YxArray<YxDbObjectId>& path(const YxDbCompoundObjectId& id) { return id.m_path; }

    // Groups
    static unsigned int nodeId(const YxGraphNode& node) { return node.m_nodeId; }
    static unsigned int curveId(const YxConstrainedImplicitPoint& point) { return point.m_curveId; }
    static YxDb::ImplicitPointType pointType(const YxConstrainedImplicitPoint& point) { return point.m_pointType; }
    static void setPointType(YxConstrainedImplicitPoint& point, YxDb::ImplicitPointType type);
    static int pointIndex(const YxConstrainedImplicitPoint& point) { return point.m_pointIndex; }
    static bool isPoint(const YxConstrainedImplicitPoint& point, YxDb::ImplicitPointType type, int pointIndex) {
        return point.m_pointType == type && point.m_pointIndex == pointIndex;
    }
    static bool isInternal(const YxGeomConstraint& constraint) { return constraint.m_internal; }
    static std::unique_ptr<YxDbAssoc2dConstraintGroup> makeGroup();
    static YxDbConstraintGroupData& data(YxDbAssoc2dConstraintGroup& group) { return *group.m_groupData; }
    static const YxDbConstraintGroupData& data(const YxDbAssoc2dConstraintGroup& group) { return *group.m_groupData; }
    template <class T>
    static T& addGeometry(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency) {
        return static_cast<T&>(addGeometry(group, std::make_unique<T>(), dependency));
    }
    static YxConstrainedImplicitPoint& addImplicitPoint(YxDbAssoc2dConstraintGroup& group,
                                                        const YxConstrainedGeometry& curve,
                                                        YxDb::ImplicitPointType type, int pointIndex);
    template <class T>
    static T& addConstraint(YxDbAssoc2dConstraintGroup& group, const std::vector<YxConstrainedGeometry*>& geometries) {
        return static_cast<T&>(addConstraint(group, std::make_unique<T>(), geometries));
    }
    static void setInternal(YxGeomConstraint& constraint, bool internal) { constraint.m_internal = internal; }
    static void setImplied(YxGeomConstraint& constraint, bool implied) { constraint.m_implied = implied; }
    static bool isImplied(const YxGeomConstraint& constraint) { return constraint.m_implied; }
    static void own(YxCompositeConstraint& composite, YxGeomConstraint& member);
    static void setDimension(YxDimensionConstraint& dimension, YxDimensionConstraint::Kind kind, double value,
                             bool driving);
    static void setRole(YxInternalConstraint& constraint, std::string role) { constraint.m_role = std::move(role); }
    static const std::string& role(const YxInternalConstraint& constraint) { return constraint.m_role; }
    static const YxCompositeConstraint* owner(const YxGeomConstraint& constraint) { return constraint.m_owner; }
    static bool isDeleted(const YxGeomConstraint& constraint) { return constraint.m_deleted; }
    static const std::vector<YxConstrainedGeometry*>& geometries(const YxGeomConstraint& constraint) {
        return constraint.m_geometries;
    }
    static const std::vector<YxGeomConstraint*>& members(const YxCompositeConstraint& composite) {
        return withoutDeleted(composite.m_members, composite.m_deletedCount);
    }
    /// Deleted constraints stay in memory until the group goes; deleting one twice is an error. Takes the time of the
    /// constraint's own geometries on average, however many others hang on them.
    static Yxrt::ErrorStatus deleteConstraint(YxDbAssoc2dConstraintGroup& group, YxGeomConstraint* constraint);
    /// Constraints and geometries alive in the group, in its order.
    static std::vector<YxGeomConstraint*> constraints(const YxDbAssoc2dConstraintGroup& group);
    static const std::vector<YxConstrainedGeometry*>& geometries(const YxDbAssoc2dConstraintGroup& group);
    static YxConstrainedGeometry* geometryOn(const YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency);
    static YxConstrainedImplicitPoint* implicitPoint(const YxDbAssoc2dConstraintGroup& group,
                                                     const YxConstrainedGeometry& curve, YxDb::ImplicitPointType type,
                                                     int pointIndex);
    /// The implicit points of a curve, in no particular order.
    static std::vector<YxConstrainedImplicitPoint*> pointsOf(const YxDbAssoc2dConstraintGroup& group,
                                                             const YxConstrainedGeometry& curve);
    /// True when a constraint holds on the geometry or on one of its implicit points.
    static bool isConstrained(const YxDbAssoc2dConstraintGroup& group, const YxConstrainedGeometry& geometry);
    /// The curve that carries an implicit point; null when it has left the group.
    static YxConstrainedGeometry* curveOf(const YxDbAssoc2dConstraintGroup& group,
                                          const YxConstrainedImplicitPoint& point);
    static const YxDbObjectId& dependencyOf(const YxConstrainedGeometry& geometry) { return geometry.m_dependency; }
    /// The same, but for an implicit point the dependency of the curve that defines it.
    static const YxDbObjectId& standsOn(const YxConstrainedGeometry& geometry);
    static YxDbAssoc2dConstraintGroup* groupOf(const YxConstrainedGeometry& geometry) { return geometry.m_group; }
    static const std::vector<YxGeomConstraint*>& connected(const YxConstrainedGeometry& geometry) {
        return withoutDeleted(geometry.m_connected, geometry.m_deletedCount);
    }
    /// The composite that owns the constraint, directly or not, else the constraint itself.
    static YxGeomConstraint* topLevel(YxGeomConstraint& constraint);
    static AssocConstraintHeader* header(YxDbAssoc2dConstraintGroup& group);

    // Evaluation
    static ConverterRecords& records(LvEvaDataConverter& converter);
    static const std::unordered_set<YxDbEntity*>& adopted(const AssocConstraintHeader& header);
    static const YxArray<YxDbObjectId>& editedIds(const ConstraintDynamicEdit& edit) { return edit.m_editedIds; }
    static const YxArray<void*>& sourceEntities(const ConstraintDynamicEdit& edit) { return edit.m_sourceEntities; }

private:
    using Constraints = std::vector<YxGeomConstraint*>;
    static const Constraints& withoutDeleted(Constraints& listed, std::size_t& deletedCount);
    /// One of those listed was deleted: half of them at most may be.
    static void countDeleted(Constraints& listed, std::size_t& deletedCount);
    static YxConstrainedGeometry& addGeometry(YxDbAssoc2dConstraintGroup& group,
                                              std::unique_ptr<YxConstrainedGeometry> geometry,
                                              const YxDbObjectId& dependency);
    static YxGeomConstraint& addConstraint(YxDbAssoc2dConstraintGroup& group,
                                           std::unique_ptr<YxGeomConstraint> constraint,
                                           const std::vector<YxConstrainedGeometry*>& geometries);
};

}  // namespace holdfast
