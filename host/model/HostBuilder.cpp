#include "host/model/HostBuilder.h"

#include <stdexcept>

#include "host/model/entities/EntityAccess.h"
#include "host/model/entities/GeometryMaking.h"
#include "host/src/YxDbConstraints/Subentities.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

namespace {

/// A dependency that is none on geometry, as hosts have for other purposes.
class OtherDependency : public YxDbAssocDependency {
public:
    OtherDependency() = default;
};

[[noreturn]] void refuse(const std::string& text) {
    throw std::invalid_argument(text);
}

YxDbEntity& entityOf(const YxDbObjectId& id) {
    YxDbObject* object = HostAccess::peek(id);
    if (object == nullptr || !object->isKindOf(YxDbEntity::desc()))
        refuse("a constraint needs an entity that lives in the database; add the entity first");
    return static_cast<YxDbEntity&>(*object);
}

int segmentOf(const YxDbEntity& entity, int segment) {
    if (!entity.isKindOf(YxDbPolyline::desc()))
        return 1;
    const int count = partCount(entity, YxDb::kEdgeSubentType);
    if (segment < 1 || segment > count)
        refuse("segment " + std::to_string(segment) + " of a polyline with " + std::to_string(count) +
               " segments; they are counted from 1");
    return segment;
}

YxDbAssocGeomDependency* asGeomDependency(YxDbObject* object) {
    const bool is = object != nullptr && object->isKindOf(YxDbAssocGeomDependency::desc());
    return is ? static_cast<YxDbAssocGeomDependency*>(object) : nullptr;
}

const YxDbAssoc2dConstraintGroup* groupOf(const YxDbAssocGeomDependency& dependency) {
    return static_cast<const YxDbAssoc2dConstraintGroup*>(HostAccess::peek(HostAccess::actionOf(dependency)));
}

bool isText(const YxDbEntity& entity) {
    return entity.isKindOf(YxDbText::desc()) || entity.isKindOf(YxDbMText::desc());
}

/// Numbers the ends of a segment where they have no number yet, and names it by them.
std::unique_ptr<YxDbAssocEdgePersSubentId> segmentName(YxDbPolyline& polyline, int segment) {
    const auto first = static_cast<std::size_t>(segment - 1);
    const std::size_t second = (first + 1) % EntityAccess::vertexCount(polyline);
    const int firstId = referencedIdentifier(polyline, first);
    return HostAccess::makeEdgeId(firstId, referencedIdentifier(polyline, second));
}

}  // namespace

YxDbObjectId HostBuilder::add(std::unique_ptr<YxDbObject> object) {
    return HostAccess::addToDatabase(*m_database, std::move(object));
}

YxDbObjectId HostBuilder::addGroup() {
    return add(HostAccess::makeGroup());
}

YxDbAssoc2dConstraintGroup& HostBuilder::group(const YxDbObjectId& id) {
    YxDbObject* object = HostAccess::peek(id);
    if (object == nullptr || !object->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        refuse("the id names no constraint group");
    return static_cast<YxDbAssoc2dConstraintGroup&>(*object);
}

HostBuilder::PartKey HostBuilder::keyOf(const YxDbAssocGeomDependency& dependency) {
    const YxDbAssocPersSubentId* name = HostAccess::persistentId(dependency);
    const unsigned int type = HostAccess::subentType(dependency);
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return {groupOf(dependency), type, 0, 0};
    const auto& edge = static_cast<const YxDbAssocEdgePersSubentId&>(*name);
    return {groupOf(dependency), type, HostAccess::startVertexId(edge), HostAccess::endVertexId(edge)};
}

HostBuilder::PartKey HostBuilder::keyOf(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& entity,
                                        const BuiltPlace& place) {
    if (!entity.isKindOf(YxDbPolyline::desc()))
        return {&group, place.isPosition ? YxDb::kVertexSubentType : YxDb::kEdgeSubentType, 0, 0};
    const auto& polyline = static_cast<const YxDbPolyline&>(entity);
    const auto first = static_cast<std::size_t>(segmentOf(entity, place.segment) - 1);
    const std::size_t second = (first + 1) % EntityAccess::vertexCount(polyline);
    return {&group, YxDb::kEdgeSubentType, EntityAccess::vertex(polyline, first).identifier,
            EntityAccess::vertex(polyline, second).identifier};
}

HostBuilder::EntityParts& HostBuilder::partsOf(YxDbEntity& entity) {
    EntityParts& known = m_parts[&entity];
    const std::size_t changes = HostAccess::data(entity).reactors.changes();
    if (known.changes == changes)
        return known;
    known.parts.clear();
    for (const YxDbObjectId& reactor : HostAccess::reactors(entity))
        if (auto* dependency = asGeomDependency(HostAccess::peek(reactor)))
            known.parts.emplace(keyOf(*dependency), dependency);
    known.changes = changes;
    return known;
}

YxDbAssocGeomDependency* HostBuilder::dependency(const YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    YxDbEntity& entity = entityOf(place.entity);
    const auto& parts = partsOf(entity).parts;
    const auto found = parts.find(keyOf(group, entity, place));
    return found == parts.end() ? nullptr : found->second;
}

YxDbAssocGeomDependency& HostBuilder::addBareDependency(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    YxDbEntity& entity = entityOf(place.entity);
    const int segment = segmentOf(entity, place.segment);
    std::unique_ptr<YxDbAssocGeomDependency> made = HostAccess::makeGeomDependency(HostAccess::idOf(group));
    YxDbAssocGeomDependency& dependency = *made;
    if (entity.isKindOf(YxDbPolyline::desc()))
        HostAccess::setPersistentId(dependency, segmentName(static_cast<YxDbPolyline&>(entity), segment));
    if (place.isPosition)
        HostAccess::setSubentType(dependency, YxDb::kVertexSubentType);
    const YxDbObjectId id = add(std::move(made));
    EntityParts& known = partsOf(entity);
    HostAccess::setObject(dependency, place.entity);
    HostAccess::addReactor(entity, id);
    known.parts.emplace(keyOf(dependency), &dependency);
    known.changes = HostAccess::data(entity).reactors.changes();
    return dependency;
}

YxConstrainedGeometry& HostBuilder::addGeometry(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place,
                                                const YxDbObjectId& dependency) {
    const YxDbEntity& entity = entityOf(place.entity);
    if (!place.isPosition)
        return addGeometryOf(entity, segmentOf(entity, place.segment), group, dependency);
    return HostAccess::addGeometry<YxConstrainedPoint>(group, dependency);
}

YxConstrainedGeometry& HostBuilder::geometry(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    if (place.isPosition && !isText(entityOf(place.entity)))
        refuse("only a text or mtext has a position of its own; name a point of the curve instead");
    YxDbAssocGeomDependency* on = dependency(group, place);
    if (on == nullptr)
        on = &addBareDependency(group, place);
    const YxDbObjectId id = HostAccess::idOf(*on);
    YxConstrainedGeometry* curve = HostAccess::geometryOn(group, id);
    if (curve == nullptr)
        curve = &addGeometry(group, place, id);
    if (!place.isPoint || curve->isKindOf(YxConstrainedPoint::desc()))
        return *curve;
    YxConstrainedImplicitPoint* point = HostAccess::implicitPoint(group, *curve, place.pointType, place.pointIndex);
    return point != nullptr ? *point : HostAccess::addImplicitPoint(group, *curve, place.pointType, place.pointIndex);
}

YxDbObjectId HostBuilder::addOtherReactor(const YxDbObjectId& entity) {
    const YxDbObjectId id = add(std::make_unique<OtherDependency>());
    HostAccess::setObject(static_cast<YxDbAssocDependency&>(*HostAccess::peek(id)), entity);
    HostAccess::addReactor(entityOf(entity), id);
    return id;
}

}  // namespace holdfast
