#pragma once

#include <YxDbConstraints/YxDbAssocStatus.h>
#include <YxDbConstraints/YxDbCompoundObjectId.h>
#include <yxbase/YxArray.h>
#include <yxdb/YxDbObject.h>

/// Links an action to an object that it depends on; stands among that object's persistent reactors.
class YxDbAssocDependency : public YxDbObject {
    YX_DECLARE_CLASS();

public:
    YxDbAssocStatus status() const;
    Yxrt::ErrorStatus setStatus(YxDbAssocStatus status, bool notify = true);
    /// Appends the dependency to the object's reactors; the object must be database-resident.
    Yxrt::ErrorStatus attachToObject(const YxDbCompoundObjectId& object);
    /// Takes the dependency out of its object's reactors. Persistent name and status stay.
    Yxrt::ErrorStatus detachFromObject();
    YxDbObjectId owningAction() const;

    /// The dependencies on an object that read it, write it or both. Fills the array from its start.
    static Yxrt::ErrorStatus getDependenciesOnObject(const YxDbObject* object, bool reading, bool writing,
                                                     YxArray<YxDbObjectId>& dependencies);

protected:
    YxDbAssocDependency() = default;

private:
    friend struct holdfast::HostAccess;
    YxDbAssocStatus m_status = kUpToDateAssocStatus;
    YxDbObjectId m_owningAction;
    YxDbObjectId m_object;
};
