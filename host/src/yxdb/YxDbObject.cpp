#include <yxdb/YxDbObject.h>

#include "host/src/HostAccess.h"
#include "host/src/HostCall.h"
#include "host/src/yxbase/ImplementClass.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::HostAccess;
using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbObject, YxRxObject)

YxDbObject::YxDbObject() : m_data(std::make_unique<YxDbObjectData>()) {
    holdfast::hostState().copies.insert(this);
}

YxDbObject::YxDbObject(const YxDbObject& other) : YxRxObject(other), m_data(std::make_unique<YxDbObjectData>()) {
    holdfast::hostState().copies.insert(this);
}

YxDbObject::~YxDbObject() {
    holdfast::hostState().copies.erase(this);
}

YxDbObjectId YxDbObject::objectId() const {
    return HostAccess::idOf(m_data->stub);
}

Yxrt::ErrorStatus YxDbObject::close() {
    if (m_data->stub == nullptr)
        return Yxrt::eNotInDatabase;
    yxrxRelease(this);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbObject::removePersistentReactor(const YxDbObjectId& reactor) {
    if (const auto fault = hostCall("YxDbObject::removePersistentReactor", this, HostAccess::peek(reactor)))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("removePersistentReactor on an object that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    return m_data->reactors.remove(reactor) ? Yxrt::eOk : Yxrt::eInvalidInput;
}

void YxDbObject::referenceTaken() const {
    if (m_data->stub == nullptr)
        return;
    if (m_data->openModes.empty()) {
        holdfast::reportMisuse("a reference is taken on an object that is not open");
        return;
    }
    m_data->openModes.push_back(m_data->openModes.back());
    m_data->writeOpens += m_data->openModes.back();
}

void YxDbObject::referenceReleased() const {
    if (m_data->stub == nullptr)
        return;
    if (m_data->openModes.empty()) {
        holdfast::reportMisuse("a reference is given back on an object that is not open");
        return;
    }
    m_data->writeOpens -= m_data->openModes.back();
    m_data->openModes.pop_back();
    hostCall("release", this);
}

namespace {

/// The opened object with one reference more, or null.
YxDbObject* open(const char* operation, const YxDbObjectId& id, int mode, bool openErased) {
    YxDbObject* object = HostAccess::peek(id);
    const char* modeName = mode == YxDb::kForWrite ? "write" : "read";
    if (const auto fault = hostCall(operation, object, modeName))
        object = fault.kind == holdfast::FaultKind::answerOther ? dynamic_cast<YxDbObject*>(fault.other) : nullptr;
    if (object == nullptr || (HostAccess::data(*object).erased && !openErased))
        return nullptr;
    YxDbObjectData& data = HostAccess::data(*object);
    data.openModes.push_back(mode == YxDb::kForWrite ? 1 : 0);
    data.writeOpens += data.openModes.back();
    return object;
}

}  // namespace

YxSmartPtr<YxDbObject> YxDbObjectIdImpl::openObject(const YxDbObjectId& id, int mode, bool openErased) {
    return YxSmartPtr<YxDbObject>(open("YxDbObjectIdImpl::openObject", id, mode, openErased), kYxAttachReference);
}

Yxrt::ErrorStatus yxdbOpenObject(YxDbEntity*& entity, const YxDbObjectId& id, int mode, bool openErased) {
    entity = nullptr;
    const YxSmartPtr<YxDbObject> object(open("yxdbOpenObject", id, mode, openErased), kYxAttachReference);
    if (object.isNull())
        return id.isNull() ? Yxrt::eNullObjectId : Yxrt::eFailed;
    if (!object->isKindOf(YxDbEntity::desc()))
        return Yxrt::eNotApplicable;
    entity = static_cast<YxDbEntity*>(object.get());
    yxrxAddRef(entity);
    return Yxrt::eOk;
}
