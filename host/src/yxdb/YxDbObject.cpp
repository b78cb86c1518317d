#include <yxdb/YxDbObject.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::HostAccess;
using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbObject, YxRxObject)

YxDbObject::YxDbObject() : m_data(std::make_unique<YxDbObjectData>()) {
    holdfast::hostState().enter(*this);
}

YxDbObject::YxDbObject(const YxDbObject& other) : YxRxObject(other), m_data(std::make_unique<YxDbObjectData>()) {
    holdfast::hostState().enter(*this);
}

YxDbObject::~YxDbObject() {
    holdfast::HostState::leave(*this);
    // Whoever frees what belongs to another is told, and the owner forgets the object, so that it is freed once.
    YxDbStub* stub = m_data->stub;
    if (stub != nullptr && !HostAccess::data(*stub->database).isClosing) {
        holdfast::reportMisuse("an object that lives in a database is freed");
        (void)stub->object.release();
    }
    if (m_data->ledger != nullptr) {
        holdfast::reportMisuse("a copy that an evaluation header owns is freed");
        std::erase_if(*m_data->ledger, [this](const YxDbObject* copy) { return copy == this; });
    }
}

YxDbObjectId YxDbObject::objectId() const {
    const auto fault = hostCall("YxDbObject::objectId", this);
    return fault ? holdfast::answeredId(fault) : HostAccess::idOf(*this);
}

Yxrt::ErrorStatus YxDbObject::close() {
    if (m_data->stub == nullptr)
        return Yxrt::eNotInDatabase;
    yxrxRelease(this);
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbObject::removePersistentReactor(YxDbObjectId reactor) {
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
    ++HostAccess::data(*m_data->stub->database).opens;
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
    m_data->givenBack = m_data->openModes.empty();
    --HostAccess::data(*m_data->stub->database).opens;
    hostCall("release", this);
}

namespace {

/// Makes the object the opened one, with one reference more, or null.
Yxrt::ErrorStatus open(const char* operation, const YxDbObjectId& id, int mode, bool openErased, YxDbObject*& object) {
    object = HostAccess::peek(id);
    const char* modeName = mode == YxDb::kForWrite ? "write" : "read";
    if (const auto fault = hostCall(operation, object, modeName)) {
        object = holdfast::answeredObject<YxDbObject>(fault);
        if (object == nullptr)
            return refusedStatus(fault);
    }
    if (object == nullptr)
        return Yxrt::eNullObjectId;
    if (HostAccess::data(*object).erased && !openErased) {
        object = nullptr;
        return Yxrt::eWasErased;
    }
    if (mode == YxDb::kForWrite)
        HostAccess::tellChange(*object);
    YxDbObjectData& data = HostAccess::data(*object);
    data.openModes.push_back(mode == YxDb::kForWrite ? 1 : 0);
    data.writeOpens += data.openModes.back();
    data.givenBack = false;
    ++HostAccess::data(*data.stub->database).opens;
    return Yxrt::eOk;
}

}  // namespace

YxSmartPtr<YxDbObject> YxDbObjectIdImpl::openObject(const YxDbObjectId& id, int mode, bool openErased) {
    YxDbObject* object = nullptr;
    open("YxDbObjectIdImpl::openObject", id, mode, openErased, object);
    return YxSmartPtr<YxDbObject>(object, kYxAttachReference);
}

Yxrt::ErrorStatus yxdbOpenObject(YxDbEntity*& entity, const YxDbObjectId& id, int mode, bool openErased) {
    entity = nullptr;
    YxDbObject* opened = nullptr;
    const Yxrt::ErrorStatus status = open("yxdbOpenObject", id, mode, openErased, opened);
    const YxSmartPtr<YxDbObject> object(opened, kYxAttachReference);
    if (object.isNull())
        return status;
    if (!object->isKindOf(YxDbEntity::desc()))
        return Yxrt::eNotApplicable;
    entity = static_cast<YxDbEntity*>(object.get());
    yxrxAddRef(entity);
    return Yxrt::eOk;
}
