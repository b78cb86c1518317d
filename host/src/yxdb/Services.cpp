#include <yxbase/YxRxObject.h>
#include <yxdb/YxDbDatabaseService.h>
#include <yxdb/YxDbHostApplicationServices.h>
#include <yxdb/YxGiWorldDraw.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::HostAccess;
using holdfast::hostCall;
using holdfast::hostState;

YX_IMPLEMENT_CLASS(YxDbDatabaseService, YxRxObject)

YxDbDependencyManager::~YxDbDependencyManager() = default;
YxDbLayoutManager::~YxDbLayoutManager() = default;
YxDbHostApplicationServices::~YxDbHostApplicationServices() = default;
YxGiWorldGeometry::~YxGiWorldGeometry() = default;
YxGiWorldDraw::~YxGiWorldDraw() = default;

namespace {

class DependencyManager : public YxDbDependencyManager {
public:
    void getPersistentReactorIds(const YxDbObject* object, YxArray<YxDbObjectId>& ids) const override {
        const auto fault = hostCall("YxDbDependencyManager::getPersistentReactorIds", object);
        std::vector<YxDbObjectId> reactors;
        if (object != nullptr)
            reactors = HostAccess::reactors(*object);
        holdfast::answerList(ids, reactors, fault);
    }
};

class LayoutManager : public YxDbLayoutManager {
public:
    YxDbObjectId modelSpaceId(const YxDbDatabase* database) const override {
        if (const auto fault = hostCall("YxDbLayoutManager::modelSpaceId", nullptr))
            return holdfast::answeredId(fault);
        if (database == nullptr)
            return {};
        return HostAccess::data(*const_cast<YxDbDatabase*>(database)).modelSpace;
    }
};

class DatabaseService : public YxDbDatabaseService {
public:
    YxDbDependencyManager* dependencyManager() const override {
        return hostCall("YxDbDatabaseService::dependencyManager", this) ? nullptr : &m_dependencies;
    }
    YxDbLayoutManager* layoutManager() const override {
        return hostCall("YxDbDatabaseService::layoutManager", this) ? nullptr : &m_layouts;
    }

private:
    mutable DependencyManager m_dependencies;
    mutable LayoutManager m_layouts;
};

class ApplicationServices : public YxDbHostApplicationServices {
public:
    YxDbDatabase* workingDatabase() const override {
        return hostCall("YxDbHostApplicationServices::workingDatabase", nullptr) ? nullptr
                                                                                 : hostState().workingDatabase;
    }
};

}  // namespace

YxRxObject* yxrxGetService(int number) {
    constexpr int kDatabaseService = 3;
    static DatabaseService service;
    if (const auto fault = hostCall("yxrxGetService", nullptr, number))
        return fault.other;
    return number == kDatabaseService && hostState().servicesUp ? &service : nullptr;
}

YxDbHostApplicationServices* yxdbHostApplicationServices() {
    static ApplicationServices services;
    if (hostCall("yxdbHostApplicationServices", nullptr) || !hostState().servicesUp)
        return nullptr;
    return &services;
}
