#include "editing/commands/join/Chaining.h"

#include <algorithm>
#include <cassert>
#include <optional>
#include <unordered_map>

#include "editing/EditContext.h"
#include "geometry/Angles.h"
#include "geometry/Box.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"
#include "inference/PointClusters.h"

namespace holdfast::editing {

namespace {

PolylineShape singleSegment(Vec2 start, Vec2 end, double bulge) {
    return {{start, end}, {bulge, 0.0}, {0, 0}, false};
}

/// Radii between the ends of an arc of more than half a turn that leave no room for a bulge.

PolylineShape arcSegment(const std::string& name, const ArcShape& arc) {
    const Vec2 start = startPoint(arc).value(), end = endPoint(arc).value();
    if (arc.endAngle - arc.startAngle > kPi && distance(start, end) <= kTurn * arc.radius)
        throw EditError(name + " goes all the way round, which no segment of a polyline can; break it first");
    return singleSegment(start, end, bulgeOfAngle(arc.endAngle - arc.startAngle));
}

double toleranceFor(const std::vector<ChainPiece>& pieces) {
    Box all;
    for (const ChainPiece& piece : pieces)
        all.add(boundsOf(piece.shape));
    return kHolds * all.diagonal();
}

/// Builds the chain at one of its ends.
class Chainer {
public:
    explicit Chainer(const std::vector<ChainPiece>& pieces) : m_pieces(pieces), m_isTaken(pieces.size(), false) {
        std::vector<Vec2> ends;
        for (const ChainPiece& piece : pieces) {
            ends.push_back(piece.shape.vertices.front());
            ends.push_back(piece.shape.vertices.back());
        }
        m_clusters = clusteredPoints(ends, toleranceFor(pieces));
        for (std::size_t end = ends.size(); end-- > 0;)
            m_endsAt[m_clusters[end]].push_back(end);
    }

    Chain around(std::size_t middle) {
        Chain chain{m_pieces[middle].shape, false, {}};
        m_isTaken[middle] = true;
        const std::size_t start = m_clusters[2 * middle];
        const std::size_t end = grow(chain, m_clusters[2 * middle + 1], start, false);
        chain.isRing = end == start;
        if (!chain.isRing) {
            chain.shape = reversedPolyline(chain.shape);
            grow(chain, start, end, true);
            chain.shape = reversedPolyline(chain.shape);
        }
        refuseLoose();
        chain.shape.ids.assign(chain.shape.vertices.size(), 0);
        return chain;
    }

private:
    /// Appends pieces behind the chain while there are any, or until it closes; returns where it ends then.
    std::size_t grow(Chain& chain, std::size_t end, std::size_t otherEnd, bool isBefore) {
        while (end != otherEnd) {
            const std::optional<std::size_t> next = freeEndAt(end);
            if (!next)
                break;
            const bool touchesStart = *next % 2 == 0;
            const std::size_t piece = *next / 2;
            append(chain.shape, touchesStart ? m_pieces[piece].shape : reversedPolyline(m_pieces[piece].shape));
            chain.links.push_back({piece, isBefore, touchesStart});
            m_isTaken[piece] = true;
            end = m_clusters[touchesStart ? *next + 1 : *next - 1];
        }
        return end;
    }

    /// Each end is looked at once: those that are passed belong to pieces in the chain already.
    std::optional<std::size_t> freeEndAt(std::size_t cluster) {
        std::vector<std::size_t>& ends = m_endsAt[cluster];
        for (; !ends.empty(); ends.pop_back())
            if (!m_isTaken[ends.back() / 2])
                return ends.back();
        return std::nullopt;
    }

    static void append(PolylineShape& chain, const PolylineShape& piece) {
        chain.bulges.back() = piece.bulges.front();
        chain.vertices.insert(chain.vertices.end(), piece.vertices.begin() + 1, piece.vertices.end());
        chain.bulges.insert(chain.bulges.end(), piece.bulges.begin() + 1, piece.bulges.end());
    }

    void refuseLoose() const {
        const auto loose = std::find(m_isTaken.begin(), m_isTaken.end(), false);
        if (loose == m_isTaken.end())
            return;
        const ChainPiece& piece = m_pieces[static_cast<std::size_t>(loose - m_isTaken.begin())];
        throw EditError("neither " + spoken(piece.shape.vertices.front()) + " nor " +
                        spoken(piece.shape.vertices.back()) + ", the ends of " + piece.name +
                        ", is an open end of what is joined; extend or drag it there first");
    }

    const std::vector<ChainPiece>& m_pieces;
    std::vector<bool> m_isTaken;
    std::vector<std::size_t> m_clusters;  ///< of each end: start and end of piece i are 2 i and 2 i + 1
    std::unordered_map<std::size_t, std::vector<std::size_t>> m_endsAt;  ///< by cluster, the first named last
};

}  // namespace

ChainPiece chainPiece(const std::string& name, const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return {name, false, singleSegment(line->start, line->end, 0.0)};
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return {name, false, arcSegment(name, *arc)};
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline == nullptr)
        throw EditError(name + " is no line, arc or polyline; only these can be joined");
    if (polyline->closed)
        throw EditError(name + " is closed already; break it first");
    return {name, true, *polyline};
}

Chain chainOf(const std::vector<ChainPiece>& pieces, std::size_t middle) {
    assert(middle < pieces.size());
    return Chainer(pieces).around(middle);
}

}  // namespace holdfast::editing
