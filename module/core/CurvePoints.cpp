#include "core/CurvePoints.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

#include <algorithm>
#include <unordered_set>

namespace holdfast::module {

void CurvePoints::expect(unsigned int curveNodeId) {
    if (!m_points.contains(curveNodeId))
        m_expected.push_back(curveNodeId);
}

std::span<YxConstrainedImplicitPoint* const> CurvePoints::of(unsigned int curveNodeId) {
    if (!m_points.contains(curveNodeId)) {
        m_expected.push_back(curveNodeId);
        gatherExpected();
    }
    return m_points.at(curveNodeId);
}

// One walk over the group: most of its points belong to other curves, and the range of wanted numbers passes them by
// without a look into the map.
void CurvePoints::gatherExpected() {
    YxArray<YxConstrainedGeometry*> geometries;
    m_group.getConstrainedGeometries(geometries);

    const auto [lowest, highest] = std::minmax_element(m_expected.begin(), m_expected.end());
    std::unordered_map<unsigned int, Points> found;
    for (const unsigned int id : m_expected)
        found[id];
    std::unordered_set<const YxConstrainedImplicitPoint*> seen;
    const YxRxClass* pointClass = YxConstrainedImplicitPoint::desc();
    for (YxConstrainedGeometry* geometry : geometries) {
        if (geometry == nullptr || !geometry->isKindOf(pointClass))
            continue;
        auto* point = static_cast<YxConstrainedImplicitPoint*>(geometry);
        const unsigned int curveId = point->constrainedCurveId();
        if (curveId < *lowest || curveId > *highest)
            continue;
        const auto curve = found.find(curveId);
        if (curve != found.end() && seen.insert(point).second)
            curve->second.push_back(point);
    }
    m_points.merge(found);
    m_expected.clear();
}

}  // namespace holdfast::module
