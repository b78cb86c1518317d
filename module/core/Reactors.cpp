#include "core/Reactors.h"

#include "core/OnceList.h"
#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbDatabaseService.h>

namespace holdfast::module {
namespace {

constexpr int kDatabaseService = 3;

YxDbDependencyManager* dependencyManager() {
    YxRxObject* service = yxrxGetService(kDatabaseService);
    if (service == nullptr || !service->isKindOf(YxDbDatabaseService::desc()))
        return nullptr;
    return static_cast<YxDbDatabaseService*>(service)->dependencyManager();
}

}  // namespace

YxArray<YxDbObjectId> persistentReactorIds(const YxDbObject* object) {
    YxArray<YxDbObjectId> ids;
    if (const YxDbDependencyManager* manager = dependencyManager())
        manager->getPersistentReactorIds(object, ids);
    return ids;
}

bool isGeomDependency(const YxDbObjectId& id) {
    return !openAs<YxDbAssocGeomDependency>(id).isNull();
}

void listGeomDependencies(const YxDbObject& object, YxArray<YxDbAssocGeomDependency*>& dependencies) {
    dependencies.setLogicalLength(0);
    for (const YxDbObjectId& id : persistentReactorIds(&object)) {
        if (const auto dependency = openAs<YxDbAssocGeomDependency>(id))
            appendGrowing(dependencies, dependency.get());
    }
}

}  // namespace holdfast::module
