#include "host/model/entities/EntityGeometry.h"

#include <unordered_set>

#include "host/model/state/HostAccess.h"
#include "host/src/YxDbConstraints/GroupData.h"

namespace holdfast {

GeometryKind geometryKind(const YxConstrainedGeometry& geometry) {
    struct Row {
        const YxRxClass* type;
        GeometryKind kind;
    };
    static const Row rows[] = {
        {YxConstrainedPoint::desc(), GeometryKind::point},
        {YxConstrainedImplicitPoint::desc(), GeometryKind::implicitPoint},
        {YxConstrainedLine::desc(), GeometryKind::line},
        {YxConstrainedBoundedLine::desc(), GeometryKind::boundedLine},
        {YxConstrainedRay::desc(), GeometryKind::ray},
        {YxConstrainedDatumLine::desc(), GeometryKind::datumLine},
        {YxConstrainedCircle::desc(), GeometryKind::circle},
        {YxConstrainedArc::desc(), GeometryKind::arc},
        {YxConstrainedEllipse::desc(), GeometryKind::ellipse},
        {YxConstrainedBoundedEllipse::desc(), GeometryKind::boundedEllipse},
        {YxConstrainedSpline::desc(), GeometryKind::spline},
    };
    for (const Row& row : rows)
        if (geometry.isA() == row.type)
            return row.kind;
    return GeometryKind::other;
}

std::vector<YxConstrainedGeometry*> geometriesOf(const YxDbEntity& entity) {
    std::vector<YxConstrainedGeometry*> geometries;
    for (const YxDbObjectId& reactor : HostAccess::reactors(entity)) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        if (candidate == nullptr || !candidate->isKindOf(YxDbAssocGeomDependency::desc()))
            continue;
        const YxDbObjectId action = HostAccess::actionOf(static_cast<const YxDbAssocGeomDependency&>(*candidate));
        const YxDbObject* group = HostAccess::isErased(action) ? nullptr : HostAccess::peek(action);
        if (group == nullptr || !group->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
            continue;
        const YxDbConstraintGroupData& nodes = HostAccess::data(static_cast<const YxDbAssoc2dConstraintGroup&>(*group));
        if (YxConstrainedGeometry* geometry = nodes.geometryOn(reactor)) {
            geometries.push_back(geometry);
            const std::vector<YxConstrainedImplicitPoint*> points = nodes.pointsOf(HostAccess::nodeId(*geometry));
            geometries.insert(geometries.end(), points.begin(), points.end());
        }
    }
    return geometries;
}

std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> constraintsTouching(const YxDbObjectId& entity) {
    std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> found;
    const YxDbObject* object = HostAccess::peek(entity);
    if (object == nullptr || !object->isKindOf(YxDbEntity::desc()))
        return found;
    std::unordered_set<const YxGeomConstraint*> seen;
    for (YxConstrainedGeometry* geometry : geometriesOf(static_cast<const YxDbEntity&>(*object)))
        for (YxGeomConstraint* constraint : HostAccess::connected(*geometry)) {
            YxGeomConstraint* top = HostAccess::topLevel(*constraint);
            if (!HostAccess::isInternal(*top) && seen.insert(top).second)
                found.emplace_back(HostAccess::groupOf(*geometry), top);
        }
    return found;
}

}  // namespace holdfast
