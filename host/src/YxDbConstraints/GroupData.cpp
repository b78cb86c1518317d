#include "host/src/YxDbConstraints/GroupData.h"

#include "host/model/state/HostAccess.h"

using holdfast::HostAccess;

void YxDbConstraintGroupData::add(std::unique_ptr<YxConstrainedGeometry> geometry) {
    YxConstrainedGeometry* added = geometry.get();
    m_nodes.push_back({std::move(geometry), true, false});
    m_geometries.push_back(added);
    if (const void* stub = HostAccess::stub(HostAccess::dependencyOf(*added)))
        m_byDependency.emplace(stub, added);
    if (added->isKindOf(YxConstrainedImplicitPoint::desc())) {
        auto* point = static_cast<YxConstrainedImplicitPoint*>(added);
        m_pointsByCurve.emplace(HostAccess::curveId(*point), point);
    }
}

void YxDbConstraintGroupData::add(std::unique_ptr<YxGeomConstraint> constraint) {
    m_nodes.push_back({std::move(constraint), true, true});
}

void YxDbConstraintGroupData::forget(const YxGeomConstraint& constraint) {
    m_nodes[HostAccess::nodeId(constraint) - kFirstNodeId].live = false;
}

void YxDbConstraintGroupData::removeGeometryOn(const YxDbObjectId& dependency) {
    YxConstrainedGeometry* geometry = geometryOn(dependency);
    if (geometry == nullptr)
        return;
    const unsigned int nodeId = HostAccess::nodeId(*geometry);
    m_nodes[nodeId - kFirstNodeId].live = false;
    for (const YxConstrainedImplicitPoint* point : pointsOf(nodeId))
        m_nodes[HostAccess::nodeId(*point) - kFirstNodeId].live = false;
    m_someAreGone = true;
    m_pointsByCurve.erase(nodeId);
    m_byDependency.erase(HostAccess::stub(dependency));
}

const std::vector<YxConstrainedGeometry*>& YxDbConstraintGroupData::geometries() const {
    if (m_someAreGone)
        std::erase_if(m_geometries, [&](const YxConstrainedGeometry* geometry) {
            return !m_nodes[HostAccess::nodeId(*geometry) - kFirstNodeId].live;
        });
    m_someAreGone = false;
    return m_geometries;
}

YxGraphNode* YxDbConstraintGroupData::node(unsigned int nodeId) const {
    if (nodeId < kFirstNodeId || nodeId - kFirstNodeId >= m_nodes.size())
        return nullptr;
    const Node& found = m_nodes[nodeId - kFirstNodeId];
    return found.live ? found.object.get() : nullptr;
}

YxConstrainedGeometry* YxDbConstraintGroupData::geometryOn(const YxDbObjectId& dependency) const {
    const auto found = m_byDependency.find(HostAccess::stub(dependency));
    return found == m_byDependency.end() ? nullptr : found->second;
}

YxConstrainedImplicitPoint* YxDbConstraintGroupData::implicitPoint(unsigned int curveId, YxDb::ImplicitPointType type,
                                                                   int pointIndex) const {
    const auto [first, last] = m_pointsByCurve.equal_range(curveId);
    for (auto it = first; it != last; ++it)
        if (HostAccess::isPoint(*it->second, type, pointIndex))
            return it->second;
    return nullptr;
}

std::vector<YxGeomConstraint*> YxDbConstraintGroupData::liveConstraints() const {
    std::vector<YxGeomConstraint*> constraints;
    for (const Node& node : m_nodes)
        if (node.live && node.isConstraint)
            constraints.push_back(static_cast<YxGeomConstraint*>(node.object.get()));
    return constraints;
}

std::vector<YxConstrainedImplicitPoint*> YxDbConstraintGroupData::pointsOf(unsigned int curveId) const {
    std::vector<YxConstrainedImplicitPoint*> points;
    const auto [first, last] = m_pointsByCurve.equal_range(curveId);
    for (auto it = first; it != last; ++it)
        points.push_back(it->second);
    return points;
}
