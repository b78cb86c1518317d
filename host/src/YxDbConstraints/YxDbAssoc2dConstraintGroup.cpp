#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/ImplementClass.h"
#include "host/src/HostAnswers.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/YxDbConstraints/Subentities.h"

using holdfast::HostAccess;
using holdfast::hostCall;

YX_IMPLEMENT_CLASS(YxDbAssoc2dConstraintGroup, YxDbAssocAction)

YxDbAssoc2dConstraintGroup::YxDbAssoc2dConstraintGroup() : m_groupData(std::make_unique<YxDbConstraintGroupData>()) {}

YxDbAssoc2dConstraintGroup::~YxDbAssoc2dConstraintGroup() = default;

Yxrt::ErrorStatus YxDbAssoc2dConstraintGroup::getConstrainedGeometry(const YxDbAssocGeomDependency* dependency,
                                                                     YxConstrainedGeometry*& geometry,
                                                                     YxDb::ImplicitPointType* type, int index,
                                                                     bool) const {
    geometry = nullptr;
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getConstrainedGeometry", this, dependency)) {
        geometry = holdfast::answeredObject<YxConstrainedGeometry>(fault);
        return geometry == nullptr ? refusedStatus(fault) : Yxrt::eOk;
    }
    if (dependency == nullptr)
        return Yxrt::eInvalidInput;
    geometry = m_groupData->geometryOn(HostAccess::idOf(*dependency));
    if (geometry != nullptr && type != nullptr)
        geometry = m_groupData->implicitPoint(HostAccess::nodeId(*geometry), *type, index);
    return geometry == nullptr ? Yxrt::eInvalidInput : Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbAssoc2dConstraintGroup::getConstrainedGeometry(const YxDbFullSubentPath& path,
                                                                     YxConstrainedGeometry*& geometry, bool) const {
    geometry = nullptr;
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getConstrainedGeometry(path)", this)) {
        geometry = holdfast::answeredObject<YxConstrainedGeometry>(fault);
        return geometry == nullptr ? refusedStatus(fault) : Yxrt::eOk;
    }
    geometry = holdfast::geometryOnPart(*this, path);
    return geometry == nullptr ? Yxrt::eInvalidInput : Yxrt::eOk;
}

void YxDbAssoc2dConstraintGroup::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getConstrainedGeometries", this);
    holdfast::answerList(geometries, m_groupData->geometries(), fault);
}

YxGraphNode* YxDbAssoc2dConstraintGroup::getGroupNodePtr(unsigned int nodeId) const {
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getGroupNodePtr", this, nodeId))
        return holdfast::answeredObject<YxGraphNode>(fault);
    return m_groupData->node(nodeId);
}

Yxrt::ErrorStatus YxDbAssoc2dConstraintGroup::deleteConstraint(YxGeomConstraint* constraint) {
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::deleteConstraint", this, constraint))
        return refusedStatus(fault);
    if (!HostAccess::isWritable(*this)) {
        holdfast::reportMisuse("deleteConstraint on a group that is not open for write");
        return Yxrt::eNotOpenForWrite;
    }
    return HostAccess::deleteConstraint(*this, constraint);
}
