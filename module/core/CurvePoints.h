#pragma once

#include <span>
#include <unordered_map>
#include <vector>

class YxConstrainedImplicitPoint;
class YxDbAssoc2dConstraintGroup;

namespace holdfast::module {

/// The implicit points of a group's curves, found with one walk over the group for all curves that are asked together.
class CurvePoints {
public:
    explicit CurvePoints(const YxDbAssoc2dConstraintGroup& group) : m_group(group) {}

    /// The next walk looks for this curve's points too.
    void expect(unsigned int curveNodeId);
    /// The curve's points in the group's order, each once. Walks the group unless the curve's points are known.
    std::span<YxConstrainedImplicitPoint* const> of(unsigned int curveNodeId);
    /// Asks the group anew from now on, since its geometries may have changed.
    void forget() { m_points.clear(); }

private:
    using Points = std::vector<YxConstrainedImplicitPoint*>;
    void gatherExpected();

    const YxDbAssoc2dConstraintGroup& m_group;
    std::unordered_map<unsigned int, Points> m_points;  // of every curve looked for so far
    std::vector<unsigned int> m_expected;
};

}  // namespace holdfast::module
