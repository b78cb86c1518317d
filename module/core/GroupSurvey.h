#pragma once

#include "core/CurvePoints.h"
#include "core/OnceList.h"

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

#include <span>
#include <unordered_map>

class YxConstrainedGeometry;
class YxDbAssocGeomDependency;
class YxGeomConstraint;

namespace holdfast::module {

/// Answers for one operation which constraints and points of a group hang on which dependency. Remembers what the
/// operations of the module leave as it is: which points a curve has, and by which coincidence a composite holds.
class GroupSurvey {
public:
    explicit GroupSurvey(const YxDbAssoc2dConstraintGroup& group) : m_group(group), m_points(group) {}

    const YxDbAssoc2dConstraintGroup& group() const { return m_group; }
    /// The geometry on the dependency, or null.
    YxConstrainedGeometry* geometryOn(const YxDbAssocGeomDependency* dependency) const;
    /// The implicit points of the geometry, if it is a curve, in the group's order, each once.
    std::span<YxConstrainedImplicitPoint* const> pointsOf(const YxConstrainedGeometry& geometry);
    /// One walk over the group will do for all of these dependencies. Null ones are skipped.
    void expect(const YxArray<YxDbAssocGeomDependency*>& dependencies);
    /// Asks the group anew from now on.
    void forgetPoints() { m_points.forget(); }

    /// The constraints on a dependency's geometry and its implicit points: a composite in place of its member, internal
    /// ones left out, each once.
    void constraintsOn(const YxDbAssocGeomDependency* dependency, YxArray<YxGeomConstraint*>& constraints);
    /// Adds the constraints on all of an entity's dependencies, each once.
    void addConstraintsOnEntity(const YxDbObjectId& entityId, YxArray<YxGeomConstraint*>& constraints);
    /// True when there is any of these. Lists none, and as a rule has its answer from the first curve.
    bool hasConstraintsOnEntity(const YxDbObjectId& entityId);

    /// The points of the dependency's curve at which the constraint holds; of a composite, those of its first owned
    /// coincidence. None: the constraint holds on the curve as a whole.
    void implicitPointsOn(const YxDbAssocGeomDependency& dependency, const YxGeomConstraint& constraint,
                          YxArray<YxConstrainedGeometry*>& points);
    /// True when the geometry is an implicit point whose curve stands on the dependency.
    bool isPointOn(const YxConstrainedGeometry* geometry, const YxDbAssocGeomDependency& dependency) const;

private:
    using GeometryList = OnceList<YxConstrainedGeometry>;
    /// What stands on the entity's dependencies, one for each that has geometry.
    YxArray<YxConstrainedGeometry*> geometriesOnEntity(const YxDbObjectId& entityId) const;
    void addWithPoints(YxConstrainedGeometry& geometry, GeometryList& geometries);
    const YxGeomConstraint* pointHolder(const YxGeomConstraint& constraint);

    const YxDbAssoc2dConstraintGroup& m_group;
    CurvePoints m_points;
    std::unordered_map<const YxGeomConstraint*, const YxGeomConstraint*> m_firstCoincidences;  // by composite
};

}  // namespace holdfast::module
