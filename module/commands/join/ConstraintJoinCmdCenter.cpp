#include "commands/join/ConstraintJoinCmdCenter.h"

#include "commands/join/GeometryDependencies.h"
#include "commands/join/VertexIdentifiers.h"
#include "core/OpenAs.h"
#include "evaluation/EntityOpening.h"

#include <yxdb/YxDbPolyline.h>

using namespace holdfast::module;

namespace {

const YxDbPolyline* asPolyline(const YxDbEntity& entity) {
    return entity.isKindOf(YxDbPolyline::desc()) ? static_cast<const YxDbPolyline*>(&entity) : nullptr;
}

/// The end that touches is shared with what is there already.
int addedVertices(const YxDbPolyline& piece) {
    return static_cast<int>(piece.numVerts()) - 1;
}

/// The origin stands for a vertex that the polyline does not have.
YxGePoint3d pointAt(const YxDbPolyline& polyline, int index) {
    YxGePoint3d point;
    polyline.getPointAt(static_cast<unsigned int>(index), point);
    return point;
}

}  // namespace

ConstraintJoinCmdCenter::~ConstraintJoinCmdCenter() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts pass it by value
bool ConstraintJoinCmdCenter::dealAssocPlineJoin(YxArray<YxDbObjectId> pieces, YxDbObjectId result) {
    YxDbObjectId sourceId;
    if (pieces.isEmpty() || !findSource(pieces, sourceId))
        return false;
    const auto source = openAs<YxDbPolyline>(sourceId);
    if (!source)
        return false;
    moveGeometryDependencies(*source, result);
    const auto opened = openEntity(result, YxDb::kForWrite);
    if (!opened || !opened->isKindOf(YxDbPolyline::desc()))
        return false;
    auto* joined = static_cast<YxDbPolyline*>(opened.get());
    if (liesReversed(*source, *joined))
        writeReversed(*joined, m_vertexShift, identifiersOf(*source));
    else
        writeForward(*joined, m_vertexShift, identifiersOf(*source));
    return true;
}

/// Finds the first polyline that carries geometry dependencies and counts the vertices before it. Every piece is
/// opened, also behind the source, so that a bad one is seen before anything moves.
bool ConstraintJoinCmdCenter::findSource(const YxArray<YxDbObjectId>& pieces, YxDbObjectId& source) {
    m_vertexShift = 0;
    for (const YxDbObjectId& id : pieces) {
        const auto piece = openEntity(id, YxDb::kForRead);
        if (!piece)
            return false;
        if (source.isValid())
            continue;
        const YxDbPolyline* polyline = asPolyline(*piece);
        if (polyline == nullptr)
            ++m_vertexShift;
        else if (carriesGeometryDependency(*polyline))
            source = id;
        else
            m_vertexShift += addedVertices(*polyline);
    }
    return source.isValid();
}

bool ConstraintJoinCmdCenter::liesReversed(const YxDbPolyline& source, const YxDbPolyline& result) const {
    const int count = static_cast<int>(source.numVerts());
    for (int i = 0; i < count; ++i)
        if (!pointAt(source, i).isEqualTo(pointAt(result, i + m_vertexShift), YxGeContext::gTol))
            return true;
    return false;
}

void ConstraintJoinCmdCenter::joinMainPolyline(YxDbObjectId id) {
    m_mainPolyline = id;
    const auto entity = openEntity(id, YxDb::kForRead);
    const YxDbPolyline* polyline = entity ? asPolyline(*entity) : nullptr;
    if (polyline == nullptr)
        return;
    if (carriesGeometryDependency(*polyline)) {
        m_hasGeomDependency = true;
        m_savedIdentifiers = identifiersOf(*polyline);
    } else {
        m_vertexShift += addedVertices(*polyline);
    }
}

void ConstraintJoinCmdCenter::joinPolyline(const YxDbPolyline* result, const YxDbPolyline* piece, bool first,
                                           bool second) {
    if (result == nullptr || piece == nullptr)
        return;
    if (m_hasGeomDependency) {
        if (first)
            m_vertexShift += addedVertices(*piece);
        return;
    }
    if (moveGeometryDependencies(*piece, result->objectId()) == 0) {
        m_vertexShift += addedVertices(*piece);
        return;
    }
    m_hasGeomDependency = true;
    if (first)
        m_vertexShift = 0;
    m_savedIdentifiers = identifiersOf(*piece);
    m_reversed = first == second;
}

void ConstraintJoinCmdCenter::joinLineArc(bool behind) {
    if (!m_hasGeomDependency || !behind)
        ++m_vertexShift;
}

void ConstraintJoinCmdCenter::dealAssocPlineJoin2() {
    const auto entity = openEntity(m_mainPolyline, YxDb::kForWrite);
    if (!entity || !entity->isKindOf(YxDbPolyline::desc()))
        return;
    auto& polyline = static_cast<YxDbPolyline&>(*entity);
    if (m_reversed)
        writeReversed(polyline, m_vertexShift, m_savedIdentifiers);
    else
        writeForward(polyline, m_vertexShift, m_savedIdentifiers);
}
