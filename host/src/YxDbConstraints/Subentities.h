#pragma once

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbSubentId.h>

class YxDbPolyline;

namespace holdfast {

/// How many parts of a kind an entity has: one edge for a simple curve or a text, one for each segment of a polyline.
int partCount(const YxDbEntity& entity, unsigned int type);

/// The part that a dependency stands on: the first of its kind, or of a polyline the segment that its persistent name
/// finds there; the null part when there is none.
YxDbSubentId partOf(const YxDbAssocGeomDependency& dependency, const YxDbEntity& entity);

/// The identifier of a vertex that a persistent name refers to from now on: a vertex without one gets a fresh one.
int referencedIdentifier(YxDbPolyline& polyline, std::size_t vertex);

/// The number of the segment, counted from 0, between the two identified vertices, or -1.
int segmentNamed(const YxDbPolyline& polyline, int startVertexId, int endVertexId);

/// The geometry of the group that stands on the part, or null.
YxConstrainedGeometry* geometryOnPart(const YxDbAssoc2dConstraintGroup& group, const YxDbFullSubentPath& path);

}  // namespace holdfast
