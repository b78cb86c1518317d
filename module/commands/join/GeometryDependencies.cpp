#include "commands/join/GeometryDependencies.h"

#include "core/OpenAs.h"
#include "core/Reactors.h"

#include <algorithm>

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast::module {

namespace {

YxDbCompoundObjectId pathTo(const YxDbObjectId& id) {
    YxArray<YxDbObjectId> path;
    path.append(id);
    YxDbCompoundObjectId compound;
    compound.setFullPath(path, nullptr);
    return compound;
}

}  // namespace

bool carriesGeometryDependency(const YxDbEntity& entity) {
    return std::ranges::any_of(persistentReactorIds(&entity), isGeomDependency);
}

int moveGeometryDependencies(const YxDbEntity& entity, const YxDbObjectId& target) {
    const YxDbCompoundObjectId path = pathTo(target);
    int moved = 0;
    for (const YxDbObjectId& id : persistentReactorIds(&entity)) {
        const auto dependency = openAs<YxDbAssocGeomDependency>(id, YxDb::kForWrite);
        if (!dependency)
            continue;
        dependency->detachFromObject();
        dependency->attachToObject(path);
        ++moved;
    }
    return moved;
}

}  // namespace holdfast::module
