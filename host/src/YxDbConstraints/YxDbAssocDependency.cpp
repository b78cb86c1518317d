#include <YxDbConstraints/YxDbAssocDependency.h>

#include "host/src/HostAccess.h"
#include "host/src/HostCall.h"
#include "host/src/yxbase/ImplementClass.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::HostAccess;
using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbAssocDependency, YxDbObject)

YxDbAssocStatus YxDbAssocDependency::status() const {
    hostCall("YxDbAssocDependency::status", this);
    return m_status;
}

Yxrt::ErrorStatus YxDbAssocDependency::setStatus(YxDbAssocStatus status, bool notify) {
    if (const auto fault = hostCall("YxDbAssocDependency::setStatus", this, static_cast<int>(status), notify))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("setStatus on a dependency that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    m_status = status;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbAssocDependency::attachToObject(const YxDbCompoundObjectId& object) {
    const YxArray<YxDbObjectId>& path = HostAccess::path(object);
    YxDbObject* target = path.isEmpty() ? nullptr : HostAccess::peek(path.last());
    if (const auto fault = hostCall("YxDbAssocDependency::attachToObject", this, target))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("attachToObject on a dependency that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    if (target == nullptr)
        return Yxrt::eNotInDatabase;
    if (m_object.isValid())
        return Yxrt::eInvalidInput;
    m_object = path.last();
    HostAccess::addReactor(*target, objectId());
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbAssocDependency::detachFromObject() {
    if (const auto fault = hostCall("YxDbAssocDependency::detachFromObject", this))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("detachFromObject on a dependency that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    YxDbObject* object = HostAccess::peek(m_object);
    if (object == nullptr)
        return Yxrt::eNotApplicable;
    HostAccess::data(*object).reactors.remove(objectId());
    m_object = YxDbObjectId();
    return Yxrt::eOk;
}

YxDbObjectId YxDbAssocDependency::owningAction() const {
    return hostCall("YxDbAssocDependency::owningAction", this) ? YxDbObjectId() : m_owningAction;
}

Yxrt::ErrorStatus YxDbAssocDependency::getDependenciesOnObject(const YxDbObject* object, bool reading, bool writing,
                                                               YxArray<YxDbObjectId>& dependencies) {
    dependencies.setLogicalLength(0);
    if (const auto fault = hostCall("YxDbAssocDependency::getDependenciesOnObject", object, reading, writing))
        return refusedStatus(fault);
    if (object == nullptr)
        return Yxrt::eInvalidInput;
    const std::vector<YxDbObjectId> reactors = HostAccess::reactors(*object);
    if (dependencies.physicalLength() < static_cast<int>(reactors.size()))
        dependencies.setPhysicalLength(static_cast<int>(reactors.size()));
    for (const YxDbObjectId& reactor : reactors) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        if (candidate != nullptr && candidate->isKindOf(YxDbAssocDependency::desc()))
            dependencies.append(reactor);
    }
    return Yxrt::eOk;
}
