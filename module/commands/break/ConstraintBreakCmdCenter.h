#pragma once

#include "core/LvEditDeleteConstraint.h"

#include <map>

class YxDbSpline;

/// Keeps the constraints of one curve true while BREAK cuts it in two.
///
/// Calls:  setPtParam  setFirstCurve  setSecondCurve?  deleteConstraint
/// setFirstCurve compares with the uncut curve, so it runs while that can still be opened by its id. Both pieces are
/// open for write when they are handed over, although the interface calls them const. Owns nothing, keeps nothing open
/// between calls, serves one command.
class HOLDFAST_EXPORT ConstraintBreakCmdCenter : public LvEditDeleteConstraint {
public:
    /// One segment of the polyline before the cut that carries a dependency.
    struct PolySegmentRecord {
        int startIndex = 0;
        int endIndex = 0;
        int startVertexId = 0;                          ///< identifier of vertex startIndex before the cut
        int endVertexId = 0;                            ///< identifier of vertex endIndex before the cut
        YxDbAssocGeomDependency* dependency = nullptr;  ///< not owned
    };

    ConstraintBreakCmdCenter() = default;
    ConstraintBreakCmdCenter(const ConstraintBreakCmdCenter& other) = default;
    ConstraintBreakCmdCenter& operator=(const ConstraintBreakCmdCenter& other) = default;
    // KEEP: the order of the virtual operations is the host's calling table (BreakCentre.KeepsItsSlotOrder).
    ~ConstraintBreakCmdCenter() override;

    /// Records the curve's parameters at the two cut points, the smaller first. Not a curve: nothing changes.
    virtual void setPtParam(const YxDbEntity* curve, const YxGePoint3d& first, const YxGePoint3d& second);
    /// Takes copied dependencies off the first piece and collects what the cut made false, by comparing with the uncut
    /// curve. A curve without constraints: nothing changes.
    virtual void setFirstCurve(const YxDbObjectId& uncutId, const YxDbEntity* firstPiece);
    /// Takes copied dependencies off the second piece; a polyline goes on to setSecondPoly.
    virtual void setSecondCurve(const YxDbEntity* secondPiece);
    /// Gives the second piece's vertices their identifiers from before the cut and moves the dependencies of its
    /// segments over to it.
    virtual void setSecondPoly(const YxDbEntity* secondPiece);

protected:
    int m_lastVertexId = 0;            ///< identifier of the first piece's last vertex
    YxArray<int> m_vertexIds{0, 8};    ///< the uncut polyline's identifiers, in vertex order
    std::map<int, int> m_vertexIdMap;  ///< the segments that the cut touches: start -> end vertex index
    YxArray<PolySegmentRecord> m_polyDepRecords{0, 8};   ///< segments that stay on the first piece
    YxArray<PolySegmentRecord> m_movedDepRecords{0, 8};  ///< segments that go to the second piece
    int m_breakCase = 0;                                 ///< kind of polyline cut, 1 to 6
    double m_startParam = 0.0;                           ///< curve parameter of the first cut point, <= m_endParam
    double m_endParam = 0.0;                             ///< curve parameter of the second cut point

private:
    friend struct ::LvTestAccess;

    /// Sorts the uncut polyline's constrained segments: stays on the first piece, goes to the second, or removed.
    void setFirstPoly(YxDbAssoc2dConstraintGroup* group, const YxArray<YxDbAssocGeomDependency*>& dependencies,
                      const YxDbEntity* uncut, const YxDbEntity* firstPiece);
    /// Records each constrained segment by what the cut makes of it; the removed ones get their status.
    void sortSegments(YxDbAssoc2dConstraintGroup& group, const YxArray<YxDbAssocGeomDependency*>& dependencies,
                      const YxDbPolyline& uncut, const YxDbPolyline& firstPiece);
    /// Collects what goes of the constraints on one segment. True when nothing on it stays.
    bool judgePolyDeleteConstraint(YxDbAssoc2dConstraintGroup* group, const YxDbAssocGeomDependency* dependency,
                                   const YxArray<YxGePoint3d>& before, const YxArray<YxGePoint3d>& after);
    /// Collects the constraints at control points that moved.
    void judgeSplineDeleteConstraint(YxDbAssoc2dConstraintGroup* group,
                                     const YxArray<YxDbAssocGeomDependency*>& dependencies, const YxDbSpline* before,
                                     const YxDbSpline* after);
    /// Deletes at once one coincidence at the second piece's first vertex, if the first piece ends at that vertex.
    void deleteCoincidenceConstraint(const YxDbAssocGeomDependency* dependency, const YxDbPolyline* piece);
};
