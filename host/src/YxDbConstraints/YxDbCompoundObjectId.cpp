#include <YxDbConstraints/YxDbCompoundObjectId.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"

using holdfast::hostCall;

Yxrt::ErrorStatus YxDbCompoundObjectId::set(const YxDbObjectId& id, YxDbDatabase*) {
    if (const auto fault = hostCall("YxDbCompoundObjectId::set", holdfast::HostAccess::peek(id)))
        return refusedStatus(fault);
    m_path.setLogicalLength(0);
    if (id.isNull())
        return Yxrt::eNullObjectId;
    m_path.append(id);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbCompoundObjectId::setFullPath(const YxArray<YxDbObjectId>& path, YxDbDatabase*) {
    if (const auto fault = hostCall("YxDbCompoundObjectId::setFullPath", nullptr, path.length()))
        return refusedStatus(fault);
    m_path = path;
    return path.isEmpty() ? Yxrt::eInvalidInput : Yxrt::eOk;
}
