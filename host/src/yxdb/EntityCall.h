#pragma once

#include <yxbase/YxErrorStatus.h>
#include <yxdb/YxDbEntity.h>

#include "host/model/state/HostCall.h"

namespace holdfast {

/// A complaint for an entity that was opened, has been given back for the last time and is used all the same. One that
/// was never opened is the host's own, which uses it as it likes.
void reportUseAfterRelease(const YxDbEntity& entity, const char* operation);

/// What every operation of an entity begins with.
template <class... Arguments>
HostFault entityCall(const YxDbEntity& entity, const char* operation, const Arguments&... arguments) {
    if (hostObserver() == nullptr)
        return {};
    reportUseAfterRelease(entity, operation);
    return hostCall(operation, &entity, arguments...);
}

/// Every reading operation with a status asks first: anything but eOk is what it must answer without doing anything.
template <class... Arguments>
[[nodiscard]] Yxrt::ErrorStatus readCall(const YxDbEntity& entity, const char* operation,
                                         const Arguments&... arguments) {
    const HostFault fault = entityCall(entity, operation, arguments...);
    return fault ? refusedStatus(fault) : Yxrt::eOk;
}

/// eNotOpenForWrite, and a complaint, for an entity that lives in a database and is not open for write.
[[nodiscard]] Yxrt::ErrorStatus openForWriteStatus(const YxDbEntity& entity, const char* operation);

/// As readCall, for operations that change the entity.
template <class... Arguments>
[[nodiscard]] Yxrt::ErrorStatus writeCall(const YxDbEntity& entity, const char* operation,
                                          const Arguments&... arguments) {
    if (const Yxrt::ErrorStatus refused = readCall(entity, operation, arguments...))
        return refused;
    return openForWriteStatus(entity, operation);
}

/// Records the call of an accessor. One that has no answer for "cannot" does its work even when told to fail.
inline void accessorCall(const YxDbEntity& entity, const char* operation) {
    entityCall(entity, operation);
}

/// The copy that clone() answers: a new object of the same kind, unless the host was told to answer otherwise.
template <class Kind, class Copy>
YxRxObject* cloneCall(const Kind& entity, const Copy& copy) {
    const HostFault fault = entityCall(entity, "YxRxObject::clone");
    return fault ? fault.other : copy();
}

}  // namespace holdfast
