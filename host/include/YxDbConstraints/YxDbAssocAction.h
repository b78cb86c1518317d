#pragma once

#include <YxDbConstraints/YxDbAssocStatus.h>
#include <yxdb/YxDbObject.h>

/// Something that the host evaluates when what it depends on has changed.
class YxDbAssocAction : public YxDbObject {
    YX_DECLARE_CLASS();

public:
    YxDbAssocStatus status() const;
    /// notify: tell the owning network too; owned: set the status of owned actions too.
    Yxrt::ErrorStatus setStatus(YxDbAssocStatus status, bool notify = true, bool owned = false);

protected:
    YxDbAssocAction() = default;

private:
    friend struct holdfast::HostAccess;
    YxDbAssocStatus m_status = kUpToDateAssocStatus;
};
