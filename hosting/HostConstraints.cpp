#include "hosting/HostConstraints.h"

#include <unordered_set>

#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbPolyline.h>
#include <utility>

#include "host/model/ConstraintKinds.h"
#include "host/model/entities/EntityGeometry.h"
#include "hosting/HostShapes.h"

namespace holdfast::hosting {

namespace {

using Geometries = std::vector<YxConstrainedGeometry*>;

bool onLines(const Geometries& geometries) {
    return !geometries.empty() && geometries.front()->isKindOf(YxConstrainedLine::desc());
}

/// The host's kind of a constraint; null for those that own others. Equal sizes are two kinds there.
const ConstraintKind* hostKind(ConstraintType type, const Geometries& geometries) {
    const bool areRadii = type == ConstraintType::equal && !onLines(geometries);
    return constraintKindNamed(areRadii ? "equalradius" : traitsOf(type).hostWord);
}

YxGeomConstraint& addOwner(YxDbAssoc2dConstraintGroup& group, ConstraintType type, const Geometries& geometries) {
    if (type == ConstraintType::g2Smooth)
        return HostAccess::addConstraint<YxG2SmoothConstraint>(group, geometries);
    return HostAccess::addConstraint<YxCompositeConstraint>(group, geometries);
}

BuiltPlace pointPlace(const YxDbObjectId& id, int segment, YxDb::ImplicitPointType type, int pointIndex = -1) {
    return {.entity = id, .segment = segment, .isPoint = true, .pointType = type, .pointIndex = pointIndex};
}

/// The ends of a spline are its first and last control point, and say so.
int controlIndexOfEnd(const Shape& shape, PlaceKind kind) {
    const auto* spline = std::get_if<SplineShape>(&shape);
    if (spline == nullptr)
        return -1;
    return kind == PlaceKind::start ? 0 : static_cast<int>(spline->control.size()) - 1;
}

PlaceKind curvePoint(YxDb::ImplicitPointType type) {
    constexpr PlaceKind kinds[] = {PlaceKind::start, PlaceKind::end, PlaceKind::mid, PlaceKind::centre,
                                   PlaceKind::control};
    return kinds[type];
}

/// The end of the counter-clockwise shape that one of the host's ends is.
YxDb::ImplicitPointType seenFromAbove(const YxDbEntity& entity, YxDb::ImplicitPointType type) {
    if (!isSeenFromBelow(entity))
        return type;
    if (type == YxDb::kStartImplicit)
        return YxDb::kEndImplicit;
    return type == YxDb::kEndImplicit ? YxDb::kStartImplicit : type;
}

PlaceKind segmentPoint(YxDb::ImplicitPointType type) {
    constexpr PlaceKind kinds[] = {PlaceKind::segmentStart, PlaceKind::segmentEnd, PlaceKind::segmentMid,
                                   PlaceKind::segmentCentre, PlaceKind::segment};
    return kinds[type];
}

}  // namespace

BuiltPlace wholeOf(const YxDbObjectId& id, const Shape& shape) {
    return {.entity = id, .segment = std::holds_alternative<PolylineShape>(shape) ? 1 : 0};
}

BuiltPlace placeIn(const YxDbObjectId& id, const Shape& shape, const Place& place) {
    const int segment = place.index + 1;
    switch (place.kind) {
        case PlaceKind::whole:
            return wholeOf(id, shape);
        case PlaceKind::start:
            return pointPlace(id, 0, YxDb::kStartImplicit, controlIndexOfEnd(shape, place.kind));
        case PlaceKind::end:
            return pointPlace(id, 0, YxDb::kEndImplicit, controlIndexOfEnd(shape, place.kind));
        case PlaceKind::centre:
            return pointPlace(id, 0, YxDb::kCenterImplicit);
        case PlaceKind::mid:
            return pointPlace(id, 0, YxDb::kMidImplicit);
        case PlaceKind::control:
            return pointPlace(id, 0, YxDb::kControlImplicit, place.index);
        case PlaceKind::segment:
            return {.entity = id, .segment = segment};
        case PlaceKind::segmentStart:
            return pointPlace(id, segment, YxDb::kStartImplicit);
        case PlaceKind::segmentEnd:
            return pointPlace(id, segment, YxDb::kEndImplicit);
        case PlaceKind::segmentMid:
            return pointPlace(id, segment, YxDb::kMidImplicit);
        case PlaceKind::segmentCentre:
            return pointPlace(id, segment, YxDb::kCenterImplicit);
    }
    return wholeOf(id, shape);
}

Place placeFrom(const std::string& name, const YxDbEntity& entity, const YxConstrainedGeometry& geometry, int segment) {
    const bool polyline = entity.isKindOf(YxDbPolyline::desc());
    if (!geometry.isKindOf(YxConstrainedImplicitPoint::desc()))
        return {name, polyline ? PlaceKind::segment : PlaceKind::whole, polyline ? segment : 0};
    const auto& point = static_cast<const YxConstrainedImplicitPoint&>(geometry);
    if (polyline)
        return {name, segmentPoint(point.pointType()), segment};
    const bool control = point.pointType() == YxDb::kControlImplicit;
    return {name, curvePoint(seenFromAbove(entity, point.pointType())), control ? point.pointIndex() : 0};
}

YxGeomConstraint& addHostConstraint(YxDbAssoc2dConstraintGroup& group, const Constraint& constraint,
                                    const std::vector<YxConstrainedGeometry*>& geometries) {
    const ConstraintKind* kind = hostKind(constraint.type, geometries);
    YxGeomConstraint& made =
        kind != nullptr ? kind->add(group, geometries) : addOwner(group, constraint.type, geometries);
    if (constraint.type == ConstraintType::internal) {
        HostAccess::setInternal(made, true);
        HostAccess::setRole(static_cast<YxInternalConstraint&>(made), constraint.role);
    }
    if (kind != nullptr && kind->dimension)
        HostAccess::setDimension(static_cast<YxDimensionConstraint&>(made), *kind->dimension,
                                 constraint.value.value_or(0.0), constraint.driving);
    if (constraint.implied)
        made.setIsImplied(true);
    return made;
}

std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> constraintsOn(const YxDbEntity& entity) {
    std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> found;
    std::unordered_set<const YxGeomConstraint*> seen;
    for (YxConstrainedGeometry* geometry : geometriesOf(entity))
        for (YxGeomConstraint* constraint : HostAccess::connected(*geometry))
            if (YxGeomConstraint* top = HostAccess::topLevel(*constraint); seen.insert(top).second)
                found.emplace_back(HostAccess::groupOf(*geometry), top);
    return found;
}

}  // namespace holdfast::hosting
