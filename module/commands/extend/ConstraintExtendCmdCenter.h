#pragma once

#include "core/LvEditDeleteConstraint.h"

class YxDbSpline;

/// Keeps the constraints of one entity true while EXTEND moves one end of it to a boundary.
///
/// Calls:  setDeleteConstraint  deleteConstraint(edited entity)
/// setDeleteConstraint runs while the entity still has its old geometry; deleteConstraint gets it open, with the new
/// one. Owns the snapshot of a spline; a copy of the centre shares it, so no two copies may both come to their end.
class HOLDFAST_EXPORT ConstraintExtendCmdCenter : public LvEditDeleteConstraint {
public:
    ConstraintExtendCmdCenter() = default;
    // KEEP: the snapshot's pointer is copied, not the spline (ExtendCentre.SharesTheSnapshotWithItsCopy).
    ConstraintExtendCmdCenter(const ConstraintExtendCmdCenter& other) = default;
    ConstraintExtendCmdCenter& operator=(const ConstraintExtendCmdCenter& other) = default;
    ~ConstraintExtendCmdCenter() override;

    /// Collects what will be false once the end has moved. `extendedEnd` is 1 for the start of the curve, 2 for its
    /// end; with any other number no end is named, and a spline counts as extended at its first control point.
    void setDeleteConstraint(const YxDbObjectId& entityId, const YxGePoint3d& newEndPoint, int extendedEnd);

    using LvEditDeleteConstraint::deleteConstraint;
    /// A spline whose number of control points changed loses all its constraints. Then deletes what was collected.
    int deleteConstraint(const YxDbEntity* editedEntity);

protected:
    YxDbSpline* m_splineSnapshot = nullptr;  ///< owned: the spline before the edit, from setDeleteConstraint on

private:
    friend struct ::LvTestAccess;

    /// Collects what goes of the constraints on the segment at the extended end of a polyline.
    void judgePolyLineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                       const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxDbEntity* entity,
                                       const YxGePoint3d& newEndPoint, int extendedEnd);
    /// Collects the constraints at the extended control point of a spline, unless it lies at the new point already.
    void judgeSplineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                     const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxDbEntity* entity,
                                     const YxGePoint3d& newEndPoint, int extendedEnd);
    /// Appends the ends as they will be after the edit; nothing when no end is named.
    void getEditAfterPoints(const YxGePoint3d& startPoint, const YxGePoint3d& endPoint, const YxGePoint3d& newEndPoint,
                            int extendedEnd, YxArray<YxGePoint3d>& afterPoints);

    /// Keeps a copy of a spline for deleteConstraint; a former one is freed.
    void keepSnapshot(const YxDbEntity& entity);
    /// Puts all constraints on the spline in place of what was collected, if there are any.
    void collectAllOf(const YxDbObjectId& splineId);
};
