#include <YxDbConstraints/YxDbAssocManager.h>

#include <YxDbConstraints/AssocConstraintHeader.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"

using holdfast::HostAccess;
using holdfast::hostState;

namespace {

/// Without an evaluator groups count as solved as they are.
bool resetStatuses(const YxDbDatabase& database) {
    for (const YxDbObjectId& id : HostAccess::allIds(database)) {
        YxDbObject* object = HostAccess::peek(id);
        if (!HostAccess::isErased(id) && object->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
            HostAccess::setStatus(static_cast<YxDbAssocAction&>(*object), kUpToDateAssocStatus);
    }
    return true;
}

}  // namespace

bool YxDbAssocManager::evaluateTopLevelNetwork(YxDbDatabase* database, YxDbAssocEvaluationCallback*, int mode) {
    if (holdfast::hostCall("YxDbAssocManager::evaluateTopLevelNetwork", nullptr, mode) || database == nullptr)
        return false;
    if (AssocConstraintHeader::m_isForbidEvaStatic) {
        AssocConstraintHeader::m_isForbidEvaStatic = false;
        return resetStatuses(*database);
    }
    return hostState().evaluator ? hostState().evaluator(*database) : resetStatuses(*database);
}
