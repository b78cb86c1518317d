#pragma once

#include "core/LvEditDeleteConstraint.h"

class YxDbSpline;

namespace holdfast::module {
class GroupSurvey;
}

/// Keeps the constraints of two curves, of two segments of a polyline or of two polylines true while FILLET trims them
/// and joins them with an arc.
///
/// Two curves:            setEntityInfo  (the edit)  deleteConstraint
/// One polyline:          setSelfPolyLineDate  (the edit)  setSelfPolyLineConstraint  deleteConstraint
/// Polyline and curve:    setOnePolyLineDate  (the edit)  setOnePolyLineConstraint  setReversePolyLineConstraint?
///                        deleteConstraint
/// Two polylines:         setTwoPolyLineDate  (ends moved)  setFirstPolyLineConstraint?  setSecondPolyLineConstraint?
///                        setTwoPolyLineCloneDate  (joined)  setTwoPolyLineConstraint  deleteConstraint
///
/// The entities are the host's, open all the while and changed in place; polylines are open for write, also where the
/// interface calls them const. Owns the clones it compares with; a copy of the centre shares them, so no two copies may
/// both come to their end. deleteConstraint makes the centre ready for a further fillet.
class HOLDFAST_EXPORT ConstraintFilletCmdCenter : public LvEditDeleteConstraint {
public:
    /// What a fillet of two segments f < g of one polyline does to it.
    enum PolylineTrimMode : int {
        kNothing = 0,
        kCorner = 1,         ///< neighbours: the arc is inserted at their common vertex
        kBetween = 2,        ///< the part between them vanishes
        kClosingCorner = 3,  ///< closed, first and last segment: the arc closes the polyline
        kBehind = 4,         ///< closed: all behind the second segment vanishes
        kClosing = 5         ///< open, first and last segment: the polyline becomes closed
    };

    /// The constraints of a spline before the fillet. Entry k of both arrays belongs to the k-th constraint, in the
    /// order of the spline's dependencies and of the constraints on each.
    struct SplineConstraint {
        const YxDbEntity* spline = nullptr;
        int controlPointCount = 0;
        YxArray<YxArray<int>> indices{0, 8};         ///< of the control points that the constraint uses
        YxArray<YxArray<YxGePoint3d>> points{0, 8};  ///< where these were
    };

    /// A polyline's segment that carries a dependency.
    struct PolyInfo {
        int startIndex = 0;
        int endIndex = 0;
        int startVertexId = 0;
        int endVertexId = 0;
        YxGePoint3d startPoint;
        YxGePoint3d endPoint;
        YxDbAssocGeomDependency* dependency = nullptr;  ///< not owned
    };

    ConstraintFilletCmdCenter() = default;
    // KEEP: the clones' pointers are copied, not the clones (FilletCentre.SharesItsClonesWithItsCopy).
    ConstraintFilletCmdCenter(const ConstraintFilletCmdCenter& other) = default;
    ConstraintFilletCmdCenter& operator=(const ConstraintFilletCmdCenter& other) = default;
    ~ConstraintFilletCmdCenter() override;

    /// Compares the recorded entities with their clones and collects what the fillet made false, deletes what was
    /// collected and returns how many, then forgets the fillet.
    int deleteConstraint() override;

    /// Records the constrained ones of two curves before their fillet. A polyline among them: nothing is recorded.
    void setEntityInfo(const YxDbEntity* first, const YxDbEntity* second);

    // KEEP: the spelling "Date" is the interface's (FilletCentre.IsSpeltAsHostsCallIt).

    /// Records two segments of one polyline by their start vertices, in travel order, before their fillet, and marks
    /// the dependencies of segments that will vanish. `flag`: a sharp corner, no arc.
    void setSelfPolyLineDate(const YxDbEntity* polyline, unsigned int firstVertex, unsigned int secondVertex,
                             PolylineTrimMode mode, bool flag);
    /// After that fillet: judges the two segments and points identifiers and dependencies at them again.
    void setSelfPolyLineConstraint(const YxDbEntity* polyline);
    /// Records two polylines before they are filleted with each other.
    void setTwoPolyLineDate(const YxDbPolyline* first, const YxDbPolyline* second);
    /// Keeps clones of both just before they are joined.
    void setTwoPolyLineCloneDate(const YxDbPolyline* first, const YxDbPolyline* second);
    /// After the second polyline was joined to the first: moves the second's dependencies over to the joined one and
    /// points them, and those of a first polyline that was turned round, at their segments there.
    // KEEP: the flags work in opposite senses: the first polyline was turned round, the second was not
    // (FilletTwoPolylines.TurnsTheFirstOnTrueAndTheSecondOnFalse).
    void setTwoPolyLineConstraint(YxDbPolyline* joined, bool reverseFirst, const YxDbPolyline* second,
                                  bool keepSecondDirection);
    /// After the fillet of the first recorded polyline with another curve: judges the filleted segment and marks the
    /// dependencies of the segments before it (`dropBefore`) or behind it, which were cut away. The point is not used.
    void setFirstPolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore, const unsigned int& segmentStart,
                                    const YxGePoint3d& point);
    /// The same for the second recorded polyline.
    void setSecondPolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore, const unsigned int& segmentStart,
                                     const YxGePoint3d& point);
    /// The same for the only recorded polyline.
    void setOnePolyLineConstraint(YxDbPolyline* polyline, const bool& dropBefore, const unsigned int& segmentStart,
                                  const YxGePoint3d& point);
    /// Records a polyline before it is filleted with another curve.
    void setOnePolyLineDate(const YxDbPolyline* polyline);
    /// After a fillet that turned the first recorded polyline round: points its dependencies at their segments again.
    void setReversePolyLineConstraint(YxDbPolyline* polyline);

protected:
    unsigned int m_firstVertexIndex = 0;   ///< start vertex of the lower filleted segment of one polyline
    unsigned int m_secondVertexIndex = 0;  ///< start vertex of the higher one
    bool m_selfFilletFlag = false;         ///< a sharp corner, no arc
    PolylineTrimMode m_trimMode = kNothing;
    YxArray<PolyInfo> m_firstPolyInfos{0, 8};
    YxArray<PolyInfo> m_secondPolyInfos{0, 8};
    YxArray<SplineConstraint> m_splineConstraints{0, 8};
    YxArray<const YxDbEntity*> m_entities{0, 8};  ///< constrained entities of setEntityInfo, not owned
    YxArray<YxDbEntity*> m_entityClones{0, 8};    ///< owned: each entity before the fillet, or two polylines

private:
    friend struct ::LvTestAccess;

    /// Collects what the fillet made false on the recorded entities.
    void setDeleteConstraint();
    /// Makes sure that the group is known. False when the entity has none.
    bool findGroup(const YxDbObjectId& entityId);
    /// Appends a clone of the entity, or null when it cannot be copied.
    void keepClone(const YxDbEntity& entity);
    /// Collects what the fillet made false on one recorded entity.
    void judgeEntity(holdfast::module::GroupSurvey& survey, int index,
                     const YxArray<YxDbAssocGeomDependency*>& dependencies);
    /// Records where the constraints of a spline hold.
    void setSplineInfo(const YxDbEntity* spline);
    /// Collects the constraints of which a recorded control point moved; all of them when they cannot be paired.
    void judgeSplineDeleteConstraint(const YxDbAssoc2dConstraintGroup* group, SplineConstraint splineInfo,
                                     const YxDbEntity* spline, const YxArray<YxGeomConstraint*>& constraints);
    /// Deletes at once one coincidence at a point of the dependency's segment.
    void deleteCoincidenceConstraint(YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency);
    /// Back to the state after construction, but for the group and the collection.
    void reset();
    /// Collects what goes of the constraints on one segment. True when nothing on it stays.
    bool judgePolyDeleteConstraint(YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                                   const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);
    void setOnePolyLineConstraint(YxArray<PolyInfo>& infos, YxDbPolyline* polyline, const bool& dropBefore,
                                  const unsigned int& segmentStart, const YxGePoint3d& point);
    /// Turns a clone round, its identifiers with its vertices, and renews the records of its segments.
    void setReverseCloneInfo(YxDbPolyline* clone, YxArray<PolyInfo>& infos);
};
