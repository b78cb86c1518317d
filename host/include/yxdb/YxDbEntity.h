#pragma once

#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObject.h>

/// Anything that is drawn.
class YxDbEntity : public YxDbObject {
    YX_DECLARE_CLASS();

public:
    virtual Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix);

protected:
    YxDbEntity() = default;
    YxDbEntity(const YxDbEntity&) = default;

private:
    friend struct holdfast::HostAccess;
};
