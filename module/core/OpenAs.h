#pragma once

#include <yxbase/YxSmartPtr.h>
#include <yxdb/YxDbObject.h>

namespace holdfast::module {

/// Opens an object as one of class T: null when it cannot be opened and when it is of another class. Erased objects
/// never open. The open ends with the pointer.
template <class T>
YxSmartPtr<T> openAs(const YxDbObjectId& id, int mode = YxDb::kForRead) {
    YxSmartPtr<YxDbObject> object = YxDbObjectIdImpl::openObject(id, mode, false);
    if (object.isNull() || !object->isKindOf(T::desc()))
        return {};
    return object;
}

}  // namespace holdfast::module
