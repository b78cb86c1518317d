#include "formats/dxf/dimensions/DxfMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "document/DrawingExtent.h"
#include "formats/dxf/dimensions/DxfCarriers.h"
#include "formats/dxf/dimensions/DxfLinesThrough.h"
#include "formats/dxf/dimensions/DxfStandpoints.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"

namespace holdfast::formats {
namespace {

using Kind = DxfDimension::Kind;

// Where a dimension has what it measures: between two points, from a centre to the rim, across a circle, between the
// lines from 13 to 14 and from 15 to 10, at the point 15 between those to 13 and 14 on the side of 10, along an arc
// about 15 from 13 to 14 on the side of 10, or from 10 to 13 along one axis.
constexpr int kFirst = 13, kSecond = 14, kCentre = 10, kRim = 15, kArc = 16, kApex = 15;

/// Parts of its length by which a direction may lie beside another one: six digits are in the file.
constexpr double kSameWay = 1e-6;

constexpr const char* kOnNothing = "DIMENSION that stands on no ends, middles or centres";

double sizeOf(const std::vector<Entity>& entities) {
    return DrawingExtent().diagonal(entities.size(), [&](std::size_t i) { return &entities[i].shape; });
}

Vec2 middleAcross(const DxfDimension& dimension) {
    return 0.5 * (dimension.at(kCentre) + dimension.at(kRim));
}

/// The points at which a dimension has to stand on something.
std::vector<Vec2> standpointsOf(const DxfDimension& d) {
    switch (d.kind) {
        case Kind::turned:
        case Kind::aligned:
            return {d.at(kFirst), d.at(kSecond)};
        case Kind::radius:
            return {d.at(kCentre)};
        case Kind::diameter:
            return {middleAcross(d)};
        case Kind::twoLines:
        case Kind::threePoints:
            return {d.at(kFirst), d.at(kSecond), d.at(kApex), d.at(kCentre)};
        case Kind::ordinate:
            return {d.at(kCentre), d.at(kFirst)};
        case Kind::arc:
            return {d.at(kApex)};
        default:
            return {};
    }
}

std::vector<Vec2> standpointsOf(const std::vector<DxfDimension>& dimensions) {
    std::vector<Vec2> wanted;
    for (const DxfDimension& dimension : dimensions) {
        const std::vector<Vec2> points = standpointsOf(dimension);
        wanted.insert(wanted.end(), points.begin(), points.end());
    }
    return wanted;
}

/// What may be the foot of a perpendicular.
std::vector<Vec2> endsOfLengths(const std::vector<DxfDimension>& dimensions) {
    std::vector<Vec2> wanted;
    for (const DxfDimension& dimension : dimensions)
        if (dimension.kind == Kind::turned || dimension.kind == Kind::aligned)
            for (const int code : {kFirst, kSecond})
                wanted.push_back(dimension.at(code));
    return wanted;
}

DxfFollowing notFollowed(std::string reason) {
    return {std::nullopt, {}, std::move(reason)};
}

Constraint measured(ConstraintType type, std::vector<Place> places, double value) {
    return {.type = type, .refs = std::move(places), .value = value, .driving = false};
}

class Follower {
public:
    explicit Follower(const std::vector<Entity>& entities, const std::vector<DxfDimension>& dimensions)
        : m_entities(entities),
          m_tolerance(kHolds * sizeOf(entities)),
          m_standpoints(entities, standpointsOf(dimensions), m_tolerance),
          m_lines(entities, endsOfLengths(dimensions), m_tolerance) {}

    DxfFollowing follow(const DxfDimension& dimension) const {
        switch (dimension.kind) {
            case Kind::turned:
            case Kind::aligned:
                return followLength(dimension);
            case Kind::radius:
            case Kind::diameter:
                return followRound(dimension);
            case Kind::twoLines:
                return followTwoLines(dimension);
            case Kind::threePoints:
                return followThreePoints(dimension);
            case Kind::ordinate:
                return followCoordinate(dimension);
            case Kind::arc:
                return followArc(dimension);
            default:
                return notFollowed("DIMENSION of a kind of its own");
        }
    }

private:
    // Lengths.

    /// Two ends of one line rather than those of others that meet them.
    static int distanceOf(const DxfStandpoint& a, const DxfStandpoint& b) {
        if (a.entity != b.entity)
            return 2;
        return a.place.index == b.place.index ? 0 : 1;
    }

    struct Ends {
        DxfStandpoint from, to;
    };

    /// What stands in two points, and is not the same place.
    std::optional<Ends> endsAt(Vec2 a, Vec2 b) const {
        const std::vector<DxfStandpoint> ones = m_standpoints.near(a), others = m_standpoints.near(b);
        const DxfStandpoint *from = nullptr, *to = nullptr;
        for (const DxfStandpoint& one : ones)
            for (const DxfStandpoint& other : others)
                if (one.place != other.place && (from == nullptr || distanceOf(one, other) < distanceOf(*from, *to))) {
                    from = &one;
                    to = &other;
                }
        return from == nullptr ? std::nullopt : std::optional(Ends{*from, *to});
    }

    DxfFollowing followLength(const DxfDimension& dimension) const {
        const std::optional<Ends> ends = endsAt(dimension.at(kFirst), dimension.at(kSecond));
        if (ends)
            return lengthBetween(ends->from, ends->to, dimension);
        for (const auto& [code, footCode] : {std::pair(kFirst, kSecond), std::pair(kSecond, kFirst)})
            if (std::optional<DxfFollowing> following = lengthToLine(dimension, code, footCode))
                return *std::move(following);
        return notFollowed(kOnNothing);
    }

    /// From a place to the line on which the other point lies, at right angles to it.
    std::optional<DxfFollowing> lengthToLine(const DxfDimension& dimension, int code, int footCode) const {
        const Vec2 foot = dimension.at(footCode);
        for (const DxfStandpoint& from : m_standpoints.near(dimension.at(code)))
            for (const DxfLine& line : m_lines.at(foot)) {
                const Vec2 way = foot - from.point, direction = unit(line.end - line.start);
                const double size = std::abs(cross(direction, from.point - line.start));
                const bool isAlong = dimension.kind == Kind::aligned ||
                                     std::abs(cross(polar(dimension.direction), way)) <= kSameWay * size;
                if (size > m_tolerance && std::abs(dot(way, direction)) <= m_tolerance && isAlong)
                    return DxfFollowing{
                        measured(ConstraintType::distance, {from.place, line.place}, size),
                        {{code, DxfAnchor::Kind::point, from.place}, {footCode, DxfAnchor::Kind::foot, line.place}},
                        {}};
            }
        return std::nullopt;
    }

    /// One coordinate is a distance along its axis where something stands in the point that it is counted from.
    DxfFollowing followCoordinate(const DxfDimension& dimension) const {
        if (std::abs(std::sin(dimension.frame)) > kSameWay || std::cos(dimension.frame) < 0.0)
            return notFollowed("DIMENSION of one coordinate along another axis");
        const std::optional<Ends> ends = endsAt(dimension.at(kCentre), dimension.at(kFirst));
        if (!ends)
            return notFollowed("DIMENSION of one coordinate between points in which nothing stands");
        const Vec2 way = ends->to.point - ends->from.point;
        return lengthAlong(
            dimension.isAlongX ? ConstraintType::distanceX : ConstraintType::distanceY,
            dimension.isAlongX ? way.x : way.y, ends->from, ends->to,
            {{kCentre, DxfAnchor::Kind::point, ends->from.place}, {kFirst, DxfAnchor::Kind::point, ends->to.place}});
    }

    DxfFollowing lengthBetween(const DxfStandpoint& from, const DxfStandpoint& to,
                               const DxfDimension& dimension) const {
        const Vec2 way = to.point - from.point;
        const double size = norm(way);
        if (size <= m_tolerance)
            return notFollowed("DIMENSION of nothing");
        const std::vector<DxfAnchor> anchors{{kFirst, DxfAnchor::Kind::point, from.place},
                                             {kSecond, DxfAnchor::Kind::point, to.place}};
        const DxfFollowing straight{measured(ConstraintType::distance, wholeOr(from, to), size), anchors, {}};
        if (dimension.kind == Kind::aligned)
            return straight;
        const Vec2 along = polar(dimension.direction);
        if (std::abs(along.y) <= kSameWay)
            return lengthAlong(ConstraintType::distanceX, way.x, from, to, anchors);
        if (std::abs(along.x) <= kSameWay)
            return lengthAlong(ConstraintType::distanceY, way.y, from, to, anchors);
        if (std::abs(cross(along, way)) <= kSameWay * size)
            return straight;
        return notFollowed("DIMENSION in another direction than that of its points or of an axis");
    }

    /// The places in the order in which the value is not below 0.
    DxfFollowing lengthAlong(ConstraintType axis, double value, const DxfStandpoint& from, const DxfStandpoint& to,
                             std::vector<DxfAnchor> anchors) const {
        if (std::abs(value) <= m_tolerance)
            return notFollowed("DIMENSION of nothing");
        std::vector<Place> places{from.place, to.place};
        if (value < 0.0)
            std::swap(places[0], places[1]);
        return {measured(axis, std::move(places), std::abs(value)), std::move(anchors), {}};
    }

    /// The line or segment between its two ends.
    std::vector<Place> wholeOr(const DxfStandpoint& from, const DxfStandpoint& to) const {
        const auto line = lineOf(m_entities[from.entity], from.place);
        const bool isWhole = line && from.entity == to.entity && from.place.index == to.place.index &&
                             isEnd(from.place.kind) && isEnd(to.place.kind);
        return isWhole ? std::vector<Place>{line->place} : std::vector<Place>{from.place, to.place};
    }

    // Circles and arcs.

    DxfFollowing followRound(const DxfDimension& dimension) const {
        const bool isRadius = dimension.kind == Kind::radius;
        const Vec2 centre = isRadius ? dimension.at(kCentre) : middleAcross(dimension);
        for (const DxfStandpoint& at : m_standpoints.near(centre)) {
            const auto round = roundOf(m_entities[at.entity], at.place);
            if (!round || std::abs(distance(dimension.at(kRim), round->centre) - round->radius) > m_tolerance)
                continue;
            std::vector<DxfAnchor> anchors{{kRim, DxfAnchor::Kind::rim, round->place}};
            anchors.push_back({kCentre, isRadius ? DxfAnchor::Kind::point : DxfAnchor::Kind::rim,
                               isRadius ? at.place : round->place});
            return {isRadius ? measured(ConstraintType::radius, {round->place}, round->radius)
                             : measured(ConstraintType::diameter, {round->place}, 2.0 * round->radius),
                    std::move(anchors),
                    {}};
        }
        return notFollowed("DIMENSION of a circle that is not there");
    }

    /// The length of an arc from one of its ends to the other.
    DxfFollowing followArc(const DxfDimension& d) const {
        for (const DxfStandpoint& at : m_standpoints.near(d.at(kApex))) {
            const auto arc = arcOf(m_entities[at.entity], at.place);
            const auto isFromTo = [&](const Vec2& from, const Vec2& to) {
                return distance(d.at(kFirst), from) <= m_tolerance && distance(d.at(kSecond), to) <= m_tolerance;
            };
            if (!arc || !arc->passes(d.at(kCentre)))
                continue;
            const bool isForward = isFromTo(arc->start, arc->end);
            if (!isForward && !isFromTo(arc->end, arc->start))
                continue;
            return {measured(ConstraintType::distance, {arc->place}, arc->length()),
                    {{kFirst, DxfAnchor::Kind::point, isForward ? arc->startPlace : arc->endPlace},
                     {kSecond, DxfAnchor::Kind::point, isForward ? arc->endPlace : arc->startPlace},
                     {kApex, DxfAnchor::Kind::point, at.place}},
                    {}};
        }
        return notFollowed("ARC_DIMENSION of an arc that is not there");
    }

    // Angles.

    /// The line through two points with an end in one of them.
    std::optional<DxfLine> lineThrough(Vec2 a, Vec2 b) const {
        for (const Vec2 end : {a, b})
            for (const DxfStandpoint& at : m_standpoints.near(end)) {
                const auto line = isEnd(at.place.kind) ? lineOf(m_entities[at.entity], at.place) : std::nullopt;
                if (line && isOn(*line, a) && isOn(*line, b))
                    return line;
            }
        return std::nullopt;
    }

    bool isOn(const DxfLine& line, Vec2 point) const {
        return std::abs(cross(unit(line.end - line.start), point - line.start)) <= m_tolerance;
    }

    DxfFollowing followTwoLines(const DxfDimension& d) const {
        const auto one = lineThrough(d.at(kFirst), d.at(kSecond)), other = lineThrough(d.at(kRim), d.at(kCentre));
        if (!one || !other || one->place == other->place)
            return notFollowed("DIMENSION of an angle between lines that are not there");
        const Vec2 first = one->end - one->start, second = other->end - other->start;
        const double turn = cross(unit(first), unit(second));
        if (std::abs(turn) <= kSameWay)
            return notFollowed("DIMENSION of an angle between lines that do not cross");
        // The arc's point, told from the crossing, is so much of the one direction and so much of the other.
        const double part = cross(unit(second), one->start - other->start) / (norm(first) * turn);
        const Vec2 arc = d.at(kArc) - (one->start + part * first);
        const double alongFirst = cross(arc, unit(second)) / turn, alongSecond = cross(unit(first), arc) / turn;
        return angle({*one, alongFirst < 0.0}, {*other, alongSecond < 0.0}, {kFirst, kSecond}, {kRim, kCentre});
    }

    DxfFollowing followThreePoints(const DxfDimension& d) const {
        const Vec2 apex = d.at(kApex);
        const auto one = lineThrough(apex, d.at(kFirst)), other = lineThrough(apex, d.at(kSecond));
        if (!one || !other || one->place == other->place)
            return notFollowed("DIMENSION of an angle between lines that are not there");
        const Vec2 first = unit(d.at(kFirst) - apex), second = unit(d.at(kSecond) - apex), arc = d.at(kCentre) - apex;
        const double turn = cross(first, second);
        if (std::abs(turn) <= kSameWay)
            return notFollowed("DIMENSION of an angle between lines that do not cross");
        const bool isLarge = cross(arc, second) / turn < 0.0 || cross(first, arc) / turn < 0.0;
        return angle({*one, dot(first, one->end - one->start) < 0.0},
                     {*other, dot(second, other->end - other->start) < 0.0}, {kFirst, kApex}, {kSecond}, isLarge);
    }

    /// A line as an angle takes it.
    struct Leg {
        DxfLine line;
        bool isTurned = false;  ///< from its end to its start

        Vec2 direction() const { return isTurned ? line.start - line.end : line.end - line.start; }
        Place place() const { return isTurned ? line.turned : line.place; }
    };

    static DxfFollowing angle(Leg first, Leg second, const std::vector<int>& onFirst, const std::vector<int>& onSecond,
                              bool isLarge = false) {
        std::vector<DxfAnchor> anchors;
        for (const int code : onFirst)
            anchors.push_back({code, DxfAnchor::Kind::along, first.line.place});
        for (const int code : onSecond)
            anchors.push_back({code, DxfAnchor::Kind::along, second.line.place});
        if ((cross(first.direction(), second.direction()) < 0.0) != isLarge)
            std::swap(first, second);
        double value =
            std::atan2(cross(first.direction(), second.direction()), dot(first.direction(), second.direction()));
        if (isLarge)
            value += kTurn;
        return {measured(ConstraintType::angle, {first.place(), second.place()}, value), std::move(anchors), {}};
    }

    const std::vector<Entity>& m_entities;
    double m_tolerance;
    DxfStandpoints m_standpoints;
    DxfLinesThrough m_lines;
};

}  // namespace

std::vector<DxfFollowing> followedDimensions(const std::vector<Entity>& entities,
                                             const std::vector<DxfDimension>& dimensions) {
    std::vector<DxfFollowing> following;
    if (dimensions.empty())
        return following;
    const Follower follower(entities, dimensions);
    for (const DxfDimension& dimension : dimensions)
        following.push_back(follower.follow(dimension));
    return following;
}

}  // namespace holdfast::formats
