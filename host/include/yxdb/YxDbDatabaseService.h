#pragma once

#include <yxbase/YxArray.h>
#include <yxbase/YxRxObject.h>
#include <yxdb/YxDbObjectId.h>

class YxDbDatabase;
class YxDbObject;

/// Lists what hangs on an object.
class YxDbDependencyManager {
public:
    virtual ~YxDbDependencyManager();
    /// The ids of the object's persistent reactors, in the object's own order. Fills the array from its start.
    virtual void getPersistentReactorIds(const YxDbObject* object, YxArray<YxDbObjectId>& ids) const = 0;
};

/// Knows a database's spaces.
class YxDbLayoutManager {
public:
    virtual ~YxDbLayoutManager();
    virtual YxDbObjectId modelSpaceId(const YxDbDatabase* database) const = 0;
};

/// The host's database service, number 3 of yxrxGetService.
class YxDbDatabaseService : public YxRxObject {
    YX_DECLARE_CLASS();

public:
    virtual YxDbDependencyManager* dependencyManager() const = 0;
    virtual YxDbLayoutManager* layoutManager() const = 0;
};
