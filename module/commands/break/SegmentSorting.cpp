#include "commands/break/SegmentSorting.h"

#include "core/CurveEnds.h"

#include <yxdb/YxDbPolyline.h>

namespace holdfast::module {
namespace {

bool firstPointInside(int breakCase) {
    return breakCase >= 4;
}

bool secondPointInside(int breakCase) {
    return breakCase != 1 && breakCase != 4;
}

}  // namespace

SegmentFate SegmentSorting::fateOf(SegmentEnds segment, const YxDbAssocGeomDependency& dependency) {
    if (!m_cut.touched.contains(segment.start)) {
        const bool behind = !m_cut.touched.empty() && segment.start > m_cut.touched.begin()->first;
        return behind ? SegmentFate::moves : SegmentFate::stays;
    }
    if (firstPointInside(m_cut.breakCase) && segment.start == m_cut.touched.begin()->first)
        return fateAtFirstPoint(segment, dependency);
    if (secondPointInside(m_cut.breakCase) && segment.end == m_cut.touched.rbegin()->second)
        return fateAtSecondPoint(dependency);
    return SegmentFate::removed;
}

SegmentFate SegmentSorting::fateAtFirstPoint(SegmentEnds segment, const YxDbAssocGeomDependency& dependency) {
    const unsigned int count = m_cut.firstPiece.numVerts();
    if (count - 1 != static_cast<unsigned int>(segment.end))
        return SegmentFate::stays;
    const Points before =
        segmentEnds(m_cut.uncut, static_cast<unsigned int>(segment.start), static_cast<unsigned int>(segment.end));
    const Points after = segmentEnds(m_cut.firstPiece, count - 2, count - 1);
    return judgeSegment(m_survey, &dependency, before, after, m_collected) ? SegmentFate::idle : SegmentFate::stays;
}

// KEEP: the uncut polyline's last segment is compared, whichever segment was cut
// (BreakPolylineSegments.ComparesTheLastSegmentWhicheverTheSecondPointCut).
SegmentFate SegmentSorting::fateAtSecondPoint(const YxDbAssocGeomDependency& dependency) {
    const unsigned int count = m_cut.uncut.numVerts();
    const Points before = segmentEnds(m_cut.uncut, count - 2, count - 1);
    YxGePoint3d cutPoint;
    m_cut.uncut.getPointAtParam(m_cut.endParam, cutPoint);
    const Points after = endPair(cutPoint, before[1]);
    return judgeSegment(m_survey, &dependency, before, after, m_collected) ? SegmentFate::idle : SegmentFate::moves;
}

}  // namespace holdfast::module
