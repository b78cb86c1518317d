#pragma once

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "core/SegmentFinder.h"

namespace holdfast::module {

using PolyInfo = ConstraintFilletCmdCenter::PolyInfo;

/// The segment as it stands on the polyline.
PolyInfo segmentRecord(const YxDbPolyline& polyline, SegmentEnds segment, YxDbAssocGeomDependency* dependency);
/// A record of every dependency whose segment can be told, in order. Null dependencies are skipped.
YxArray<PolyInfo> segmentRecords(const YxDbPolyline& polyline, const YxArray<YxDbAssocGeomDependency*>& dependencies);

/// The recorded dependencies, in order, null where a record has none.
YxArray<YxDbAssocGeomDependency*> dependenciesOf(const YxArray<PolyInfo>& records);

/// True when the record has a dependency whose segment has not been removed.
bool isAlive(const PolyInfo& record);

/// Points the record's dependency at another segment of its polyline, if it is alive and opens for write.
void repoint(const PolyInfo& record, int subentIndex);

/// Turns a clone round, each identifier with its vertex, and renews the records that end at one of its vertices; the
/// other records stay as they were.
void reverseClone(YxDbPolyline& clone, YxArray<PolyInfo>& records);

}  // namespace holdfast::module
