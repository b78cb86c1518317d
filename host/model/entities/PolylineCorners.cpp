#include <algorithm>

#include "host/model/HostBuilder.h"
#include "host/model/entities/EntityAccess.h"
#include "host/model/entities/SegmentNames.h"

namespace holdfast {

namespace {

YxConstrainedImplicitPoint* endPoint(YxDbAssoc2dConstraintGroup& group, const YxConstrainedGeometry& segment,
                                     YxDb::ImplicitPointType type) {
    YxConstrainedImplicitPoint* point = HostAccess::implicitPoint(group, segment, type, -1);
    return point != nullptr ? point : &HostAccess::addImplicitPoint(group, segment, type, -1);
}

bool areTied(const YxConstrainedGeometry& first, const YxConstrainedGeometry* second) {
    const auto& connected = HostAccess::connected(first);
    return std::any_of(connected.begin(), connected.end(), [&](const YxGeomConstraint* constraint) {
        const auto& geometries = HostAccess::geometries(*constraint);
        return constraint->isKindOf(YxPointCoincidenceConstraint::desc()) &&
               std::find(geometries.begin(), geometries.end(), second) != geometries.end();
    });
}

/// Ties the end of a segment to the start of the next; false when they are tied.
bool tie(YxDbAssoc2dConstraintGroup& group, const YxConstrainedGeometry& segment, const YxConstrainedGeometry& next) {
    YxConstrainedImplicitPoint* end = endPoint(group, segment, YxDb::kEndImplicit);
    YxConstrainedImplicitPoint* start = endPoint(group, next, YxDb::kStartImplicit);
    if (areTied(*end, start))
        return false;
    HostAccess::setImplied(HostAccess::addConstraint<YxPointCoincidenceConstraint>(group, {end, start}), true);
    return true;
}

}  // namespace

int HostBuilder::addCornerCoincidences(YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& id) {
    const auto& polyline = static_cast<const YxDbPolyline&>(*HostAccess::peek(id));
    const std::vector<YxConstrainedGeometry*> segments = segmentGeometries(group, polyline);
    const std::size_t count = segments.size();
    const std::size_t corners = count < 2 ? 0 : EntityAccess::isClosed(polyline) ? count : count - 1;
    int added = 0;
    for (std::size_t i = 0; i < corners; ++i) {
        const YxConstrainedGeometry* next = segments[(i + 1) % count];
        if (segments[i] != nullptr && next != nullptr && tie(group, *segments[i], *next))
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
