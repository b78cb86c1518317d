#include <YxDbConstraints/YxDbAssocDependency.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"
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
    if (HostAccess::isErased(path.last()))
        return Yxrt::eWasErased;
    if (m_object.isValid())
        return Yxrt::eInvalidInput;
    m_object = path.last();
    HostAccess::addReactor(*target, HostAccess::idOf(*this));
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
    HostAccess::tellChange(*object);
    HostAccess::data(*object).reactors.remove(HostAccess::idOf(*this));
    m_object = YxDbObjectId();
    return Yxrt::eOk;
}

YxDbObjectId YxDbAssocDependency::owningAction() const {
    const auto fault = hostCall("YxDbAssocDependency::owningAction", this);
    return fault ? holdfast::answeredId(fault) : m_owningAction;
}

Yxrt::ErrorStatus YxDbAssocDependency::getDependenciesOnObject(const YxDbObject* object, bool reading, bool writing,
                                                               YxArray<YxDbObjectId>& dependencies) {
    const auto fault = hostCall("YxDbAssocDependency::getDependenciesOnObject", object, reading, writing);
    std::vector<YxDbObjectId> found;
    if (object != nullptr && (reading || writing))  // each of them does both
        found = HostAccess::reactors(*object);
    std::erase_if(found, [](const YxDbObjectId& reactor) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        return candidate == nullptr || !candidate->isKindOf(YxDbAssocDependency::desc());
    });
    holdfast::answerList(dependencies, found, fault);
    if (fault)
        return holdfast::listStatus(fault);
    return object == nullptr ? Yxrt::eInvalidInput : Yxrt::eOk;
}
