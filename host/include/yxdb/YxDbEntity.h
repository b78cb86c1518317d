#pragma once

#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObject.h>

/// Anything that is drawn.
class YxDbEntity : public YxDbObject {
    YX_DECLARE_CLASS();

public:
    /// Follows a transform that keeps all angles, mirroring ones too (planar entities then turn their normal or flip
    /// their bulges, so that the start stays the start). Any other transform, and for a polyline one that leaves the
    /// xy plane: error status, nothing changes.
    virtual Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix);

protected:
    YxDbEntity() = default;
    YxDbEntity(const YxDbEntity&) = default;

private:
    friend struct holdfast::HostAccess;
};
