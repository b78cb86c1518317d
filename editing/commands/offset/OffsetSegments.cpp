#include "editing/commands/offset/OffsetSegments.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "document/Places.h"
#include "editing/EditContext.h"
#include "geometry/Angles.h"
#include "geometry/GeometryError.h"
#include "geometry/SegmentDirections.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Geometry.h"

namespace holdfast::editing {

namespace {

/// Parts of the distance by which a point may be nearer to the polyline than it should: what mitres and roots leave.
constexpr double kNearly = 1e-6;

/// Radians by which a chain may turn where it runs on smoothly: drawings of six digits turn as much.
constexpr double kSmoothTurn = 1e-6;

/// Within so many parts of the figure's size ends are one. Mitres are kept apart from corners without a turn by it.
double sameOf(const PolylineShape& polyline, double by) {
    return kSamePoint * (boundsOf(polyline).diagonal() + std::abs(by));
}

Shape curveOf(const OffsetSegment& segment) {
    if (segment.bulge == 0.0)
        return LineShape{segment.from, segment.to};
    return arcOfBulge(segment.from, segment.to, segment.bulge);
}

Vec2 directionAtStart(const OffsetSegment& segment) {
    return startDirection(segment.from, segment.to, segment.bulge);
}

Vec2 directionAtEnd(const OffsetSegment& segment) {
    return endDirection(segment.from, segment.to, segment.bulge);
}

/// Beside one segment; nothing where its radius is taken up.
std::optional<OffsetSegment> beside(const PolylineShape& polyline, std::size_t index, double by, double same) {
    const Vec2 from = polyline.vertices[index], to = polyline.vertices[segmentEndVertex(polyline, index)];
    const double bulge = polyline.bulges[index];
    if (bulge == 0.0) {
        const Vec2 shift = by * leftOf(unit(to - from));
        return OffsetSegment{from + shift, to + shift, 0.0, index};
    }
    const Vec2 centre = centreOfBulge(from, to, bulge);
    const double radius = distance(centre, from), rest = bulge > 0.0 ? radius - by : radius + by;
    if (rest <= same)
        return std::nullopt;
    const double factor = rest / radius;
    return OffsetSegment{centre + factor * (from - centre), centre + factor * (to - centre), bulge, index};
}

/// By how much an end of an arc, or of a line, has gone on in the direction of travel: radians, or a length.
double advance(const OffsetSegment& segment, Vec2 from, Vec2 to) {
    if (segment.bulge == 0.0)
        return dot(unit(segment.to - segment.from), to - from);
    const Vec2 centre = centreOfBulge(segment.from, segment.to, segment.bulge);
    const Vec2 a = from - centre, b = to - centre;
    return std::copysign(1.0, segment.bulge) * std::atan2(cross(a, b), dot(a, b));
}

double extentOf(const OffsetSegment& segment) {
    return segment.bulge == 0.0 ? distance(segment.from, segment.to) : std::abs(angleOfBulge(segment.bulge));
}

/// The segment between other ends on its carrier; nothing when nothing is left of it.
std::optional<OffsetSegment> between(const OffsetSegment& segment, Vec2 from, Vec2 to, double same) {
    const double rest = extentOf(segment) - advance(segment, segment.from, from) + advance(segment, segment.to, to);
    if (!(rest > 0.0) || distance(from, to) <= same || (segment.bulge != 0.0 && rest >= kTurn))
        return std::nullopt;
    const double bulge = segment.bulge == 0.0 ? 0.0 : std::copysign(bulgeOfAngle(rest), segment.bulge);
    return OffsetSegment{from, to, bulge, segment.origin};
}

/// How two segments of an offset chain come together.
struct SegmentJoint {
    Vec2 end, start;                     ///< of the one before and of the one behind: equal but where an arc goes
    std::optional<OffsetSegment> arc{};  ///< about the corner
    bool outOfNeed = false;              ///< there was to be none
};

/// Makes a chain of segments beside a polyline.
class Offsetting {
public:
    Offsetting(const PolylineShape& polyline, double by, bool rounded)
        : m_polyline(polyline), m_by(by), m_rounded(rounded), m_same(sameOf(polyline, by)) {
        for (std::size_t i = 0; i < segmentCount(polyline); ++i)
            if (const std::optional<OffsetSegment> segment = beside(polyline, i, by, m_same))
                m_segments.push_back(*segment);
            else
                m_chain.vanished.push_back(i);
    }

    OffsetChain run() {
        while (!joined()) {
        }
        std::sort(m_chain.vanished.begin(), m_chain.vanished.end());
        refuseTooNear();
        return std::move(m_chain);
    }

private:
    /// One round: false when segments came to nothing, so that others are neighbours now.
    bool joined() {
        const std::size_t count = m_segments.size();
        if (count == 0 || (m_polyline.closed && count == 1))
            throw GeometryError("at this distance nothing would be left of it; give a smaller one");
        std::vector<SegmentJoint> joints;
        for (std::size_t i = 0; i + 1 < count + (m_polyline.closed ? 1 : 0); ++i)
            joints.push_back(jointBetween(m_segments[i], m_segments[(i + 1) % count]));
        std::vector<OffsetSegment> kept, trimmed;
        for (std::size_t i = 0; i < count; ++i) {
            const bool hasBefore = i > 0 || m_polyline.closed, hasBehind = i < joints.size();
            const Vec2 from = hasBefore ? joints[(i + count - 1) % count].start : m_segments[i].from;
            const Vec2 to = hasBehind ? joints[i].end : m_segments[i].to;
            const std::optional<OffsetSegment> rest = between(m_segments[i], from, to, m_same);
            if (!rest) {
                m_chain.vanished.push_back(*m_segments[i].origin);
                continue;
            }
            kept.push_back(m_segments[i]);
            trimmed.push_back(*rest);
            if (hasBehind && joints[i].arc)
                trimmed.push_back(*joints[i].arc);
        }
        if (kept.size() < count) {
            m_segments = std::move(kept);
            return false;
        }
        m_chain.segments = std::move(trimmed);
        for (std::size_t i = 0; i < joints.size(); ++i)
            if (joints[i].outOfNeed)
                m_chain.roundedOutOfNeed.push_back(cornerBehind(m_segments[i]));
        return true;
    }

    Vec2 cornerBehind(const OffsetSegment& segment) const {
        return m_polyline.vertices[segmentEndVertex(m_polyline, *segment.origin)];
    }

    bool areNeighbours(const OffsetSegment& a, const OffsetSegment& b) const {
        return segmentEndVertex(m_polyline, *a.origin) == *b.origin;
    }

    SegmentJoint jointBetween(const OffsetSegment& a, const OffsetSegment& b) const {
        if (distance(a.to, b.from) <= m_same)
            return {a.to, a.to};
        const double turn = cross(directionAtEnd(a), directionAtStart(b));
        if (std::abs(turn) <= kSmoothTurn && dot(directionAtEnd(a), directionAtStart(b)) > 0.0 && areNeighbours(a, b))
            return {0.5 * (a.to + b.from), 0.5 * (a.to + b.from)};
        const bool isGap = areNeighbours(a, b) && turn * m_by <= 0.0;
        if (isGap && m_rounded)
            return {a.to, b.from, arcAbout(a, b, turn)};
        const std::optional<Vec2> meeting = meetingOf(a, b);
        if (meeting && (!isGap || liesAhead(a, b, *meeting)))
            return {*meeting, *meeting};
        if (!isGap)
            throw GeometryError("at this distance its parts near " + spoken(0.5 * (a.to + b.from)) +
                                " come past each other; give a smaller one");
        return {a.to, b.from, arcAbout(a, b, turn), true};
    }

    /// A mitre leads both segments on; arcs may meet behind their ends only.
    static bool liesAhead(const OffsetSegment& a, const OffsetSegment& b, Vec2 meeting) {
        return advance(a, a.to, meeting) > 0.0 && advance(b, b.from, meeting) < 0.0;
    }

    /// Where the carriers meet, nearest to where the ends are.
    std::optional<Vec2> meetingOf(const OffsetSegment& a, const OffsetSegment& b) const {
        const Vec2 near = 0.5 * (a.to + b.from);
        std::optional<Vec2> best;
        for (const Crossing& crossing : intersect(curveOf(a), curveOf(b), Extent::carrier, Extent::carrier))
            if (!best || distance(crossing.point, near) < distance(*best, near))
                best = crossing.point;
        return best;
    }

    /// Back where the way came from, it goes round on the side of the chain.
    OffsetSegment arcAbout(const OffsetSegment& a, const OffsetSegment& b, double turn) const {
        const double angle = std::atan2(std::abs(turn), dot(directionAtEnd(a), directionAtStart(b)));
        const double sense = turn == 0.0 ? -m_by : turn;
        return {a.to, b.from, std::copysign(bulgeOfAngle(angle), sense)};
    }

    void refuseTooNear() const {
        const double least = std::abs(m_by) * (1.0 - kNearly) - m_same;
        for (const OffsetSegment& segment : m_chain.segments)
            for (const Vec2 point : {segment.from, middleOfBulge(segment.from, segment.to, segment.bulge), segment.to})
                if (nearestOn(m_polyline, point).distance < least)
                    throw GeometryError("at this distance it would run into another part of itself near " +
                                        spoken(point) + "; give a smaller one");
    }

    const PolylineShape& m_polyline;
    double m_by;
    bool m_rounded;
    double m_same;
    std::vector<OffsetSegment> m_segments;
    OffsetChain m_chain;
};

}  // namespace

OffsetChain offsetChain(const PolylineShape& polyline, double distance, bool rounded) {
    return Offsetting(polyline, distance, rounded).run();
}

/// Green's theorem: half the cross products, and for each arc the segment of a circle over its chord.
double signedArea(const PolylineShape& polyline) {
    double area = 0.0;
    for (std::size_t i = 0; i < segmentCount(polyline); ++i) {
        const Vec2 from = polyline.vertices[i], to = polyline.vertices[segmentEndVertex(polyline, i)];
        area += 0.5 * cross(from, to);
        if (polyline.bulges[i] != 0.0) {
            const double angle = angleOfBulge(polyline.bulges[i]);
            const double radius = distance(from, to) * radiusOfBulge(polyline.bulges[i]);
            area += 0.5 * radius * radius * (angle - std::sin(angle));
        }
    }
    return area;
}

}  // namespace holdfast::editing
