#include "drag/CurrentAxes.h"

#include <yxdb/YxDbDatabase.h>
#include <yxdb/YxDbDatabaseService.h>
#include <yxdb/YxDbHostApplicationServices.h>

namespace holdfast::module {

namespace {

constexpr int kDatabaseService = 3;

const YxDbLayoutManager* layoutManager() {
    const YxRxObject* service = yxrxGetService(kDatabaseService);
    if (service == nullptr || !service->isKindOf(YxDbDatabaseService::desc()))
        return nullptr;
    return static_cast<const YxDbDatabaseService*>(service)->layoutManager();
}

/// Without a layout manager every space counts as model space.
bool isInPaperSpace(const YxDbDatabase& database) {
    const YxDbLayoutManager* layouts = layoutManager();
    return !database.tilemode() && layouts != nullptr && database.currentSpaceId() != layouts->modelSpaceId(&database);
}

}  // namespace

YxGeVector3d currentZAxis() {
    const YxDbHostApplicationServices* services = yxdbHostApplicationServices();
    const YxDbDatabase* database = services == nullptr ? nullptr : services->workingDatabase();
    if (database == nullptr)
        return YxGeVector3d::kXAxis.crossProduct(YxGeVector3d::kYAxis);
    if (isInPaperSpace(*database))
        return database->pucsxdir().crossProduct(database->pucsydir());
    return database->ucsxdir().crossProduct(database->ucsydir());
}

}  // namespace holdfast::module
