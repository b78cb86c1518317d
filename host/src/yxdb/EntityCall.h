#pragma once

#include <string>

#include <yxbase/YxErrorStatus.h>
#include <yxdb/YxDbEntity.h>

#include "host/src/HostAccess.h"
#include "host/src/HostCall.h"

namespace holdfast {

/// Every reading operation with a status asks first: anything but eOk is what it must answer without doing anything.
[[nodiscard]] inline Yxrt::ErrorStatus readCall(const YxDbEntity& entity, const char* operation) {
    const HostFault fault = hostCall(operation, &entity);
    return fault ? refusedStatus(fault) : Yxrt::eOk;
}

/// The same for operations that change the entity; also refuses a resident entity that is not open for write.
[[nodiscard]] inline Yxrt::ErrorStatus writeCall(YxDbEntity& entity, const char* operation) {
    if (const HostFault fault = hostCall(operation, &entity))
        return refusedStatus(fault);
    if (HostAccess::isWritable(entity))
        return Yxrt::eOk;
    reportMisuse(std::string(operation) + " on an entity that is not open for write");
    return Yxrt::eNotOpenForWrite;
}

/// Records the call of an accessor, which cannot be refused.
inline void accessorCall(const YxDbEntity& entity, const char* operation) {
    hostCall(operation, &entity);
}

}  // namespace holdfast
