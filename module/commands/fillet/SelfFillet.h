#pragma once

#include "commands/fillet/SegmentRecords.h"
#include "core/GroupSurvey.h"

class YxDbAssoc2dConstraintGroup;

namespace holdfast::module {

/// A fillet of two segments of one polyline, after the edit.
struct SelfFillet {
    int firstVertex = 0;   ///< start vertex of the lower segment
    int secondVertex = 0;  ///< start vertex of the higher segment
    bool sharp = false;    ///< a corner without an arc
    ConstraintFilletCmdCenter::PolylineTrimMode mode = ConstraintFilletCmdCenter::kNothing;
};

/// Writes identifiers and re-points dependencies so that they name the segments that are left, and deletes the
/// coincidence that would tie a filleted corner together.
class SelfFilletRemapping {
public:
    /// `group` is the surveyed group, open for write; `kept` are the records of segments on which something stays.
    SelfFilletRemapping(const SelfFillet& fillet, YxDbPolyline& polyline, const YxArray<PolyInfo>& kept,
                        GroupSurvey& survey, YxDbAssoc2dConstraintGroup& group,
                        const OnceList<YxGeomConstraint>& collected)
        : m_fillet(fillet),
          m_polyline(polyline),
          m_kept(kept),
          m_survey(survey),
          m_group(group),
          m_collected(collected) {}

    void apply();

private:
    void corner();
    void between();
    void closingCorner();
    void behind();
    void closing();

    bool keptOnlyFrom(int startVertex) const;
    bool keptBoth() const { return m_kept.length() == 2; }
    void setIdentifier(int index, int identifier);
    void loosenCornerOf(const PolyInfo& record);

    SelfFillet m_fillet;
    YxDbPolyline& m_polyline;
    const YxArray<PolyInfo>& m_kept;
    GroupSurvey& m_survey;
    YxDbAssoc2dConstraintGroup& m_group;
    const OnceList<YxGeomConstraint>& m_collected;
};

}  // namespace holdfast::module
