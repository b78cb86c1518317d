#include "core/SegmentFinder.h"

#include "core/OpenAs.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbPolyline.h>

#include <algorithm>

namespace holdfast::module {
namespace {

// The last of the ascending places that is not behind the limit, which is at or behind the first of them.
int lastUpTo(std::span<const int> places, int limit) {
    return *std::prev(std::upper_bound(places.begin(), places.end(), limit));
}

std::vector<int> vertexIdentifiers(const YxDbPolyline& polyline) {
    const unsigned int count = polyline.numVerts();
    std::vector<int> identifiers(count);
    for (unsigned int index = 0; index < count; ++index)
        identifiers[index] = vertexIdentifier(polyline, index);
    return identifiers;
}

}  // namespace

int vertexIdentifier(const YxDbPolyline& polyline, unsigned int index) {
    int identifier = 0;
    polyline.getVertexIdentifierAt(index, identifier);
    return identifier;
}

// Counts every identifier, gives each its range of places, then fills the ranges in order.
VertexPlaces::VertexPlaces(std::span<const int> identifiers) : m_places(identifiers.size()) {
    m_ranges.reserve(identifiers.size());
    std::vector<Range*> ranges;
    ranges.reserve(identifiers.size());
    for (const int identifier : identifiers) {
        Range& range = m_ranges[identifier];
        ++range.end;
        ranges.push_back(&range);
    }
    int next = 0;
    for (auto& [identifier, range] : m_ranges) {
        const int count = range.end;
        range = {.begin = next, .end = next};
        next += count;
    }
    for (std::size_t index = 0; index < ranges.size(); ++index)
        m_places[static_cast<std::size_t>(ranges[index]->end++)] = static_cast<int>(index);
}

std::span<const int> VertexPlaces::of(int identifier) const {
    const auto found = m_ranges.find(identifier);
    if (found == m_ranges.end())
        return {};
    const Range range = found->second;
    return std::span(m_places).subspan(static_cast<std::size_t>(range.begin),
                                       static_cast<std::size_t>(range.end - range.begin));
}

bool SegmentFinder::find(const YxDbObjectId& dependencyId, SegmentEnds& ends) {
    if (m_polyline == nullptr)
        return false;
    const auto dependency = openAs<YxDbAssocGeomDependency>(dependencyId);
    const YxDbAssocPersSubentId* name = dependency ? dependency->persistentSubentId() : nullptr;
    if (name == nullptr || !name->isKindOf(YxDbAssocEdgePersSubentId::desc()))
        return false;
    if (m_count < 0) {
        const std::vector<int> identifiers = vertexIdentifiers(*m_polyline);
        m_places = VertexPlaces(identifiers);
        m_count = static_cast<int>(identifiers.size());
    }
    const auto* edge = static_cast<const YxDbAssocEdgePersSubentId*>(name);
    return findNamed(edge->index1(), edge->index2(), ends);
}

// As a walk along the vertices would find it that takes a vertex for the start if it can, else for the end, and stops
// as soon as it has seen both: of a repeated identifier the last place up to there counts.
bool SegmentFinder::findNamed(int startId, int endId, SegmentEnds& ends) const {
    const std::span<const int> starts = m_places.of(startId);
    const std::span<const int> stops = startId != endId ? m_places.of(endId) : std::span<const int>();
    if (!starts.empty() && !stops.empty()) {
        ends.start = lastUpTo(starts, std::max(starts.front(), stops.front()));
        ends.end = (ends.start + 1) % m_count;
        return true;
    }
    if (m_count == 2)
        ends = {.start = 0, .end = 1};
    else if (!starts.empty())
        ends = {.start = starts.back(), .end = (starts.back() + 1) % m_count};
    else if (!stops.empty())
        ends = {.start = (stops.back() - 1 + m_count) % m_count, .end = stops.back()};
    else
        return false;
    return true;
}

}  // namespace holdfast::module
