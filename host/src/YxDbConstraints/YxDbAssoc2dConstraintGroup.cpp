#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

#include <algorithm>

#include "host/src/HostAccess.h"
#include "host/src/HostCall.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/YxDbConstraints/Subentities.h"
#include "host/src/yxbase/ImplementClass.h"

using holdfast::FaultKind;
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
        if (fault.kind == FaultKind::answerOther)
            geometry = dynamic_cast<YxConstrainedGeometry*>(fault.other);
        return refusedStatus(fault);
    }
    if (dependency == nullptr)
        return Yxrt::eInvalidInput;
    geometry = m_groupData->geometryOn(dependency->objectId());
    if (geometry != nullptr && type != nullptr)
        geometry = m_groupData->implicitPoint(geometry->nodeId(), *type, index);
    return geometry == nullptr ? Yxrt::eInvalidInput : Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbAssoc2dConstraintGroup::getConstrainedGeometry(const YxDbFullSubentPath& path,
                                                                     YxConstrainedGeometry*& geometry, bool) const {
    geometry = nullptr;
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getConstrainedGeometry(path)", this)) {
        if (fault.kind == FaultKind::answerOther)
            geometry = dynamic_cast<YxConstrainedGeometry*>(fault.other);
        return refusedStatus(fault);
    }
    geometry = holdfast::geometryOnPart(*this, path);
    return geometry == nullptr ? Yxrt::eInvalidInput : Yxrt::eOk;
}

void YxDbAssoc2dConstraintGroup::getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const {
    geometries.setLogicalLength(0);
    if (hostCall("YxDbAssoc2dConstraintGroup::getConstrainedGeometries", this))
        return;
    const std::vector<YxConstrainedGeometry*>& all = m_groupData->geometries();
    geometries.setLogicalLength(static_cast<int>(all.size()));
    std::copy(all.begin(), all.end(), geometries.begin());
}

YxGraphNode* YxDbAssoc2dConstraintGroup::getGroupNodePtr(unsigned int nodeId) const {
    if (const auto fault = hostCall("YxDbAssoc2dConstraintGroup::getGroupNodePtr", this, nodeId))
        return fault.kind == FaultKind::answerOther ? dynamic_cast<YxGraphNode*>(fault.other) : nullptr;
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
