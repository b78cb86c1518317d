#include "host/src/YxDbConstraints/Subentities.h"

#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/model/state/ImplementClass.h"
#include "host/model/state/ProtocolExtensions.h"

namespace holdfast {

namespace {

const YxDbPolyline* asPolyline(const YxDbEntity& entity) {
    return entity.isKindOf(YxDbPolyline::desc()) ? static_cast<const YxDbPolyline*>(&entity) : nullptr;
}

/// The protocol extension by which every entity lists its parts.
class PartLister : public YxDbAssocPersSubentIdPE {
public:
    Yxrt::ErrorStatus getAllSubentities(const YxDbEntity* entity, YxDb::SubentType type,
                                        YxArray<YxDbSubentId>& parts) const override {
        parts.setLogicalLength(0);
        if (const auto fault = hostCall("YxDbAssocPersSubentIdPE::getAllSubentities", entity, unsigned(type)))
            return refusedStatus(fault);
        if (entity == nullptr)
            return Yxrt::eInvalidInput;
        const int count = partCount(*entity, type);
        for (int i = 1; i <= count; ++i)
            parts.append(YxDbSubentId(type, i));
        return Yxrt::eOk;
    }
};

struct RegisteredPartLister {
    PartLister lister;
    RegisteredPartLister() { setProtocolExtension(YxDbEntity::desc(), YxDbAssocPersSubentIdPE::desc(), &lister); }
};
RegisteredPartLister g_partLister;

}  // namespace

int partCount(const YxDbEntity& entity, unsigned int type) {
    if (type != YxDb::kEdgeSubentType)
        return 0;
    const YxDbPolyline* polyline = asPolyline(entity);
    return polyline == nullptr ? 1 : static_cast<int>(EntityAccess::segmentCount(*polyline));
}

YxDbSubentId partOf(const YxDbAssocGeomDependency& dependency, const YxDbEntity& entity) {
    const YxDbPolyline* polyline = asPolyline(entity);
    if (polyline == nullptr)
        return {HostAccess::subentType(dependency), 1};
    const YxDbAssocPersSubentId* name = HostAccess::persistentId(dependency);
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return {};
    const auto* edge = static_cast<const YxDbAssocEdgePersSubentId*>(name);
    const int segment = segmentNamed(*polyline, HostAccess::startVertexId(*edge), HostAccess::endVertexId(*edge));
    return segment < 0 ? YxDbSubentId() : YxDbSubentId(YxDb::kEdgeSubentType, segment + 1);
}

int referencedIdentifier(YxDbPolyline& polyline, std::size_t vertex) {
    const int known = EntityAccess::vertex(polyline, vertex).identifier;
    return known != 0 ? known : EntityAccess::numberVertex(polyline, vertex);
}

int segmentNamed(const YxDbPolyline& polyline, int startVertexId, int endVertexId) {
    const std::size_t vertices = EntityAccess::vertexCount(polyline);
    for (std::size_t i = 0; i < EntityAccess::segmentCount(polyline); ++i)
        if (EntityAccess::vertex(polyline, i).identifier == startVertexId &&
            EntityAccess::vertex(polyline, (i + 1) % vertices).identifier == endVertexId)
            return static_cast<int>(i);
    return -1;
}

YxConstrainedGeometry* geometryOnPart(const YxDbAssoc2dConstraintGroup& group, const YxDbFullSubentPath& path) {
    const YxDbObject* object = HostAccess::peek(path.objectId());
    if (object == nullptr || !object->isKindOf(YxDbEntity::desc()))
        return nullptr;
    for (const YxDbObjectId& reactor : HostAccess::reactors(*object)) {
        const YxDbObject* candidate = HostAccess::peek(reactor);
        if (candidate == nullptr || !candidate->isKindOf(YxDbAssocGeomDependency::desc()))
            continue;
        const auto& dependency = static_cast<const YxDbAssocGeomDependency&>(*candidate);
        YxConstrainedGeometry* geometry = HostAccess::geometryOn(group, reactor);
        if (geometry != nullptr && partOf(dependency, static_cast<const YxDbEntity&>(*object)) == path.subentId())
            return geometry;
    }
    return nullptr;
}

}  // namespace holdfast
