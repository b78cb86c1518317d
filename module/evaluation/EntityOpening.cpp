#include "evaluation/EntityOpening.h"

namespace holdfast::module {

YxSmartPtr<YxDbEntity> openEntity(const YxDbObjectId& id, int mode) {
    return YxDbObjectIdImpl::openObject(id, mode, false);
}

YxDbEntity* copyOf(const YxDbEntity& entity) {
    return static_cast<YxDbEntity*>(entity.clone());
}

}  // namespace holdfast::module
