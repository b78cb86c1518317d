#pragma once

#include <yxbase/YxArray.h>
#include <yxbase/YxErrorStatus.h>
#include <yxdb/YxDbObjectId.h>

/// Names an object by the path of containers that leads to it; a path of one is the object itself.
class YxDbCompoundObjectId {
public:
    Yxrt::ErrorStatus set(const YxDbObjectId& id, YxDbDatabase* database = nullptr);
    Yxrt::ErrorStatus setFullPath(const YxArray<YxDbObjectId>& path, YxDbDatabase* database = nullptr);

private:
    friend struct holdfast::HostAccess;
    YxArray<YxDbObjectId> m_path;
};
