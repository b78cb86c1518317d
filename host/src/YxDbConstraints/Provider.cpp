#include "host/src/YxDbConstraints/Provider.h"

#include <algorithm>

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/EntityAccess.h"
#include "host/model/entities/SegmentNames.h"
#include "host/model/state/HostAccess.h"
#include "host/src/HostAnswers.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/YxDbConstraints/Subentities.h"

using holdfast::hostCall;
using holdfast::hostState;

namespace holdfast {

namespace {

YxDbAssoc2dConstraintGroup* groupNamed(const YxDbObjectId& id) {
    YxDbObject* object = HostAccess::peek(id);
    if (object == nullptr || HostAccess::isErased(id) || !object->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        return nullptr;
    return static_cast<YxDbAssoc2dConstraintGroup*>(object);
}

/// The geometry dependencies of an object that carry constrained geometry, each with its group.
template <class Visit>
void eachConstrainedPart(const YxDbObject& object, Visit visit) {
    for (const YxDbObjectId& reactor : HostAccess::reactors(object)) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        if (candidate == nullptr || !candidate->isKindOf(YxDbAssocGeomDependency::desc()))
            continue;
        const auto& dependency = static_cast<const YxDbAssocGeomDependency&>(*candidate);
        const YxDbAssoc2dConstraintGroup* group = groupNamed(HostAccess::actionOf(dependency));
        if (group != nullptr && HostAccess::geometryOn(*group, reactor) != nullptr && !visit(dependency, *group))
            return;
    }
}

}  // namespace

YxDbObjectId groupOf(const YxDbObjectId& entity) {
    YxDbObjectId found;
    if (const YxDbObject* object = HostAccess::peek(entity))
        eachConstrainedPart(*object, [&](const auto&, const YxDbAssoc2dConstraintGroup& group) {
            found = HostAccess::idOf(group);
            return false;
        });
    return found;
}

std::vector<int> constrainedVertices(const YxDbPolyline& polyline) {
    const SegmentNames names(polyline);
    const auto count = static_cast<int>(EntityAccess::vertexCount(polyline));
    std::vector<int> vertices;
    eachConstrainedPart(polyline, [&](const YxDbAssocGeomDependency& dependency, const auto&) {
        if (const int segment = names.segmentOf(dependency); segment >= 0) {
            vertices.push_back(segment);
            vertices.push_back((segment + 1) % count);
        }
        return true;
    });
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    return vertices;
}

namespace {

class DataProvider : public YxDbConstraintDataProviderLv {
public:
    YxDbObjectId getAssocCons2DGroup(const YxDbObjectId& entity) const override {
        const auto fault = hostCall("YxDbConstraintDataProviderLv::getAssocCons2DGroup", HostAccess::peek(entity));
        return fault ? answeredId(fault) : groupOf(entity);
    }
    AssocConstraintHeader* getAssocConstraintHeader(const YxDbObjectId& group) const override {
        if (hostCall("YxDbConstraintDataProviderLv::getAssocConstraintHeader", HostAccess::peek(group)))
            return nullptr;
        if (group.isNull())
            return hostState().headerOfNullGroup;
        YxDbAssoc2dConstraintGroup* found = groupNamed(group);
        return found == nullptr ? nullptr : HostAccess::header(*found);
    }
};

}  // namespace

}  // namespace holdfast

YxDbConstraintDataProviderLv::~YxDbConstraintDataProviderLv() = default;

bool YxDbConstraintDataProviderLv::isSrvInit() {
    return !hostCall("YxDbConstraintDataProviderLv::isSrvInit", nullptr) && hostState().constraintServiceUp;
}

YxDbConstraintDataProviderLv* YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance() {
    static holdfast::DataProvider provider;
    if (hostCall("YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance", nullptr))
        return nullptr;
    return &provider;
}
