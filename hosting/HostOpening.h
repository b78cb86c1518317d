#pragma once

#include <stdexcept>

#include <yxbase/YxSmartPtr.h>
#include <yxdb/YxDbObject.h>

#include "hosting/Uses.h"

namespace holdfast::hosting {

/// An object that is open as long as the pointer lives. Throws std::runtime_error when the host does not open it: an
/// edit that went on without it would be done by half.
template <class T>
YxSmartPtr<T> opened(const YxDbObjectId& id, YxDb::OpenMode mode) {
    YxSmartPtr<T> object(YxDbObjectIdImpl::openObject(id, mode, false));
    if (object.isNull())
        throw std::runtime_error("the host does not open an object that the edit needs");
    return object;
}

}  // namespace holdfast::hosting
