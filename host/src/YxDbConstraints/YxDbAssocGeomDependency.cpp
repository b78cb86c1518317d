#include <YxDbConstraints/YxDbAssocGeomDependency.h>

#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"
#include "host/src/YxDbConstraints/Subentities.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::EntityAccess;
using holdfast::HostAccess;
using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbAssocGeomDependency, YxDbAssocDependency)
YX_IMPLEMENT_CLASS(YxDbAssocPersSubentId, YxRxObject)
YX_IMPLEMENT_CLASS(YxDbAssocEdgePersSubentId, YxDbAssocPersSubentId)
YX_IMPLEMENT_CLASS(YxDbAssocPersSubentIdPE, YxRxObject)

int YxDbAssocEdgePersSubentId::index1() const {
    hostCall("YxDbAssocEdgePersSubentId::index1", this);
    return m_index1;
}

int YxDbAssocEdgePersSubentId::index2() const {
    hostCall("YxDbAssocEdgePersSubentId::index2", this);
    return m_index2;
}

unsigned int YxDbAssocGeomDependency::subentType() const {
    hostCall("YxDbAssocGeomDependency::subentType", this);
    return m_subentType;
}

const YxDbAssocPersSubentId* YxDbAssocGeomDependency::persistentSubentId() const {
    const auto fault = hostCall("YxDbAssocGeomDependency::persistentSubentId", this);
    return fault ? holdfast::answeredObject<const YxDbAssocPersSubentId>(fault) : m_persistentId.get();
}

Yxrt::ErrorStatus YxDbAssocGeomDependency::setSubentity(const YxDbSubentId& subentity) {
    if (const auto fault = hostCall("YxDbAssocGeomDependency::setSubentity", this, subentity.type(), subentity.index()))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("setSubentity on a dependency that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    YxDbObject* object = HostAccess::peek(HostAccess::objectOf(*this));
    if (object == nullptr || !object->isKindOf(YxDbEntity::desc()))
        return Yxrt::eNotApplicable;
    const auto& entity = static_cast<const YxDbEntity&>(*object);
    if (subentity.index() < 1 || subentity.index() > holdfast::partCount(entity, YxDb::kEdgeSubentType))
        return Yxrt::eOutOfRange;
    m_subentType = subentity.type();
    if (!object->isKindOf(YxDbPolyline::desc()))
        return Yxrt::eOk;
    auto& polyline = static_cast<YxDbPolyline&>(*object);
    const auto first = static_cast<std::size_t>(subentity.index() - 1);
    const std::size_t second = (first + 1) % EntityAccess::vertexCount(polyline);
    const int firstId = holdfast::referencedIdentifier(polyline, first);
    m_persistentId = HostAccess::makeEdgeId(firstId, holdfast::referencedIdentifier(polyline, second));
    return Yxrt::eOk;
}
