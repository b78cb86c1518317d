#include "host/model/HostBuilder.h"

#include <algorithm>
#include <stdexcept>

#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbCircle.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbMText.h>
#include <yxdb/YxDbPoint.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>
#include <yxdb/YxDbText.h>
#include <yxdb/YxDbXline.h>

#include "host/src/EntityAccess.h"
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

/// Zeros for a dependency without the name of a segment.
std::tuple<int, int> nameOf(const YxDbAssocGeomDependency& dependency) {
    const YxDbAssocPersSubentId* name = HostAccess::persistentId(dependency);
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return {0, 0};
    const auto* edge = static_cast<const YxDbAssocEdgePersSubentId*>(name);
    return {edge->index1(), edge->index2()};
}

/// The name that a dependency on the part has; zeros for what is no polyline.
std::tuple<int, int> nameOfPart(const YxDbEntity& entity, int segment) {
    if (!entity.isKindOf(YxDbPolyline::desc()))
        return {0, 0};
    const auto& polyline = static_cast<const YxDbPolyline&>(entity);
    const auto first = static_cast<std::size_t>(segmentOf(entity, segment) - 1);
    const std::size_t second = (first + 1) % EntityAccess::vertexCount(polyline);
    return {EntityAccess::vertex(polyline, first).identifier, EntityAccess::vertex(polyline, second).identifier};
}

using AddGeometry = YxConstrainedGeometry& (*)(YxDbAssoc2dConstraintGroup&, const YxDbObjectId&);

template <class T>
YxConstrainedGeometry& addAs(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency) {
    return HostAccess::addGeometry<T>(group, dependency);
}

bool isArcSegment(const YxDbEntity& entity, int segment) {
    const auto& polyline = static_cast<const YxDbPolyline&>(entity);
    return EntityAccess::vertex(polyline, static_cast<std::size_t>(segment - 1)).bulge != 0.0;
}

bool isClosedEllipse(const YxDbEntity& entity) {
    const EllipseData data = EntityAccess::ellipse(static_cast<const YxDbEllipse&>(entity));
    return std::abs(data.endAngle - data.startAngle) >= 2.0 * std::numbers::pi - 1e-12 ||
           data.endAngle == data.startAngle;
}

AddGeometry geometryClassOf(const YxDbEntity& entity, int segment) {
    if (entity.isKindOf(YxDbPolyline::desc()))
        return isArcSegment(entity, segment) ? &addAs<YxConstrainedArc> : &addAs<YxConstrainedBoundedLine>;
    if (entity.isKindOf(YxDbEllipse::desc()))
        return isClosedEllipse(entity) ? &addAs<YxConstrainedEllipse> : &addAs<YxConstrainedBoundedEllipse>;
    struct Row {
        const YxRxClass* type;
        AddGeometry add;
    };
    const Row rows[] = {
        {YxDbLine::desc(), &addAs<YxConstrainedBoundedLine>}, {YxDbRay::desc(), &addAs<YxConstrainedRay>},
        {YxDbXline::desc(), &addAs<YxConstrainedLine>},       {YxDbCircle::desc(), &addAs<YxConstrainedCircle>},
        {YxDbArc::desc(), &addAs<YxConstrainedArc>},          {YxDbSpline::desc(), &addAs<YxConstrainedSpline>},
        {YxDbPoint::desc(), &addAs<YxConstrainedPoint>},      {YxDbText::desc(), &addAs<YxConstrainedDatumLine>},
        {YxDbMText::desc(), &addAs<YxConstrainedDatumLine>},
    };
    for (const Row& row : rows)
        if (entity.isKindOf(row.type))
            return row.add;
    refuse(std::string("no constraint can hold on a ") + entity.isA()->name());
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

HostBuilder::EntityParts& HostBuilder::partsOf(YxDbEntity& entity) {
    EntityParts& known = m_parts[&entity];
    const std::size_t changes = HostAccess::data(entity).reactors.changes();
    if (known.changes == changes)
        return known;
    known.parts.clear();
    for (const YxDbObjectId& reactor : HostAccess::reactors(entity))
        if (auto* dependency = asGeomDependency(HostAccess::peek(reactor)))
            known.parts.emplace(std::tuple_cat(std::tuple(groupOf(*dependency)), nameOf(*dependency)), dependency);
    known.changes = changes;
    return known;
}

YxDbAssocGeomDependency* HostBuilder::dependency(const YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    YxDbEntity& entity = entityOf(place.entity);
    const auto& parts = partsOf(entity).parts;
    const auto found = parts.find(std::tuple_cat(std::tuple(&group), nameOfPart(entity, place.segment)));
    return found == parts.end() ? nullptr : found->second;
}

YxDbAssocGeomDependency& HostBuilder::addBareDependency(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    YxDbEntity& entity = entityOf(place.entity);
    const int segment = segmentOf(entity, place.segment);
    std::unique_ptr<YxDbAssocGeomDependency> made = HostAccess::makeGeomDependency(group.objectId());
    YxDbAssocGeomDependency& dependency = *made;
    if (entity.isKindOf(YxDbPolyline::desc())) {
        auto& polyline = static_cast<YxDbPolyline&>(entity);
        const auto first = static_cast<std::size_t>(segment - 1);
        const std::size_t second = (first + 1) % EntityAccess::vertexCount(polyline);
        const int firstId = referencedIdentifier(polyline, first);
        HostAccess::setPersistentId(dependency,
                                    HostAccess::makeEdgeId(firstId, referencedIdentifier(polyline, second)));
    }
    const YxDbObjectId id = add(std::move(made));
    EntityParts& known = partsOf(entity);
    HostAccess::setObject(dependency, place.entity);
    HostAccess::addReactor(entity, id);
    known.parts.emplace(std::tuple_cat(std::tuple(&group), nameOf(dependency)), &dependency);
    known.changes = HostAccess::data(entity).reactors.changes();
    return dependency;
}

YxConstrainedGeometry& HostBuilder::geometry(YxDbAssoc2dConstraintGroup& group, const BuiltPlace& place) {
    YxDbAssocGeomDependency* on = dependency(group, place);
    YxConstrainedGeometry* curve = on == nullptr ? nullptr : HostAccess::geometryOn(group, on->objectId());
    if (curve == nullptr) {
        const YxDbEntity& entity = entityOf(place.entity);
        const AddGeometry addOfKind = geometryClassOf(entity, segmentOf(entity, place.segment));
        if (on == nullptr)
            on = &addBareDependency(group, place);
        curve = &addOfKind(group, on->objectId());
    }
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

int HostBuilder::addCornerCoincidences(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& polyline) {
    const YxDbEntity& entity = entityOf(polyline);
    const int count = partCount(entity, YxDb::kEdgeSubentType);
    const auto segments = segmentGeometries(group, static_cast<const YxDbPolyline&>(entity));
    const bool closed = EntityAccess::isClosed(static_cast<const YxDbPolyline&>(entity));
    int added = 0;
    for (int i = 0; i < count; ++i) {
        const int next = (i + 1) % count;
        if ((next == 0 && !closed) || next == i)
            continue;
        YxConstrainedGeometry* here = segments[static_cast<std::size_t>(i)];
        YxConstrainedGeometry* there = segments[static_cast<std::size_t>(next)];
        if (here == nullptr || there == nullptr)
            continue;
        auto pointOn = [&](YxConstrainedGeometry& curve, YxDb::ImplicitPointType type) {
            YxConstrainedImplicitPoint* point = HostAccess::implicitPoint(group, curve, type, -1);
            return point != nullptr ? point : &HostAccess::addImplicitPoint(group, curve, type, -1);
        };
        YxConstrainedImplicitPoint* end = pointOn(*here, YxDb::kEndImplicit);
        YxConstrainedImplicitPoint* start = pointOn(*there, YxDb::kStartImplicit);
        const auto& connected = HostAccess::connected(*end);
        const bool tied = std::any_of(connected.begin(), connected.end(), [&](const YxGeomConstraint* constraint) {
            const auto& geometries = HostAccess::geometries(*constraint);
            return constraint->isKindOf(YxPointCoincidenceConstraint::desc()) &&
                   std::find(geometries.begin(), geometries.end(), start) != geometries.end();
        });
        if (tied)
            continue;
        constrain<YxPointCoincidenceConstraint>(group, {end, start}).setIsImplied(true);
        ++added;
    }
    return added;
}

std::vector<YxConstrainedGeometry*> segmentGeometries(const YxDbAssoc2dConstraintGroup& group,
                                                      const YxDbPolyline& polyline) {
    std::vector<YxConstrainedGeometry*> segments(EntityAccess::segmentCount(polyline), nullptr);
    const SegmentNames names(polyline);
    for (const YxDbObjectId& reactor : HostAccess::reactors(polyline)) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        if (candidate == nullptr || !candidate->isKindOf(YxDbAssocGeomDependency::desc()))
            continue;
        const int segment = names.segmentOf(static_cast<const YxDbAssocGeomDependency&>(*candidate));
        if (segment >= 0)
            segments[static_cast<std::size_t>(segment)] = HostAccess::geometryOn(group, reactor);
    }
    return segments;
}

}  // namespace holdfast
