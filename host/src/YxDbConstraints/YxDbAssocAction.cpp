#include <YxDbConstraints/YxDbAssocAction.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/model/state/ImplementClass.h"

using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbAssocAction, YxDbObject)

YxDbAssocStatus YxDbAssocAction::status() const {
    hostCall("YxDbAssocAction::status", this);
    return m_status;
}

Yxrt::ErrorStatus YxDbAssocAction::setStatus(YxDbAssocStatus status, bool notify, bool owned) {
    if (const auto fault = hostCall("YxDbAssocAction::setStatus", this, static_cast<int>(status), notify, owned))
        return refusedStatus(fault);
    if (!holdfast::HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("setStatus on an action that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    m_status = status;
    return Yxrt::eOk;
}
