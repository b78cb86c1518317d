#include "commands/break/PieceJoint.h"

#include "core/OpenAs.h"
#include "core/PointCoincidence.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbPolyline.h>

namespace holdfast::module {

void PieceJoint::loosen(const YxDbAssocGeomDependency* dependency) {
    if (dependency == nullptr || !beginsAtSharedVertex(*dependency))
        return;
    if (const auto group = openAs<YxDbAssoc2dConstraintGroup>(m_groupId, YxDb::kForWrite))
        deleteOnePointCoincidence(surveyOf(*group), *group, dependency, m_collected);
}

bool PieceJoint::beginsAtSharedVertex(const YxDbAssocGeomDependency& dependency) {
    SegmentEnds ends;
    if (!m_finder.find(dependency.objectId(), ends) || ends.start != 0)
        return false;
    const int identifier = vertexIdentifier(*m_piece, 0);
    return identifier >= 1 && identifier == m_firstPieceEnd;
}

GroupSurvey& PieceJoint::surveyOf(const YxDbAssoc2dConstraintGroup& group) {
    if (!m_survey || &m_survey->group() != &group) {
        m_survey.emplace(group);
        if (m_expected != nullptr)
            m_survey->expect(*m_expected);
    }
    return *m_survey;
}

}  // namespace holdfast::module
