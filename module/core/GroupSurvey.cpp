#include "core/GroupSurvey.h"

#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbEntity.h>

#include <algorithm>

namespace holdfast::module {
namespace {

// The constraint as the rules take it: a composite in place of its member. Null for an internal one.
YxGeomConstraint* topLevel(YxGeomConstraint* constraint) {
    if (constraint == nullptr)
        return nullptr;
    YxCompositeConstraint* owner = constraint->getOwningCompositeConstraint();
    YxGeomConstraint* top = owner != nullptr ? owner : constraint;
    return top->isInternal() ? nullptr : top;
}

bool isNamed(const YxConstrainedGeometry& geometry) {
    YxArray<YxGeomConstraint*> connected;
    geometry.getConnectedConstraints(connected);
    return std::any_of(connected.begin(), connected.end(),
                       [](YxGeomConstraint* constraint) { return topLevel(constraint) != nullptr; });
}

// The constraints that name each geometry, in order.
void addConnected(const YxArray<YxConstrainedGeometry*>& geometries, YxArray<YxGeomConstraint*>& constraints) {
    OnceList<YxGeomConstraint> once(constraints);
    YxArray<YxGeomConstraint*> connected;
    for (const YxConstrainedGeometry* geometry : geometries) {
        geometry->getConnectedConstraints(connected);
        for (YxGeomConstraint* constraint : connected) {
            if (YxGeomConstraint* top = topLevel(constraint))
                once.add(top);
        }
    }
}

const YxGeomConstraint* firstOwnedCoincidence(const YxCompositeConstraint& composite) {
    YxArray<YxGeomConstraint*> owned;
    composite.getOwnedConstraints(owned);
    for (const YxGeomConstraint* member : owned) {
        if (member != nullptr && member->isKindOf(YxPointCoincidenceConstraint::desc()))
            return member;
    }
    return nullptr;
}

}  // namespace

YxConstrainedGeometry* GroupSurvey::geometryOn(const YxDbAssocGeomDependency* dependency) const {
    YxConstrainedGeometry* geometry = nullptr;
    m_group.getConstrainedGeometry(dependency, geometry, nullptr, -1, false);
    return geometry;
}

std::span<YxConstrainedImplicitPoint* const> GroupSurvey::pointsOf(const YxConstrainedGeometry& geometry) {
    return m_points.of(geometry.nodeId());
}

void GroupSurvey::expect(const YxArray<YxDbAssocGeomDependency*>& dependencies) {
    for (const YxDbAssocGeomDependency* dependency : dependencies) {
        if (dependency == nullptr)
            continue;
        if (const YxConstrainedGeometry* geometry = geometryOn(dependency))
            m_points.expect(geometry->nodeId());
    }
}

void GroupSurvey::addWithPoints(YxConstrainedGeometry& geometry, GeometryList& geometries) {
    geometries.add(&geometry);
    for (YxConstrainedImplicitPoint* point : pointsOf(geometry))
        geometries.add(point);
}

void GroupSurvey::constraintsOn(const YxDbAssocGeomDependency* dependency, YxArray<YxGeomConstraint*>& constraints) {
    constraints.setLogicalLength(0);
    YxConstrainedGeometry* geometry = dependency != nullptr ? geometryOn(dependency) : nullptr;
    if (geometry == nullptr)
        return;
    YxArray<YxConstrainedGeometry*> geometries;
    GeometryList once(geometries);
    addWithPoints(*geometry, once);
    addConnected(geometries, constraints);
}

YxArray<YxConstrainedGeometry*> GroupSurvey::geometriesOnEntity(const YxDbObjectId& entityId) const {
    YxArray<YxConstrainedGeometry*> standing;
    const auto entity = openAs<YxDbEntity>(entityId);
    if (entity.isNull())
        return standing;
    YxArray<YxDbObjectId> dependencyIds;
    YxDbAssocDependency::getDependenciesOnObject(entity.get(), true, true, dependencyIds);
    for (const YxDbObjectId& id : dependencyIds) {
        const auto dependency = openAs<YxDbAssocGeomDependency>(id);
        if (YxConstrainedGeometry* geometry = dependency ? geometryOn(dependency.get()) : nullptr)
            appendGrowing(standing, geometry);
    }
    return standing;
}

void GroupSurvey::addConstraintsOnEntity(const YxDbObjectId& entityId, YxArray<YxGeomConstraint*>& constraints) {
    const YxArray<YxConstrainedGeometry*> standing = geometriesOnEntity(entityId);
    for (const YxConstrainedGeometry* geometry : standing)
        m_points.expect(geometry->nodeId());
    YxArray<YxConstrainedGeometry*> geometries;
    GeometryList once(geometries);
    for (YxConstrainedGeometry* geometry : standing)
        addWithPoints(*geometry, once);
    addConnected(geometries, constraints);
}

// Curves first: only when none of them is named, the group is walked for their points.
bool GroupSurvey::hasConstraintsOnEntity(const YxDbObjectId& entityId) {
    const YxArray<YxConstrainedGeometry*> standing = geometriesOnEntity(entityId);
    for (const YxConstrainedGeometry* geometry : standing) {
        if (isNamed(*geometry))
            return true;
        m_points.expect(geometry->nodeId());
    }
    return std::any_of(standing.begin(), standing.end(), [&](const YxConstrainedGeometry* geometry) {
        const auto points = pointsOf(*geometry);
        return std::any_of(points.begin(), points.end(), [](const auto* point) { return isNamed(*point); });
    });
}

void GroupSurvey::implicitPointsOn(const YxDbAssocGeomDependency& dependency, const YxGeomConstraint& constraint,
                                   YxArray<YxConstrainedGeometry*>& points) {
    points.setLogicalLength(0);
    const YxGeomConstraint* holder = pointHolder(constraint);
    if (holder == nullptr)
        return;
    YxArray<YxConstrainedGeometry*> geometries;
    holder->getConstrainedGeometries(geometries);
    for (YxConstrainedGeometry* geometry : geometries) {
        if (isPointOn(geometry, dependency))
            points.append(geometry);
    }
}

bool GroupSurvey::isPointOn(const YxConstrainedGeometry* geometry, const YxDbAssocGeomDependency& dependency) const {
    if (geometry == nullptr || !geometry->isKindOf(YxConstrainedImplicitPoint::desc()))
        return false;
    const auto* point = static_cast<const YxConstrainedImplicitPoint*>(geometry);
    const YxGraphNode* curve = m_group.getGroupNodePtr(point->constrainedCurveId());
    if (curve == nullptr || !curve->isKindOf(YxConstrainedCurve::desc()))
        return false;
    const auto standsOn = openAs<YxDbObject>(static_cast<const YxConstrainedCurve*>(curve)->geomDependencyId());
    return standsOn && standsOn->objectId() == dependency.objectId();
}

// A composite over many segments is asked once for each of them: its members are listed the first time only.
const YxGeomConstraint* GroupSurvey::pointHolder(const YxGeomConstraint& constraint) {
    if (!constraint.isKindOf(YxCompositeConstraint::desc()))
        return &constraint;
    const auto known = m_firstCoincidences.find(&constraint);
    if (known != m_firstCoincidences.end())
        return known->second;
    const auto& composite = static_cast<const YxCompositeConstraint&>(constraint);
    return m_firstCoincidences[&constraint] = firstOwnedCoincidence(composite);
}

}  // namespace holdfast::module
