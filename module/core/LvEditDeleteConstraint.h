#pragma once

#include "core/Export.h"

#include <yxbase/YxArray.h>
#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbObjectId.h>

class YxConstrainedGeometry;
class YxConstrainedImplicitPoint;
class YxDbAssoc2dConstraintGroup;
class YxDbAssocGeomDependency;
class YxDbEntity;
class YxDbObject;
class YxDbPolyline;
class YxGeomConstraint;
struct LvTestAccess;

/// Collects the constraints that an edit of a curve made false and deletes them in one go.
///
/// Calls: a derived centre's set-up while the edit runs, then deleteConstraint once.
/// Set-up finds the group and fills the collection; nothing is deleted before deleteConstraint. Constraints,
/// dependencies and geometries are the host's and stay usable while its command runs; no object is kept open.
class HOLDFAST_EXPORT LvEditDeleteConstraint {
public:
    LvEditDeleteConstraint() = default;
    LvEditDeleteConstraint(const LvEditDeleteConstraint& other) = default;
    LvEditDeleteConstraint& operator=(const LvEditDeleteConstraint& other) = default;
    virtual ~LvEditDeleteConstraint();

    /// Deletes what was collected through the group, in order, and empties the collection. Returns how many constraints
    /// were handed to the group; 0, and the collection as it is, when the group cannot be opened for write.
    virtual int deleteConstraint();

    /// True when a geometry dependency stands among the entity's reactors. No group is consulted.
    static bool hasAssocConstraint(YxDbObjectId entityId);
    /// Detaches the geometry dependencies from an object that is open for write; other reactors stay.
    static void removeGeomPersistentReactor(YxDbObject* object);

protected:
    /// The entity's geometry dependencies in reactor order, repeated where they repeat. Null entity: nothing changes.
    void getGeomPersistentReactors(const YxDbEntity* entity, YxArray<YxDbAssocGeomDependency*>& dependencies);
    /// The constraints on a dependency's geometry and on the implicit points of it: each once, a composite in place of
    /// its member, internal ones left out.
    void getConstraintsFromDependency(YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                                      YxArray<YxGeomConstraint*>& constraints);
    /// Adds the constraints on all of an entity's dependencies, each once; what the array held stays.
    void getConstraintsTypeFromEntityId(YxDbAssoc2dConstraintGroup* group, const YxDbObjectId& entityId,
                                        YxArray<YxGeomConstraint*>& constraints);

    // The rules compare the ends of a curve before and after an edit, each pair as start and end. Pairs of another
    // length, a null group, dependency or constraint: the constraint is kept.

    /// Collects what goes of the constraints on a line's dependencies.
    void judgeLineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                   const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                   const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);
    /// Collects every constraint at a point of the ray when its base point moved.
    void judgeRayDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                  const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxGePoint3d& before,
                                  const YxGePoint3d& after);
    /// Collects what goes of the constraints on an arc's, circle's or ellipse's dependencies.
    void judgeArcDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                  const YxArray<YxDbAssocGeomDependency*>& dependencies,
                                  const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);
    /// True when the constraint on a line goes.
    bool processLineIsDeleteConstraint(const YxDbAssoc2dConstraintGroup* group,
                                       const YxDbAssocGeomDependency* dependency, const YxArray<YxGePoint3d>& before,
                                       const YxArray<YxGePoint3d>& after, YxGeomConstraint* constraint);
    /// True when the constraint on an arc, circle or ellipse goes.
    bool processArcIsDeleteConstraint(const YxDbAssoc2dConstraintGroup* group,
                                      const YxDbAssocGeomDependency* dependency, const YxArray<YxGePoint3d>& before,
                                      const YxArray<YxGePoint3d>& after, YxGeomConstraint* constraint);

    /// The control points of the dependency's spline at which the constraint holds, repeated where it reaches one
    /// twice. A smooth joint is asked for all of its coincidences.
    void getSplineConstraintIndexs(const YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                                   const YxGeomConstraint* constraint, YxArray<int>& indices);
    /// The vertex indices of the segment that the dependency names. False, and the indices as they were, when neither
    /// of its vertices is there; a polyline of two vertices has but one segment.
    bool getPolylineSegmentPtIdx(const YxDbObjectId& dependencyId, const YxDbPolyline* polyline, int& startIndex,
                                 int& endIndex);

    YxArray<YxGeomConstraint*> m_deleteConstraints{0, 8};  ///< collected: top-level constraints, not owned
    YxDbObjectId m_groupId;                                ///< null until set-up found the group

private:
    friend struct ::LvTestAccess;

    /// The implicit points of the dependency's curve at which the constraint holds.
    void getImplicitPointByConstraint(const YxDbAssoc2dConstraintGroup* group,
                                      const YxDbAssocGeomDependency* dependency, const YxGeomConstraint* constraint,
                                      YxArray<YxConstrainedGeometry*>& points);
    /// True when a constraint at this point goes.
    bool processOneImplicitPointOnEntity(const YxConstrainedImplicitPoint* point, const YxGePoint3d& startBefore,
                                         const YxGePoint3d& endBefore, const YxGePoint3d& startAfter,
                                         const YxGePoint3d& endAfter);
    /// True when a constraint between these two points of one arc or ellipse goes.
    bool processTwoImplicitPointOnArcOrEllipse(const YxArray<YxConstrainedGeometry*>& points,
                                               const YxGePoint3d& startBefore, const YxGePoint3d& endBefore,
                                               const YxGePoint3d& startAfter, const YxGePoint3d& endAfter);
};
