#include <BondKit/YxConstraintModelHelp.h>

#include <unordered_set>

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbEntity.h>

#include "host/model/entities/EntityGeometry.h"
#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"

using holdfast::HostAccess;
using holdfast::hostCall;

YxConstraintModelHelp::YxConstraintModelHelp() = default;
YxConstraintModelHelp::~YxConstraintModelHelp() = default;

int YxConstraintModelHelp::deleteConstraints(const YxArray<YxDbObjectId>& entities) {
    if (hostCall("YxConstraintModelHelp::deleteConstraints", nullptr, entities.length()))
        return 0;
    int deleted = 0;
    for (const YxDbObjectId& id : entities)
        for (const auto& [group, constraint] : holdfast::constraintsTouching(id))
            if (HostAccess::deleteConstraint(*group, constraint) == Yxrt::eOk)
                ++deleted;
    return deleted;
}

bool YxConstraintModelHelp::checkEntHasGeomType(const YxDbEntity* entity, unsigned int type) const {
    if (hostCall("YxConstraintModelHelp::checkEntHasGeomType", entity, type) || entity == nullptr)
        return false;
    for (const YxConstrainedGeometry* geometry : holdfast::geometriesOf(*entity))
        if (static_cast<unsigned int>(holdfast::geometryKind(*geometry)) == type)
            return true;
    return false;
}
