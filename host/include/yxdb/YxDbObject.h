#pragma once

#include <memory>

#include <yxbase/YxErrorStatus.h>
#include <yxbase/YxRxObject.h>
#include <yxbase/YxSmartPtr.h>
#include <yxdb/YxDbObjectId.h>

struct YxDbObjectData;

/// Anything that lives in a database under an id. Copies have neither id nor database nor reactors.
class YxDbObject : public YxRxObject {
    YX_DECLARE_CLASS();

public:
    ~YxDbObject() override;

    /// The object's id, null for a copy.
    YxDbObjectId objectId() const;
    /// Ends an open made with yxdbOpenObject.
    Yxrt::ErrorStatus close();
    /// Detaches one reactor; the object must be open for write or not database-resident.
    Yxrt::ErrorStatus removePersistentReactor(YxDbObjectId reactor);

protected:
    YxDbObject();
    YxDbObject(const YxDbObject& other);
    YxDbObject& operator=(const YxDbObject&) = delete;

private:
    friend struct holdfast::HostAccess;
    void referenceTaken() const override;
    void referenceReleased() const override;

    std::unique_ptr<YxDbObjectData> m_data;
};

namespace YxDb {
enum OpenMode : int { kForRead = 0, kForWrite = 1 };
}

/// Opens objects by id: one reference on the object, or null when it cannot be opened.
class YxDbObjectIdImpl {
public:
    static YxSmartPtr<YxDbObject> openObject(const YxDbObjectId& id, int mode, bool openErased);
};

class YxDbEntity;
/// The older way: fills the pointer and answers eOk, or leaves it null; YxDbObject::close() ends the open.
Yxrt::ErrorStatus yxdbOpenObject(YxDbEntity*& entity, const YxDbObjectId& id, int mode, bool openErased);
