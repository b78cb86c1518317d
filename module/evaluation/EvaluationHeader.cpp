#include "evaluation/EvaluationHeader.h"

#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbAssocManager.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbHostApplicationServices.h>

namespace holdfast::module {

YxDbObjectId findGroup(const YxDbObjectId& entity) {
    const YxDbConstraintDataProviderLv* provider = YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance();
    return provider == nullptr ? YxDbObjectId() : provider->getAssocCons2DGroup(entity);
}

AssocConstraintHeader* findHeader(const YxDbObjectId& group) {
    const YxDbConstraintDataProviderLv* provider = YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance();
    return provider == nullptr ? nullptr : provider->getAssocConstraintHeader(group);
}

HeaderOfGroup findHeaderOf(const YxDbObjectId& entity) {
    const YxDbObjectId group = findGroup(entity);
    return {.group = group, .header = group.isValid() ? findHeader(group) : nullptr};
}

bool ensureConverter(AssocConstraintHeader& header, LvEditorType type) {
    if (header.converter == nullptr)
        header.converter = LvEvaDataConverterFactory::createInstance(type);
    return header.converter != nullptr;
}

void markChanged(const YxDbObjectId& group) {
    const auto opened = openAs<YxDbAssoc2dConstraintGroup>(group, YxDb::kForWrite);
    if (opened && opened->status() != kChangedAssocStatus)
        opened->setStatus(kChangedAssocStatus, true, false);
}

void evaluateNetwork() {
    const YxDbHostApplicationServices* services = yxdbHostApplicationServices();
    YxDbDatabase* database = services == nullptr ? nullptr : services->workingDatabase();
    YxDbAssocManager::evaluateTopLevelNetwork(database, nullptr, 0);
}

}  // namespace holdfast::module
