#include <yxdb/YxDbEntity.h>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"

YX_IMPLEMENT_CLASS(YxDbEntity, YxDbObject)

Yxrt::ErrorStatus YxDbEntity::transformBy(const YxGeMatrix3d&) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    return Yxrt::eNotApplicable;
}
