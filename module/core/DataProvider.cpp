#include "core/DataProvider.h"

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>

namespace holdfast::module {

const YxDbConstraintDataProviderLv* runningDataProvider() {
    if (!YxDbConstraintDataProviderLv::isSrvInit())
        return nullptr;
    return YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance();
}

}  // namespace holdfast::module
