#include "commands/fillet/SegmentRecords.h"

#include "commands/fillet/VertexLookup.h"
#include "core/CurveEnds.h"
#include "core/OnceList.h"
#include "core/OpenAs.h"
#include "core/SegmentDependency.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbPolyline.h>

#include <vector>

namespace holdfast::module {
namespace {

void turnRound(YxDbPolyline& clone) {
    const unsigned int count = clone.numVerts();
    std::vector<int> identifiers(count);
    for (unsigned int index = 0; index < count; ++index)
        identifiers[index] = vertexIdentifier(clone, index);
    clone.reverseCurve();
    for (unsigned int index = 0; index < count; ++index)
        clone.setVertexIdentifierAt(index, identifiers[count - 1 - index]);
}

}  // namespace

PolyInfo segmentRecord(const YxDbPolyline& polyline, SegmentEnds segment, YxDbAssocGeomDependency* dependency) {
    const auto start = static_cast<unsigned int>(segment.start);
    const auto end = static_cast<unsigned int>(segment.end);
    return {.startIndex = segment.start,
            .endIndex = segment.end,
            .startVertexId = vertexIdentifier(polyline, start),
            .endVertexId = vertexIdentifier(polyline, end),
            .startPoint = vertexPoint(polyline, start),
            .endPoint = vertexPoint(polyline, end),
            .dependency = dependency};
}

YxArray<PolyInfo> segmentRecords(const YxDbPolyline& polyline, const YxArray<YxDbAssocGeomDependency*>& dependencies) {
    YxArray<PolyInfo> records(dependencies.length());
    SegmentFinder finder(&polyline);
    for (YxDbAssocGeomDependency* dependency : dependencies) {
        SegmentEnds segment;
        if (dependency != nullptr && finder.find(dependency->objectId(), segment))
            records.append(segmentRecord(polyline, segment, dependency));
    }
    return records;
}

YxArray<YxDbAssocGeomDependency*> dependenciesOf(const YxArray<PolyInfo>& records) {
    YxArray<YxDbAssocGeomDependency*> dependencies(records.length());
    for (const PolyInfo& record : records)
        dependencies.append(record.dependency);
    return dependencies;
}

bool isAlive(const PolyInfo& record) {
    return record.dependency != nullptr && record.dependency->status() != kSegmentRemovedAssocStatus;
}

void repoint(const PolyInfo& record, int subentIndex) {
    if (!isAlive(record))
        return;
    if (const auto open = openAs<YxDbAssocGeomDependency>(record.dependency->objectId(), YxDb::kForWrite))
        pointAtSegment(*open, subentIndex);
}

void reverseClone(YxDbPolyline& clone, YxArray<PolyInfo>& records) {
    turnRound(clone);
    const unsigned int count = clone.numVerts();
    if (count < 2)
        return;
    const VertexLookup vertices(clone, count - 1);
    for (PolyInfo& record : records) {
        const int start = vertices.firstAt(record.endPoint);
        if (start < 0)
            continue;
        record.startIndex = start;
        record.endIndex = start + 1;
        record.startPoint = vertexPoint(clone, static_cast<unsigned int>(start));
        record.endPoint = vertexPoint(clone, static_cast<unsigned int>(start) + 1);
    }
}

}  // namespace holdfast::module
