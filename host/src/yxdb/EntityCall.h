#pragma once

#include <yxbase/YxErrorStatus.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast {

/// Every reading operation with a status asks first: anything but eOk is what it must answer without doing anything.
[[nodiscard]] inline Yxrt::ErrorStatus readCall(const YxDbEntity&, const char*) {
    return Yxrt::eOk;
}

/// The same for operations that change the entity; also refuses a resident entity that is not open for write.
[[nodiscard]] inline Yxrt::ErrorStatus writeCall(YxDbEntity&, const char*) {
    return Yxrt::eOk;
}

/// Records the call of an accessor, which cannot be refused.
inline void accessorCall(const YxDbEntity&, const char*) {}

}  // namespace holdfast
