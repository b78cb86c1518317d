#pragma once

#include <yxbase/YxSmartPtr.h>
#include <yxdb/YxDbObject.h>

namespace holdfast::module {

/// While it lives, an object is open for write.
class OpenForWrite {
public:
    explicit OpenForWrite(const YxDbObjectId& id)
        : m_object(YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false)) {}

private:
    YxSmartPtr<YxDbObject> m_object;
};

}  // namespace holdfast::module
