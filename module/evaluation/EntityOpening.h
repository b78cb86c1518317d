#pragma once

#include <yxbase/YxSmartPtr.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast::module {

/// Opens an entity; null when the id cannot be opened. An object of another class throws YxError_NotThatKindOfClass,
/// which the host's command catches.
YxSmartPtr<YxDbEntity> openEntity(const YxDbObjectId& id, int mode);

/// A copy as the entity itself makes it, which the caller owns, or null.
YxDbEntity* copyOf(const YxDbEntity& entity);

}  // namespace holdfast::module
