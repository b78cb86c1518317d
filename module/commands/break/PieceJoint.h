#pragma once

#include "core/GroupSurvey.h"
#include "core/SegmentFinder.h"

#include <optional>

class YxDbAssoc2dConstraintGroup;

namespace holdfast::module {

/// The vertex at which the first piece of a cut polyline ends and the second begins, if they still share one.
class PieceJoint {
public:
    /// `firstPieceEnd` is the identifier of the first piece's last vertex.
    PieceJoint(const YxDbObjectId& groupId, int firstPieceEnd, const YxDbPolyline* secondPiece,
               YxArray<YxGeomConstraint*>& collected)
        : m_groupId(groupId),
          m_firstPieceEnd(firstPieceEnd),
          m_piece(secondPiece),
          m_finder(secondPiece),
          m_collected(collected) {}

    /// One walk over the group will do for these dependencies, once one of them needs it.
    void expect(const YxArray<YxDbAssocGeomDependency*>& dependencies) { m_expected = &dependencies; }
    /// If the dependency stands on the second piece's first segment, and the first piece ends at the same vertex:
    /// deletes at once the first coincidence there that was not collected.
    void loosen(const YxDbAssocGeomDependency* dependency);

private:
    bool beginsAtSharedVertex(const YxDbAssocGeomDependency& dependency);
    GroupSurvey& surveyOf(const YxDbAssoc2dConstraintGroup& group);

    YxDbObjectId m_groupId;
    int m_firstPieceEnd;
    const YxDbPolyline* m_piece;
    SegmentFinder m_finder;
    OnceList<YxGeomConstraint> m_collected;
    const YxArray<YxDbAssocGeomDependency*>* m_expected = nullptr;
    std::optional<GroupSurvey> m_survey;
};

}  // namespace holdfast::module
