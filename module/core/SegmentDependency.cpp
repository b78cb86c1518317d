#include "core/SegmentDependency.h"

#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>

namespace holdfast::module {

void markSegmentRemoved(const YxDbAssocGeomDependency& dependency) {
    if (const auto open = openAs<YxDbAssocGeomDependency>(dependency.objectId(), YxDb::kForWrite))
        open->setStatus(kSegmentRemovedAssocStatus, true);
}

void moveToObject(YxDbAssocGeomDependency& dependency, const YxDbObjectId& object) {
    YxDbCompoundObjectId path;
    path.set(object);
    dependency.detachFromObject();
    dependency.attachToObject(path);
}

void pointAtSegment(YxDbAssocGeomDependency& dependency, int subentIndex) {
    dependency.setSubentity(YxDbSubentId(dependency.subentType(), subentIndex));
}

}  // namespace holdfast::module
