#pragma once

#include <yxdb/YxDbObjectId.h>

class YxDbAssocGeomDependency;
class YxDbObject;

namespace holdfast::module {

/// Gives a dependency the status of a removed segment. One that cannot be opened for write stays as it is.
void markSegmentRemoved(const YxDbAssocGeomDependency& dependency);

/// Moves an open dependency over to another object.
void moveToObject(YxDbAssocGeomDependency& dependency, const YxDbObjectId& object);

/// Points an open dependency at another segment of its polyline: start vertex index + 1. The kind of part stays.
void pointAtSegment(YxDbAssocGeomDependency& dependency, int subentIndex);

}  // namespace holdfast::module
