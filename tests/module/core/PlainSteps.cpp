#include "tests/module/core/PlainSteps.h"

#include <yxdb/YxDbPolyline.h>

#include <algorithm>

namespace holdfast::plain {
namespace {

template <class T, class U>
const T* as(const U* object) {
    return object != nullptr && object->isKindOf(T::desc()) ? static_cast<const T*>(object) : nullptr;
}

YxConstrainedGeometry* geometryOn(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency) {
    YxConstrainedGeometry* geometry = nullptr;
    group.getConstrainedGeometry(&dependency, geometry);
    return geometry;
}

std::vector<const YxConstrainedGeometry*> withPoints(const YxDbAssoc2dConstraintGroup& group,
                                                     const YxConstrainedGeometry& curve) {
    std::vector<const YxConstrainedGeometry*> list = {&curve};
    YxArray<YxConstrainedGeometry*> all;
    group.getConstrainedGeometries(all);
    for (const YxConstrainedGeometry* geometry : all) {
        const auto* point = as<YxConstrainedImplicitPoint>(geometry);
        if (point != nullptr && point->constrainedCurveId() == curve.nodeId())
            list.push_back(point);
    }
    return list;
}

void addConnected(const std::vector<const YxConstrainedGeometry*>& geometries, Constraints& constraints) {
    for (const YxConstrainedGeometry* geometry : geometries) {
        YxArray<YxGeomConstraint*> connected;
        geometry->getConnectedConstraints(connected);
        for (YxGeomConstraint* constraint : connected) {
            if (YxGeomConstraint* owner = constraint->getOwningCompositeConstraint())
                constraint = owner;
            if (!constraint->isInternal())
                addOnce(constraints, constraint);
        }
    }
}

bool moved(const Points& before, const Points& after, std::size_t which) {
    return !before[which].isEqualTo(after[which]);
}

}  // namespace

void addOnce(Constraints& list, YxGeomConstraint* constraint) {
    if (std::find(list.begin(), list.end(), constraint) == list.end())
        list.push_back(constraint);
}

std::vector<YxDbAssocGeomDependency*> dependenciesOf(const YxDbEntity& entity) {
    std::vector<YxDbAssocGeomDependency*> dependencies;
    for (const YxDbObjectId& id : HostAccess::reactors(entity)) {
        YxDbObject* object = HostAccess::peek(id);
        if (object->isKindOf(YxDbAssocGeomDependency::desc()))
            dependencies.push_back(static_cast<YxDbAssocGeomDependency*>(object));
    }
    return dependencies;
}

Constraints constraintsOn(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency) {
    Constraints constraints;
    if (const YxConstrainedGeometry* geometry = geometryOn(group, dependency))
        addConnected(withPoints(group, *geometry), constraints);
    return constraints;
}

Constraints constraintsOnEntity(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& entity) {
    std::vector<const YxConstrainedGeometry*> geometries;
    for (const YxDbAssocGeomDependency* dependency : dependenciesOf(entity)) {
        const YxConstrainedGeometry* geometry = geometryOn(group, *dependency);
        if (geometry == nullptr)
            continue;
        for (const YxConstrainedGeometry* one : withPoints(group, *geometry)) {
            if (std::find(geometries.begin(), geometries.end(), one) == geometries.end())
                geometries.push_back(one);
        }
    }
    Constraints constraints;
    addConnected(geometries, constraints);
    return constraints;
}

std::vector<const YxConstrainedImplicitPoint*> pointsOn(const YxDbAssoc2dConstraintGroup& group,
                                                        const YxDbAssocGeomDependency& dependency,
                                                        const YxGeomConstraint& constraint) {
    const YxGeomConstraint* holder = &constraint;
    if (const auto* composite = as<YxCompositeConstraint>(&constraint)) {
        YxArray<YxGeomConstraint*> owned;
        composite->getOwnedConstraints(owned);
        holder = nullptr;
        for (int k = 0; k < owned.length() && holder == nullptr; ++k)
            holder = as<YxPointCoincidenceConstraint>(owned[k]);
    }
    YxArray<YxConstrainedGeometry*> geometries;
    if (holder != nullptr)
        holder->getConstrainedGeometries(geometries);
    std::vector<const YxConstrainedImplicitPoint*> points;
    for (const YxConstrainedGeometry* geometry : geometries) {
        const auto* point = as<YxConstrainedImplicitPoint>(geometry);
        const auto* curve =
            point != nullptr ? as<YxConstrainedCurve>(group.getGroupNodePtr(point->constrainedCurveId())) : nullptr;
        if (curve != nullptr && curve->geomDependencyId() == dependency.objectId())
            points.push_back(point);
    }
    return points;
}

bool lineRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency, const Points& before,
              const Points& after, const YxGeomConstraint& constraint) {
    if (constraint.isKindOf(YxEqualLengthConstraint::desc()) && (moved(before, after, 0) || moved(before, after, 1)))
        return true;
    const YxGeVector3d direction = before[0] - before[1];
    const YxDbDatabase& database = *group.objectId().database();
    if (constraint.isKindOf(YxHorizontalConstraint::desc()) && database.ucsxdir().isParallelTo(direction))
        return false;
    if (constraint.isKindOf(YxVerticalConstraint::desc()) && database.ucsydir().isParallelTo(direction))
        return false;
    const auto points = pointsOn(group, dependency, constraint);
    if (constraint.isKindOf(YxSymmetricConstraint::desc()) && points.size() == 2)
        return true;
    return std::any_of(points.begin(), points.end(), [&](const YxConstrainedImplicitPoint* point) {
        return (point->pointType() == 0 && moved(before, after, 0)) ||
               (point->pointType() == 1 && moved(before, after, 1)) || point->pointType() == 2;
    });
}

bool arcRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency, const Points& before,
             const Points& after, const YxGeomConstraint& constraint) {
    const auto points = pointsOn(group, dependency, constraint);
    if (points.size() == 1) {
        const int type = points[0]->pointType();
        return (type == 0 && moved(before, after, 0)) || (type == 1 && moved(before, after, 1)) || type == 2;
    }
    if (points.size() != 2)
        return false;
    const int p = points[0]->pointType();
    const int q = points[1]->pointType();
    if (p != 3 && q != 3)
        return true;
    if (p == 0 || q == 0)
        return moved(before, after, 0);
    return (p == 1 || q == 1) && moved(before, after, 1);
}

bool segmentRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                 const Points& before, const Points& after, Constraints& collected) {
    const YxConstrainedGeometry* geometry = geometryOn(group, dependency);
    bool nothingStays = true;
    for (YxGeomConstraint* constraint : constraintsOn(group, dependency)) {
        bool goes = false;
        if (geometry->isKindOf(YxConstrainedBoundedLine::desc()))
            goes = lineRule(group, dependency, before, after, *constraint);
        else if (geometry->isKindOf(YxConstrainedArc::desc()))
            goes = arcRule(group, dependency, before, after, *constraint);
        else
            continue;
        if (goes)
            addOnce(collected, constraint);
        else
            nothingStays = false;
    }
    return nothingStays;
}

bool segmentOf(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline, Ends& ends) {
    const auto* name = as<YxDbAssocEdgePersSubentId>(dependency.persistentSubentId());
    if (name == nullptr)
        return false;
    const int count = static_cast<int>(polyline.numVerts());
    Ends found;
    for (int i = 0; i < count && (found.start < 0 || found.end < 0); ++i) {
        if (identifierAt(polyline, i) == name->index1())
            found.start = i;
        else if (identifierAt(polyline, i) == name->index2())
            found.end = i;
    }
    if (found.start >= 0 && found.end >= 0)
        found.end = (found.start + 1) % count;
    else if (count == 2)
        found = {0, 1};
    else if (found.start >= 0)
        found.end = (found.start + 1) % count;
    else if (found.end >= 0)
        found.start = (found.end - 1 + count) % count;
    else
        return false;
    ends = found;
    return true;
}

int identifierAt(const YxDbPolyline& polyline, int index) {
    int identifier = 0;
    polyline.getVertexIdentifierAt(static_cast<unsigned int>(index), identifier);
    return identifier;
}

YxGePoint3d pointAt(const YxDbPolyline& polyline, int index) {
    YxGePoint3d point;
    polyline.getPointAt(static_cast<unsigned int>(index), point);
    return point;
}

void deleteOneCoincidence(YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                          const Constraints& collected) {
    const YxConstrainedGeometry* curve = geometryOn(group, dependency);
    if (curve == nullptr)
        return;
    for (const YxConstrainedGeometry* point : withPoints(group, *curve)) {
        YxArray<YxGeomConstraint*> connected;
        if (point != curve)
            point->getConnectedConstraints(connected);
        for (YxGeomConstraint* constraint : connected) {
            if (!constraint->isKindOf(YxPointCoincidenceConstraint::desc()) ||
                std::find(collected.begin(), collected.end(), constraint) != collected.end())
                continue;
            constraint->setIsImplied(false);
            group.deleteConstraint(constraint);
            return;
        }
    }
}

YxSmartPtr<YxDbAssocGeomDependency> openForWrite(const YxDbAssocGeomDependency& dependency) {
    return YxDbObjectIdImpl::openObject(dependency.objectId(), YxDb::kForWrite, false);
}

void setIdentifier(YxDbPolyline& polyline, int index, int identifier) {
    polyline.setVertexIdentifierAt(static_cast<unsigned int>(index), identifier);
}

int deleteAll(YxDbAssoc2dConstraintGroup* group, const Constraints& constraints) {
    if (constraints.empty())
        return 0;
    const YxSmartPtr<YxDbAssoc2dConstraintGroup> open =
        YxDbObjectIdImpl::openObject(group->objectId(), YxDb::kForWrite, false);
    for (YxGeomConstraint* constraint : constraints)
        open->deleteConstraint(constraint);
    return static_cast<int>(constraints.size());
}

}  // namespace holdfast::plain
