#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

/// The nodes of a constraint group. Every question but the listings takes constant time on average.
struct YxDbConstraintGroupData {
    /// Geometries and constraints share one sequence of numbers, which does not start at 0.
    unsigned int nextNodeId() const { return kFirstNodeId + static_cast<unsigned int>(m_nodes.size()); }
    void add(std::unique_ptr<YxConstrainedGeometry> geometry);
    void add(std::unique_ptr<YxGeomConstraint> constraint);

    /// Takes the geometry on a dependency out of the group, with its implicit points.
    void removeGeometryOn(const YxDbObjectId& dependency);

    YxGraphNode* node(unsigned int nodeId) const;
    /// Null for an id without geometry.
    YxConstrainedGeometry* geometryOn(const YxDbObjectId& dependency) const;
    YxConstrainedImplicitPoint* implicitPoint(unsigned int curveId, YxDb::ImplicitPointType type, int pointIndex) const;
    /// A curve's implicit points, in no particular order.
    std::vector<YxConstrainedImplicitPoint*> pointsOf(unsigned int curveId) const;
    /// In the order in which they were added.
    const std::vector<YxConstrainedGeometry*>& geometries() const;
    std::vector<YxGeomConstraint*> liveConstraints() const;
    void forget(const YxGeomConstraint& constraint);

    AssocConstraintHeader header;

private:
    static constexpr unsigned int kFirstNodeId = 101;
    struct Node {
        std::unique_ptr<YxGraphNode> object;  // deleted constraints stay in memory until the group goes
        bool live = true;
        bool isConstraint = false;
    };

    std::vector<Node> m_nodes;
    mutable std::vector<YxConstrainedGeometry*> m_geometries;  // those that are gone leave it when it is read
    mutable bool m_someAreGone = false;
    std::unordered_map<const void*, YxConstrainedGeometry*> m_byDependency;
    std::unordered_multimap<unsigned int, YxConstrainedImplicitPoint*> m_pointsByCurve;
};
