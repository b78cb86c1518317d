#include "editing/commands/offset/OffsetEntities.h"

#include <cmath>
#include <map>
#include <optional>

#include "document/EndJoints.h"
#include "editing/EditContext.h"
#include "editing/commands/fillet/SegmentSide.h"
#include "editing/commands/join/Chaining.h"
#include "editing/commands/join/JoinedConstraints.h"
#include "editing/commands/offset/OffsetSegments.h"
#include "geometry/DisjointSets.h"
#include "geometry/GeometryError.h"
#include "geometry/SegmentDirections.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Geometry.h"
#include "inference/PointClusters.h"

namespace holdfast::editing {

namespace {

bool isOpenPolyline(const Shape& shape) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    return polyline != nullptr && !polyline->closed;
}

bool canBeChained(const Shape& shape) {
    return std::holds_alternative<LineShape>(shape) || std::holds_alternative<ArcShape>(shape) || isOpenPolyline(shape);
}

[[noreturn]] void refuseNothingLeft(const std::string& name, double by, double radius) {
    throw EditError("at a distance of " + spoken(by) + " nothing would be left of " + name + ", whose radius is " +
                    spoken(radius) + "; give a smaller one");
}

double widened(const std::string& name, double radius, double by) {
    if (!(radius + by > kSamePoint * radius))
        refuseNothingLeft(name, by, radius);
    return radius + by;
}

/// Curves that lie beside others of their kind all by themselves.
struct Beside {
    const std::string& name;
    double by;

    Shape operator()(LineShape s) const {
        const Vec2 shift = by * leftOf(unit(s.end - s.start));
        return LineShape{s.start + shift, s.end + shift};
    }
    Shape operator()(RayShape s) const {
        s.point = s.point + by * leftOf(unit(s.direction));
        return s;
    }
    Shape operator()(XlineShape s) const {
        s.point = s.point + by * leftOf(unit(s.direction));
        return s;
    }
    Shape operator()(CircleShape s) const {
        s.radius = widened(name, s.radius, by);
        return s;
    }
    Shape operator()(ArcShape s) const {
        s.radius = widened(name, s.radius, by);
        return s;
    }
    Shape operator()(const EllipseShape& s) const { return refuseKind(s, "no ellipse"); }
    Shape operator()(const EllipticalArcShape& s) const { return refuseKind(s, "no ellipse"); }
    Shape operator()(const SplineShape& s) const { return refuseKind(s, "no spline of its kind"); }
    Shape operator()(const PolylineShape& s) const { return s; }
    Shape operator()(const PointShape& s) const { return refuseKind(s, "no curve"); }
    Shape operator()(const TextShape& s) const { return refuseKind(s, "no curve"); }

    Shape refuseKind(const Shape& shape, const char* what) const {
        if (!isCurve(shape))
            throw EditError(name + " is no curve; only curves have an offset");
        throw EditError("what lies at a distance from " + name + " is " + what +
                        "; lines, arcs, circles, polylines, rays and xlines can be offset");
    }
};

/// A chain as one polyline, and which of its segments each curve became.
struct ChainAsPolyline {
    PolylineShape polyline;
    std::vector<ChainPiece> pieces;
    std::vector<std::size_t> owners;  ///< of each segment, in pieces
    std::vector<JoinedSegments> segments;
};

ChainAsPolyline chained(const NamedCurves& group) {
    ChainAsPolyline chain;
    for (const auto& [name, shape] : group)
        chain.pieces.push_back(chainPiece(name, shape));
    const Chain found = chainOf(chain.pieces, 0);
    chain.polyline = found.shape;
    const auto segments = segmentsOf(chain.pieces, 0, found);
    if (found.isRing) {
        chain.polyline.vertices.pop_back();
        chain.polyline.bulges.pop_back();
        chain.polyline.ids.pop_back();
        chain.polyline.closed = true;
    }
    chain.owners.resize(segmentCount(chain.polyline));
    for (std::size_t piece = 0; piece < chain.pieces.size(); ++piece) {
        chain.segments.push_back(segments.at(chain.pieces[piece].name));
        for (std::size_t i = 0; i < chain.segments[piece].count; ++i)
            chain.owners[chain.segments[piece].first + i] = piece;
    }
    return chain;
}

ChainAsPolyline closedPolyline(const std::string& name, const PolylineShape& polyline) {
    const std::size_t count = segmentCount(polyline);
    return {polyline, {{name, true, polyline}}, std::vector<std::size_t>(count, 0), {{0, count, false}}};
}

/// To the left of the chain.
double leftwards(const ChainAsPolyline& chain, const Shape& first, double by) {
    if (chain.polyline.closed)
        return signedArea(chain.polyline) > 0.0 ? -by : by;
    return std::holds_alternative<ArcShape>(first) ? -by : by;
}

/// Makes entities of the segments beside a chain.
class Maker {
public:
    Maker(const ChainAsPolyline& chain, const OffsetChain& found) : m_chain(chain), m_found(found) {}

    OffsetEntities run() {
        const std::size_t count = m_found.segments.size();
        for (std::size_t i = 0; i < count;) {
            std::size_t last = i + 1;
            const std::optional<std::size_t> owner = ownerOf(i);
            while (last < count && owner && m_chain.pieces[*owner].isPolyline && ownerOf(last) == owner)
                ++last;
            add(i, last, owner);
            i = last;
        }
        addJoints();
        for (const std::size_t segment : m_found.vanished)
            m_made.remarks.push_back("nothing lies beside " + spokenOrigin(segment) +
                                     " at this distance; its neighbours meet instead");
        for (const Vec2 corner : m_found.roundedOutOfNeed)
            m_made.remarks.push_back("the corner at " + spoken(corner) +
                                     " is rounded, as the curves beside it do not meet there");
        return std::move(m_made);
    }

private:
    /// Of a rounded corner the polyline within which it lies; none between two pieces.
    std::optional<std::size_t> ownerOf(std::size_t segment) const {
        const std::vector<OffsetSegment>& all = m_found.segments;
        if (all[segment].origin)
            return m_chain.owners[*all[segment].origin];
        const std::size_t count = all.size();
        const std::size_t before = m_chain.owners[*all[(segment + count - 1) % count].origin];
        const std::size_t behind = m_chain.owners[*all[(segment + 1) % count].origin];
        return before == behind && m_chain.pieces[before].isPolyline ? std::optional(before) : std::nullopt;
    }

    std::string spokenOrigin(std::size_t segment) const {
        const std::size_t owner = m_chain.owners[segment];
        const JoinedSegments& at = m_chain.segments[owner];
        const std::size_t index = segment - at.first;
        return m_chain.pieces[owner].isPolyline
                   ? spokenSegment(m_chain.pieces[owner].name, at.reversed ? at.count - 1 - index : index)
                   : m_chain.pieces[owner].name;
    }

    void add(std::size_t first, std::size_t last, std::optional<std::size_t> owner) {
        m_firsts.push_back(first);
        m_lasts.push_back(last - 1);
        if (owner && m_chain.pieces[*owner].isPolyline)
            return addPolyline(first, last, *owner);
        const OffsetSegment& segment = m_found.segments[first];
        const bool isReversed =
            segment.bulge < 0.0 || (segment.bulge == 0.0 && owner && m_chain.segments[*owner].reversed);
        OffsetEntity entity{.shape = {}, .origin = nameBefore(first, owner), .isImage = owner.has_value()};
        if (segment.bulge == 0.0)
            entity.shape = isReversed ? LineShape{segment.to, segment.from} : LineShape{segment.from, segment.to};
        else
            entity.shape = arcOfBulge(segment.from, segment.to, segment.bulge);
        entity.start.kind = isReversed ? PlaceKind::end : PlaceKind::start;
        entity.end.kind = isReversed ? PlaceKind::start : PlaceKind::end;
        m_made.entities.push_back(std::move(entity));
    }

    std::string nameBefore(std::size_t segment, std::optional<std::size_t> owner) const {
        const std::size_t count = m_found.segments.size();
        return m_chain.pieces[owner ? *owner : *ownerOf((segment + count - 1) % count)].name;
    }

    void addPolyline(std::size_t first, std::size_t last, std::size_t owner) {
        PolylineShape polyline;
        for (std::size_t i = first; i < last; ++i) {
            polyline.vertices.push_back(m_found.segments[i].from);
            polyline.bulges.push_back(m_found.segments[i].bulge);
        }
        polyline.closed = m_chain.pieces[owner].shape.closed;
        if (!polyline.closed) {
            polyline.vertices.push_back(m_found.segments[last - 1].to);
            polyline.bulges.push_back(0.0);
        }
        polyline.ids.assign(polyline.vertices.size(), 0);
        const bool isReversed = m_chain.segments[owner].reversed;
        const int end = static_cast<int>(last - first) - 1;
        OffsetEntity entity{.shape = isReversed ? reversedPolyline(polyline) : polyline,
                            .origin = m_chain.pieces[owner].name,
                            .isImage = last - first == m_chain.segments[owner].count};
        entity.first = {{}, PlaceKind::segment, isReversed ? end : 0};
        entity.last = {{}, PlaceKind::segment, isReversed ? 0 : end};
        entity.start = {{}, isReversed ? PlaceKind::segmentEnd : PlaceKind::segmentStart, entity.first.index};
        entity.end = {{}, isReversed ? PlaceKind::segmentStart : PlaceKind::segmentEnd, entity.last.index};
        m_made.entities.push_back(std::move(entity));
    }

    void addJoints() {
        const std::size_t count = m_made.entities.size();
        for (std::size_t i = 0; i + 1 < count + (m_chain.polyline.closed && count > 1 ? 1 : 0); ++i) {
            const std::size_t next = (i + 1) % count;
            m_made.joints.push_back(
                {i, next, isSmooth(m_found.segments[m_lasts[i]], m_found.segments[m_firsts[next]])});
        }
    }

    static bool isSmooth(const OffsetSegment& a, const OffsetSegment& b) {
        const Vec2 arrives = endDirection(a.from, a.to, a.bulge), leaves = startDirection(b.from, b.to, b.bulge);
        return (a.bulge != 0.0 || b.bulge != 0.0) && std::abs(cross(arrives, leaves)) <= kSameDirection &&
               dot(arrives, leaves) > 0.0;
    }

    const ChainAsPolyline& m_chain;
    const OffsetChain& m_found;
    std::vector<std::size_t> m_firsts, m_lasts;  ///< segments of each entity
    OffsetEntities m_made;
};

OffsetEntities offsetChainOf(const ChainAsPolyline& chain, const Shape& first, double by, bool rounded) {
    try {
        return Maker(chain, offsetChain(chain.polyline, leftwards(chain, first, by), rounded)).run();
    } catch (const GeometryError& error) {
        throw EditError(chain.pieces.front().name + " has no offset by " + spoken(by) + ": " + error.what());
    }
}

void refuseLengthless(const std::string& name, const PolylineShape& polyline) {
    for (std::size_t i = 0; i < segmentCount(polyline); ++i)
        if (polyline.vertices[i] == polyline.vertices[(i + 1) % polyline.vertices.size()])
            throw EditError(spokenSegment(name, i) + " has no length; explode " + name +
                            " and join what is left before you offset it");
}

}  // namespace

std::vector<NamedCurves> offsetGroups(const NamedCurves& curves) {
    std::vector<std::size_t> numbers;  // of those that have ends
    std::vector<Vec2> ends;
    Box all;
    for (std::size_t i = 0; i < curves.size(); ++i)
        if (canBeChained(curves[i].second)) {
            numbers.push_back(i);
            ends.push_back(startPoint(curves[i].second).value());
            ends.push_back(endPoint(curves[i].second).value());
            all.add(boundsOf(curves[i].second));
        }
    DisjointSets sets(curves.size());
    std::map<std::size_t, std::vector<std::size_t>> endsIn;
    const std::vector<std::size_t> clusters =
        ends.empty() ? std::vector<std::size_t>() : clusteredPoints(ends, kHolds * all.diagonal());
    for (std::size_t end = 0; end < ends.size(); ++end)
        endsIn[clusters[end]].push_back(end);
    for (const auto& [cluster, members] : endsIn) {
        if (members.size() > 2)
            throw EditError("more than two of the curves meet at " + spoken(ends[members.front()]) +
                            ", which is no chain; offset them one after the other");
        if (members.size() == 2)
            sets.join(numbers[members[0] / 2], numbers[members[1] / 2]);
    }
    std::map<std::size_t, std::size_t> groupOf;
    std::vector<NamedCurves> groups;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const auto [known, isNew] = groupOf.try_emplace(sets.find(i), groups.size());
        if (isNew)
            groups.emplace_back();
        groups[known->second].push_back(curves[i]);
    }
    return groups;
}

OffsetEntities offsetOf(const NamedCurves& group, double by, bool rounded) {
    const auto& [name, shape] = group.front();
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline != nullptr)
        refuseLengthless(name, *polyline);
    if (polyline != nullptr && polyline->closed)
        return offsetChainOf(closedPolyline(name, *polyline), shape, by, rounded);
    if (polyline != nullptr || group.size() > 1)
        return offsetChainOf(chained(group), shape, by, rounded);
    return {{{.shape = std::visit(Beside{name, by}, shape), .origin = name, .isImage = true}}, {}, {}};
}

}  // namespace holdfast::editing
