#include "editing/SegmentNames.h"

#include <unordered_map>
#include <vector>

#include <YxDbConstraints/YxDbAssocPersSubentId.h>

#include "geometry/curves/Polylines.h"
#include "hosting/HostOpening.h"

namespace holdfast::editing {

namespace {

std::vector<YxDbAssocGeomDependency*> dependenciesOn(const YxDbEntity& entity) {
    std::vector<YxDbAssocGeomDependency*> found;
    for (const YxDbObjectId& reactor : HostAccess::reactors(entity))
        if (YxDbObject* object = HostAccess::peek(reactor);
            object != nullptr && object->isKindOf(YxDbAssocGeomDependency::desc()))
            found.push_back(static_cast<YxDbAssocGeomDependency*>(object));
    return found;
}

/// True when a constraint holds on the segment or at one of its points.
bool isInUse(const Drawing& drawing, const YxDbAssocGeomDependency& dependency) {
    const YxConstrainedGeometry* geometry = HostAccess::geometryOn(drawing.group(), HostAccess::idOf(dependency));
    return geometry != nullptr && HostAccess::status(dependency) != kSegmentRemovedAssocStatus &&
           HostAccess::isConstrained(drawing.group(), *geometry);
}

/// The corner behind a segment is none any more.
void loosenEnd(Drawing& drawing, const YxDbAssocGeomDependency& dependency) {
    const YxConstrainedGeometry* geometry = HostAccess::geometryOn(drawing.group(), HostAccess::idOf(dependency));
    if (geometry == nullptr)
        return;
    for (const YxConstrainedImplicitPoint* point : HostAccess::pointsOf(drawing.group(), *geometry)) {
        const auto constraints = HostAccess::connected(*point);  // a copy, as it shrinks
        for (YxGeomConstraint* constraint : constraints)
            if (HostAccess::pointType(*point) == YxDb::kEndImplicit && constraint->isImplied())
                HostAccess::deleteConstraint(drawing.group(), HostAccess::topLevel(*constraint));
    }
}

std::vector<YxDbAssocGeomDependency*> dependenciesOnSegment(const YxDbEntity& entity, int startId, int endId) {
    std::vector<YxDbAssocGeomDependency*> found;
    for (YxDbAssocGeomDependency* dependency : dependenciesOn(entity)) {
        const YxDbAssocPersSubentId* name = HostAccess::persistentId(*dependency);
        if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
            continue;
        const auto& edge = static_cast<const YxDbAssocEdgePersSubentId&>(*name);
        if (HostAccess::startVertexId(edge) == startId && HostAccess::endVertexId(edge) == endId)
            found.push_back(dependency);
    }
    return found;
}

void nameSegment(const YxDbAssocGeomDependency& dependency, int segment) {
    const auto open = opened<YxDbAssocGeomDependency>(HostAccess::idOf(dependency), YxDb::kForWrite);
    open->setSubentity(YxDbSubentId(open->subentType(), segment));
}

using VertexNumbers = std::unordered_map<int, std::size_t>;

VertexNumbers numbersById(const PolylineShape& polyline) {
    VertexNumbers numbers;
    for (std::size_t i = 0; i < polyline.ids.size(); ++i)
        if (polyline.ids[i] != 0)
            numbers.emplace(polyline.ids[i], i);
    return numbers;
}

/// The segment of which one vertex alone is known, counted from 1; 0 when both are, or none.
int segmentByOneVertex(const PolylineShape& polyline, const VertexNumbers& numbers,
                       const YxDbAssocEdgePersSubentId& edge) {
    const auto start = numbers.find(HostAccess::startVertexId(edge));
    const auto end = numbers.find(HostAccess::endVertexId(edge));
    if ((start == numbers.end()) == (end == numbers.end()))
        return 0;
    const std::size_t count = polyline.vertices.size();
    const std::size_t segment = start != numbers.end() ? start->second : (end->second + count - 1) % count;
    return static_cast<int>(segment) + 1;
}

}  // namespace

void renewSegmentNames(Drawing& drawing, const std::string& polyline) {
    const auto shape = std::get<PolylineShape>(drawing.shape(polyline));
    const VertexNumbers numbers = numbersById(shape);
    for (YxDbAssocGeomDependency* dependency : dependenciesOn(drawing.entity(polyline))) {
        const YxDbAssocPersSubentId* name = HostAccess::persistentId(*dependency);
        if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
            continue;
        const int segment = segmentByOneVertex(shape, numbers, static_cast<const YxDbAssocEdgePersSubentId&>(*name));
        if (segment == 0 || !isInUse(drawing, *dependency))
            continue;
        nameSegment(*dependency, segment);
    }
}

void openSeam(Drawing& drawing, const std::string& polyline) {
    const auto closed = std::get<PolylineShape>(drawing.shape(polyline));
    const std::vector<YxDbAssocGeomDependency*> closing =
        dependenciesOnSegment(drawing.entity(polyline), closed.ids.back(), closed.ids.front());
    drawing.write(polyline, openedPolyline(closed));
    for (const YxDbAssocGeomDependency* dependency : closing) {
        loosenEnd(drawing, *dependency);
        nameSegment(*dependency, static_cast<int>(closed.vertices.size()));
    }
}

void settleSegments(Drawing& drawing, const std::string& polyline) {
    renewSegmentNames(drawing, polyline);
    drawing.tieCorners(polyline);
}

void swapSegmentEnds(Drawing& drawing, const std::string& polyline) {
    for (const YxDbAssocGeomDependency* dependency : dependenciesOn(drawing.entity(polyline))) {
        const auto* geometry = HostAccess::geometryOn(drawing.group(), HostAccess::idOf(*dependency));
        if (geometry == nullptr)
            continue;
        for (YxConstrainedImplicitPoint* point : HostAccess::pointsOf(drawing.group(), *geometry)) {
            const YxDb::ImplicitPointType type = HostAccess::pointType(*point);
            if (type == YxDb::kStartImplicit || type == YxDb::kEndImplicit)
                HostAccess::setPointType(*point,
                                         type == YxDb::kStartImplicit ? YxDb::kEndImplicit : YxDb::kStartImplicit);
        }
    }
}

}  // namespace holdfast::editing
