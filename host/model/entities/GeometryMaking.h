#pragma once

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast {

/// Adds the constrained geometry of an entity, or of one segment (counted from 1) of a polyline, to a group.
/// Throws std::invalid_argument for an entity on which no constraint can hold.
YxConstrainedGeometry& addGeometryOf(const YxDbEntity& entity, int segment, YxDbAssoc2dConstraintGroup& group,
                                     const YxDbObjectId& dependency);

}  // namespace holdfast
