#pragma once

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "host/model/state/HostAccess.h"

class YxDbPolyline;

namespace holdfast {

/// A place on a resident entity at which a constraint can hold.
struct BuiltPlace {
    YxDbObjectId entity;
    int segment = 0;       ///< of a polyline, counted from 1; 0 for other entities
    bool isPoint = false;  ///< an implicit point of the curve rather than the curve itself
    YxDb::ImplicitPointType pointType = YxDb::kStartImplicit;
    int pointIndex = -1;      ///< control points
    bool isPosition = false;  ///< the position of a text as a point of its own, apart from its direction line
};

/// Adds entities, groups, constrained geometry and constraints to a database, as a host does. What cannot be built is
/// refused with std::invalid_argument, whose text says what is wrong and how to mend it.
class HostBuilder {
public:
    explicit HostBuilder(YxDbDatabase& database) : m_database(&database) {}

    YxDbObjectId add(std::unique_ptr<YxDbObject> object);
    /// A group for the plane of the drawing.
    YxDbObjectId addGroup();
    static YxDbAssoc2dConstraintGroup& group(const YxDbObjectId& id);

    /// The geometry at a place, made with its dependency when the group has none there yet.
    YxConstrainedGeometry& geometry(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place);
    /// A dependency of the group on an entity or a segment of it, without constrained geometry.
    YxDbAssocGeomDependency& addBareDependency(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place);
    /// A reactor that is no geometry dependency.
    YxDbObjectId addOtherReactor(const YxDbObjectId& entity);

    /// A constraint of class T on geometries in their order. Top-level, not internal, not implied.
    template <class T>
    T& constrain(YxDbAssoc2dConstraintGroup& group, const std::vector<YxConstrainedGeometry*>& geometries) {
        return HostAccess::addConstraint<T>(group, geometries);
    }
    /// The coincidence, implied but not internal, that ties two neighbouring constrained segments of a polyline, for
    /// every corner that has none yet. Returns how many were added.
    int addCornerCoincidences(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& polyline);

    /// The dependency of the group on the place, or null. Takes constant time while nobody else changes the entity's
    /// reactors, else the time of one walk over them.
    YxDbAssocGeomDependency* dependency(const YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place);
    /// For an entity that is about to be freed: another one may come to lie where it was.
    void forget(const YxDbEntity& entity) { m_parts.erase(&entity); }

private:
    /// The group, the kind of part and its persistent name: vertex identifiers for a segment, else zeros.
    using PartKey = std::tuple<const YxDbAssoc2dConstraintGroup*, unsigned int, int, int>;
    struct EntityParts {
        std::size_t changes = 0;  // of the reactor list when the parts were listed
        std::map<PartKey, YxDbAssocGeomDependency*> parts;
    };
    YxConstrainedGeometry& addGeometry(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place,
                                       const YxDbObjectId& dependency);
    EntityParts& partsOf(YxDbEntity& entity);
    static PartKey keyOf(const YxDbAssocGeomDependency& dependency);
    static PartKey keyOf(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& entity, const BuiltPlace& place);

    YxDbDatabase* m_database;
    std::unordered_map<const YxDbEntity*, EntityParts> m_parts;
};

/// The geometry of the group on each segment of a polyline, null where there is none.
std::vector<YxConstrainedGeometry*> segmentGeometries(const YxDbAssoc2dConstraintGroup& group,
                                                      const YxDbPolyline& polyline);

}  // namespace holdfast
