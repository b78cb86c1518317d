#include "tests/module/commands/break/PlainBreak.h"

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbPolyline.h>

#include <cmath>

namespace holdfast::plain {
namespace {

void takeGeomDependenciesOff(const YxDbEntity* piece) {
    for (const YxDbAssocGeomDependency* dependency : dependenciesOf(*piece))
        const_cast<YxDbEntity*>(piece)->removePersistentReactor(dependency->objectId());
}

int caseOf(double p1, double p2) {
    const double i1 = std::trunc(p1);
    const double i2 = std::trunc(p2);
    const bool firstAtVertex = std::abs(p1 - i1) <= 1e-6;
    const bool secondAtVertex = std::abs(p2 - i2) <= 1e-6;
    if (firstAtVertex)
        return secondAtVertex ? 1 : i1 == i2 ? 2 : 3;
    return secondAtVertex ? 4 : i1 == i2 ? 5 : 6;
}

}  // namespace

void PlainPolylineBreak::setFirstCurve(const YxDbObjectId& uncutId, const YxDbEntity* piece) {
    const YxDbObjectId groupId =
        YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance()->getAssocCons2DGroup(uncutId);
    if (!groupId.isValid())
        return;
    m_group = static_cast<YxDbAssoc2dConstraintGroup*>(HostAccess::peek(groupId));
    const YxSmartPtr<YxDbPolyline> open = YxDbObjectIdImpl::openObject(uncutId, YxDb::kForRead, false);
    const YxDbPolyline& uncut = *open;
    if (constraintsOnEntity(*m_group, uncut).empty())
        return;
    takeGeomDependenciesOff(piece);
    auto& first = *static_cast<YxDbPolyline*>(const_cast<YxDbEntity*>(piece));

    for (int i = 0; i < static_cast<int>(uncut.numVerts()); ++i)
        m_vertexIds.push_back(identifierAt(uncut, i));
    m_case = caseOf(m_startParam, m_endParam);
    const int i1 = static_cast<int>(m_startParam);
    const int i2 = static_cast<int>(m_endParam);
    const int inside = m_case == 1 || m_case == 4 ? 0 : 1;
    for (int k = 0; k < (i1 == i2 ? 1 : i2 - i1 + inside); ++k)
        m_touched[i1 + k] = i1 + k + 1;
    for (YxDbAssocGeomDependency* dependency : dependenciesOf(uncut))
        sort(*dependency, uncut, first);
    for (const Record& record : m_staying) {
        setIdentifier(first, record.ends.start, record.startVertexId);
        setIdentifier(first, record.ends.end, record.endVertexId);
    }
    m_lastVertexId = identifierAt(first, static_cast<int>(first.numVerts()) - 1);
}

void PlainPolylineBreak::sort(YxDbAssocGeomDependency& dependency, const YxDbPolyline& uncut,
                              const YxDbPolyline& piece) {
    Record record{.ends = {}, .startVertexId = 0, .endVertexId = 0, .dependency = &dependency};
    if (!segmentOf(dependency, uncut, record.ends))
        return;
    const auto [s, e] = record.ends;
    record.startVertexId = identifierAt(uncut, s);
    record.endVertexId = identifierAt(uncut, e);
    const int last = static_cast<int>(uncut.numVerts()) - 1;
    const int pieceLast = static_cast<int>(piece.numVerts()) - 1;
    if (!m_touched.contains(s)) {
        (s > m_touched.begin()->first ? m_moved : m_staying).push_back(record);
    } else if (m_case >= 4 && s == m_touched.begin()->first) {
        if (pieceLast != e || !segmentRule(*m_group, dependency, {pointAt(uncut, s), pointAt(uncut, e)},
                                           {pointAt(piece, pieceLast - 1), pointAt(piece, pieceLast)}, m_collected))
            m_staying.push_back(record);
    } else if (m_case != 1 && m_case != 4 && e == m_touched.rbegin()->second) {
        YxGePoint3d cut;
        uncut.getPointAtParam(m_endParam, cut);
        if (!segmentRule(*m_group, dependency, {pointAt(uncut, last - 1), pointAt(uncut, last)},
                         {cut, pointAt(uncut, last)}, m_collected))
            m_moved.push_back(record);
    } else {
        openForWrite(dependency)->setStatus(kSegmentRemovedAssocStatus, true);
    }
}

void PlainPolylineBreak::setSecondCurve(const YxDbEntity* entity) {
    takeGeomDependenciesOff(entity);
    if (m_moved.empty() || m_touched.empty())
        return;
    auto& piece = *static_cast<YxDbPolyline*>(const_cast<YxDbEntity*>(entity));
    writeIdentifiers(piece);
    for (const Record& record : m_moved) {
        const auto open = openForWrite(*record.dependency);
        YxDbCompoundObjectId path;
        path.set(piece.objectId());
        open->detachFromObject();
        open->attachToObject(path);
        loosen(*open, piece);
    }
}

void PlainPolylineBreak::writeIdentifiers(YxDbPolyline& piece) const {
    const int n = static_cast<int>(piece.numVerts());
    const int length = static_cast<int>(m_vertexIds.size());
    const auto [K, V] = *m_touched.rbegin();
    const auto id = [&](int index) { return m_vertexIds[static_cast<std::size_t>(index)]; };
    const bool insideAtSecond = m_case == 2 || m_case == 3 || m_case == 5 || m_case == 6;
    if (insideAtSecond && n == 2 && length >= 2) {
        setIdentifier(piece, 0, id(length - 1) - 1);
        setIdentifier(piece, 1, id(length - 1));
    } else if (m_case == 3 || m_case == 5) {
        for (int i = 1; V - 1 + n <= length && n >= 2 && i < n; ++i)
            setIdentifier(piece, i, id(i + V - 1));
    } else if (insideAtSecond) {
        for (int i = 0; n + K <= length && i < n; ++i)
            setIdentifier(piece, i, id(i + K));
    } else {
        for (int i = 0; n + V <= length && i < n; ++i)
            setIdentifier(piece, i, id(i + V));
    }
}

void PlainPolylineBreak::loosen(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& piece) {
    Ends ends;
    const int identifier = identifierAt(piece, 0);
    if (!segmentOf(dependency, piece, ends) || ends.start != 0 || identifier < 1 || identifier != m_lastVertexId)
        return;
    const YxSmartPtr<YxDbAssoc2dConstraintGroup> open =
        YxDbObjectIdImpl::openObject(m_group->objectId(), YxDb::kForWrite, false);
    deleteOneCoincidence(*open, dependency, m_collected);
}

int PlainPolylineBreak::deleteConstraint() {
    return deleteAll(m_group, m_collected);
}

}  // namespace holdfast::plain
