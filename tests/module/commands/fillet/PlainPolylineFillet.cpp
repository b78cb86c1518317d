#include "tests/module/commands/fillet/PlainPolylineFillet.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbPolyline.h>

#include <algorithm>

namespace holdfast::plain {
namespace {

constexpr int kRemoved = 5;

void markRemoved(const YxDbAssocGeomDependency& dependency) {
    openForWrite(dependency)->setStatus(static_cast<YxDbAssocStatus>(kRemoved), true);
}

bool isRemoved(const YxDbAssocGeomDependency& dependency) {
    return static_cast<int>(dependency.status()) == kRemoved;
}

void pointAtPart(const YxDbAssocGeomDependency& dependency, int index) {
    if (!isRemoved(dependency))
        openForWrite(dependency)->setSubentity(YxDbSubentId(dependency.subentType(), index));
}

YxDbPolyline& writable(const YxDbEntity* polyline) {
    return static_cast<YxDbPolyline&>(const_cast<YxDbEntity&>(*polyline));
}

}  // namespace

PlainPolylineFillet::Records PlainPolylineFillet::recordsOf(const YxDbPolyline& polyline) {
    Records records;
    for (YxDbAssocGeomDependency* dependency : dependenciesOf(polyline)) {
        if (records.empty())
            m_group = static_cast<YxDbAssoc2dConstraintGroup*>(HostAccess::peek(dependency->owningAction()));
        Record record{.ends = {}, .startVertexId = 0, .endVertexId = 0, .points = {}, .dependency = dependency};
        if (!segmentOf(*dependency, polyline, record.ends))
            continue;
        record.startVertexId = identifierAt(polyline, record.ends.start);
        record.endVertexId = identifierAt(polyline, record.ends.end);
        record.points = {pointAt(polyline, record.ends.start), pointAt(polyline, record.ends.end)};
        records.push_back(record);
    }
    return records;
}

void PlainPolylineFillet::setSelfPolyLineDate(const YxDbEntity* polyline, unsigned int first, unsigned int second,
                                              TrimMode mode, bool sharp) {
    m_first.clear();
    m_mode = 0;
    if (mode == 0 || (sharp && (mode == 1 || mode == 3)))
        return;
    m_firstVertex = static_cast<int>(std::min(first, second));
    m_secondVertex = static_cast<int>(std::max(first, second));
    m_mode = mode;
    m_sharp = sharp;
    const int f = static_cast<int>(first);
    const int g = static_cast<int>(second);
    for (Record record : recordsOf(static_cast<const YxDbPolyline&>(*polyline))) {
        const int s = record.ends.start;
        if (mode == 1 && s >= g)
            record.ends = {record.ends.start + 1, record.ends.end + 1};
        if (s == f)
            m_first.insert(m_first.begin(), record);
        else if (s == g)
            m_first.push_back(record);
        else if ((mode == 2 && f < s && s < g) || (mode == 4 && s > g))
            markRemoved(*record.dependency);
    }
}

void PlainPolylineFillet::setSelfPolyLineConstraint(const YxDbEntity* polyline) {
    YxDbPolyline& filleted = writable(polyline);
    Records kept;
    for (const Record& record : m_first) {
        const Points now = {pointAt(filleted, record.ends.start), pointAt(filleted, record.ends.end)};
        if (!segmentRule(*m_group, *record.dependency, record.points, now, m_collected))
            kept.push_back(record);
    }
    if (m_first.empty())
        return;
    const YxSmartPtr<YxDbAssoc2dConstraintGroup> open =
        YxDbObjectIdImpl::openObject(m_group->objectId(), YxDb::kForWrite, false);
    remap(filleted, kept);
}

void PlainPolylineFillet::remap(YxDbPolyline& polyline, const Records& kept) {
    const bool one = kept.size() == 1;
    const bool two = kept.size() == 2;
    const auto first = [&] { return kept[0]; };
    const auto second = [&] { return kept[1]; };
    const auto loosen = [&](const Record& record) { deleteOneCoincidence(*m_group, *record.dependency, m_collected); };
    if (m_mode == 1 && one && first().ends.start == m_firstVertex) {
        setIdentifier(polyline, first().ends.end, first().endVertexId);
        setIdentifier(polyline, first().ends.end + 1, 0);
    } else if (m_mode == 1 && two) {
        setIdentifier(polyline, first().ends.end, first().endVertexId);
        setIdentifier(polyline, second().ends.start, 0);
        setIdentifier(polyline, second().ends.end, 0);
        pointAtPart(*second().dependency, second().ends.end);
        loosen(second());
    } else if (m_mode == 2 && m_sharp && one && first().ends.start == m_firstVertex) {
        setIdentifier(polyline, first().ends.end, first().endVertexId);
    } else if (m_mode == 2 && m_sharp && two) {
        pointAtPart(*first().dependency, first().ends.start + 1);
    } else if (m_mode == 3 && one && first().ends.start == m_secondVertex) {
        setIdentifier(polyline, 0, 0);
        setIdentifier(polyline, first().ends.start + 1, first().endVertexId);
    } else if (m_mode == 3 && two) {
        setIdentifier(polyline, second().ends.start, 0);
        setIdentifier(polyline, second().ends.start + 1, 0);
        pointAtPart(*second().dependency, second().ends.start + 1);
        loosen(second());
    } else if (m_mode == 4 && m_sharp && one && first().ends.start == m_secondVertex) {
        setIdentifier(polyline, 0, first().endVertexId);
    } else if (m_mode == 4 && m_sharp && two) {
        pointAtPart(*second().dependency, second().ends.end);
        loosen(second());
    } else if (m_mode == 5 && m_sharp && !kept.empty()) {
        pointAtPart(*kept.back().dependency, kept.back().ends.end);
    }
}

void PlainPolylineFillet::cutBack(Records& records, const YxDbPolyline& polyline, bool dropBefore, int segment) {
    for (Record& record : records) {
        const int s = record.ends.start;
        if (s == segment) {
            const Points now = {pointAt(polyline, s), pointAt(polyline, record.ends.end)};
            if (segmentRule(*m_group, *record.dependency, record.points, now, m_collected))
                markRemoved(*record.dependency);
            record.points = now;
        } else if ((dropBefore && s < segment) || (!dropBefore && s > segment)) {
            markRemoved(*record.dependency);
        }
    }
}

void PlainPolylineFillet::setReversePolyLineConstraint(YxDbPolyline* polyline) {
    for (const Record& record : m_first) {
        for (int j = 0; j < static_cast<int>(polyline->numVerts()) - 1; ++j) {
            if (pointAt(*polyline, j).isEqualTo(record.points[1]))
                pointAtPart(*record.dependency, j + 1);
        }
    }
}

void PlainPolylineFillet::setTwoPolyLineDate(const YxDbPolyline* first, const YxDbPolyline* second) {
    m_first = recordsOf(*first);
    m_second = recordsOf(*second);
}

void PlainPolylineFillet::setTwoPolyLineCloneDate(const YxDbPolyline* first, const YxDbPolyline* second) {
    const auto verticesOf = [](const YxDbPolyline& polyline) {
        Vertices vertices;
        for (int k = 0; k < static_cast<int>(polyline.numVerts()); ++k)
            vertices.push_back({.point = pointAt(polyline, k), .identifier = identifierAt(polyline, k)});
        return vertices;
    };
    m_firstVertices = verticesOf(*first);
    m_secondVertices = verticesOf(*second);
}

void PlainPolylineFillet::turn(Vertices& vertices, Records& records) {
    std::reverse(vertices.begin(), vertices.end());
    for (Record& record : records) {
        for (std::size_t j = 0; j + 1 < vertices.size(); ++j) {
            if (!vertices[j].point.isEqualTo(record.points[1]))
                continue;
            record.ends = {static_cast<int>(j), static_cast<int>(j) + 1};
            record.points = {vertices[j].point, vertices[j + 1].point};
            break;
        }
    }
}

void PlainPolylineFillet::setTwoPolyLineConstraint(YxDbPolyline* joined, bool reverseFirst,
                                                   const YxDbPolyline* /*second*/, bool keepSecondDirection) {
    if (m_first.empty() && m_second.empty())
        return;
    if (reverseFirst && !m_first.empty())
        turn(m_firstVertices, m_first);
    if (!keepSecondDirection && !m_second.empty())
        turn(m_secondVertices, m_second);
    const int count = static_cast<int>(joined->numVerts());
    const int firstCount = static_cast<int>(m_firstVertices.size());
    if (count + 1 >= firstCount + static_cast<int>(m_secondVertices.size())) {
        const bool shared = !m_first.empty() && count >= firstCount &&
                            m_firstVertices.back().point.isEqualTo(m_secondVertices.front().point);
        if (shared)
            setIdentifier(*joined, firstCount - 1, m_firstVertices.back().identifier);
        for (const Record& record : m_first) {
            if (reverseFirst)
                pointAtPart(*record.dependency, record.ends.end);
        }
        for (const Record& record : m_second) {
            if (isRemoved(*record.dependency))
                continue;
            const auto open = openForWrite(*record.dependency);
            YxDbCompoundObjectId path;
            path.set(joined->objectId());
            open->detachFromObject();
            open->attachToObject(path);
            open->setSubentity(YxDbSubentId(open->subentType(), record.ends.start + firstCount + (shared ? 0 : 1)));
        }
    }
    if (reverseFirst)
        m_first = recordsOf(*joined);
}

int PlainPolylineFillet::deleteConstraint() {
    return deleteAll(m_group, m_collected);
}

}  // namespace holdfast::plain
