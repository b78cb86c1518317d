#pragma once

#include "core/KeepOrDelete.h"
#include "core/SegmentFinder.h"

#include <map>

class YxDbPolyline;

namespace holdfast::module {

/// What becomes of a segment of a cut polyline, and of its dependency.
enum class SegmentFate {
    stays,    ///< on the first piece
    moves,    ///< to the second piece
    removed,  ///< the cut took the segment away
    idle      ///< cut, and no constraint on it survived
};

/// Tells for each segment of a polyline what a cut makes of it.
class SegmentSorting {
public:
    struct Cut {
        const YxDbPolyline& uncut;
        const YxDbPolyline& firstPiece;
        const std::map<int, int>& touched;  ///< start -> end vertex index of the segments that the cut touches
        int breakCase = 0;
        double endParam = 0.0;  ///< of the second cut point
    };
    SegmentSorting(GroupSurvey& survey, const Cut& cut, Collected& collected)
        : m_survey(survey), m_cut(cut), m_collected(collected) {}

    /// Judges the constraints of a segment in which a cut point lies, and collects what goes.
    SegmentFate fateOf(SegmentEnds segment, const YxDbAssocGeomDependency& dependency);

private:
    SegmentFate fateAtFirstPoint(SegmentEnds segment, const YxDbAssocGeomDependency& dependency);
    SegmentFate fateAtSecondPoint(const YxDbAssocGeomDependency& dependency);

    GroupSurvey& m_survey;
    Cut m_cut;
    Collected& m_collected;
};

}  // namespace holdfast::module
