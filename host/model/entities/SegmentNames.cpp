#include "host/model/entities/SegmentNames.h"

#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"

namespace holdfast {

SegmentNames::SegmentNames(const YxDbPolyline& polyline) {
    const std::size_t vertices = EntityAccess::vertexCount(polyline);
    for (std::size_t i = 0; i < EntityAccess::segmentCount(polyline); ++i)
        m_segments.emplace(std::pair(EntityAccess::vertex(polyline, i).identifier,
                                     EntityAccess::vertex(polyline, (i + 1) % vertices).identifier),
                           static_cast<int>(i));
}

int SegmentNames::segmentOf(const YxDbAssocGeomDependency& dependency) const {
    const YxDbAssocPersSubentId* name = HostAccess::persistentId(dependency);
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return -1;
    const auto* edge = static_cast<const YxDbAssocEdgePersSubentId*>(name);
    const auto found = m_segments.find({HostAccess::startVertexId(*edge), HostAccess::endVertexId(*edge)});
    return found == m_segments.end() ? -1 : found->second;
}

}  // namespace holdfast
