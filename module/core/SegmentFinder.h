#pragma once

#include <yxdb/YxDbObjectId.h>

#include <span>
#include <unordered_map>
#include <vector>

class YxDbAssocGeomDependency;
class YxDbPolyline;

namespace holdfast::module {

/// The places at which each vertex identifier of a polyline stands, ascending.
class VertexPlaces {
public:
    VertexPlaces() = default;
    explicit VertexPlaces(std::span<const int> identifiers);

    std::span<const int> of(int identifier) const;

private:
    struct Range {
        int begin = 0;
        int end = 0;
    };
    std::unordered_map<int, Range> m_ranges;  // into m_places
    std::vector<int> m_places;
};

/// The end vertices of a segment, as indices.
struct SegmentEnds {
    int start = -1;
    int end = -1;
};

/// The identifier of one vertex; 0 when it cannot be read.
int vertexIdentifier(const YxDbPolyline& polyline, unsigned int index);

/// Finds the segments of a polyline that dependencies name by the identifiers of their end vertices. Reads the
/// identifiers once, at the first question; they must not change between two.
class SegmentFinder {
public:
    explicit SegmentFinder(const YxDbPolyline* polyline) : m_polyline(polyline) {}

    /// True when the dependency names a segment that can be told; a segment runs from its start vertex to the next one.
    /// Else the ends stay as they were.
    bool find(const YxDbObjectId& dependencyId, SegmentEnds& ends);

private:
    bool findNamed(int startId, int endId, SegmentEnds& ends) const;

    const YxDbPolyline* m_polyline;
    int m_count = -1;  // vertices; negative before the first question
    VertexPlaces m_places;
};

}  // namespace holdfast::module
