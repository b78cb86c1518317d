#include "formats/dxf/dimensions/DxfDimensionPatch.h"

#include <cmath>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "document/Places.h"
#include "formats/dxf/dimensions/DxfCarriers.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

constexpr int kMeasurement = 42;

/// Where a place of the dimension is now: a piece of a curve that was cut has taken over what the constraint says.
std::optional<Place> placeNow(const Place& place, const Constraint& before, const Constraint& now) {
    if (before.refs == now.refs)
        return place;
    if (before.refs.size() == now.refs.size())
        for (std::size_t i = 0; i < before.refs.size(); ++i)
            if (before.refs[i] == place)
                return now.refs[i];
    return std::nullopt;
}

/// What an anchor holds to, in one drawing.
struct Hold {
    Vec2 a{}, b{};        ///< the place; the ends of the line; the centre and nothing
    double radius = 0.0;  ///< of a rim

    friend bool operator==(const Hold&, const Hold&) = default;
};

std::optional<Hold> holdOf(DxfAnchor::Kind kind, const Place& place, const EntityIndex& entities) {
    const Entity* entity = entities.find(place.entity);
    if (entity == nullptr)
        return std::nullopt;
    if (kind == DxfAnchor::Kind::point) {
        const std::optional<Vec2> point = pointAt(entity->shape, place);
        return point ? std::optional(Hold{*point}) : std::nullopt;
    }
    if (kind == DxfAnchor::Kind::along || kind == DxfAnchor::Kind::foot) {
        const std::optional<DxfLine> line = lineOf(*entity, place);
        return line ? std::optional(Hold{line->start, line->end}) : std::nullopt;
    }
    const std::optional<DxfRound> round = roundOf(*entity, place);
    return round ? std::optional(Hold{round->centre, {}, round->radius}) : std::nullopt;
}

struct Holds {
    Hold before, now;
};

std::optional<Holds> holdsOf(const DxfAnchor& anchor, const DxfMeasuredIn& before, const DxfMeasuredIn& now) {
    const std::optional<Place> place = placeNow(anchor.place, before.constraint, now.constraint);
    const std::optional<Hold> was = holdOf(anchor.kind, anchor.place, before.entities);
    const std::optional<Hold> is = place ? holdOf(anchor.kind, *place, now.entities) : std::nullopt;
    return was && is ? std::optional(Holds{*was, *is}) : std::nullopt;
}

Vec2 movedAlong(Vec2 point, const Holds& holds, DxfAnchor::Kind kind) {
    const auto& [was, is] = holds;
    switch (kind) {
        case DxfAnchor::Kind::along: {
            const Vec2 way = was.b - was.a;
            const double part = dot(point - was.a, way) / dot(way, way);
            return is.a + part * (is.b - is.a);
        }
        case DxfAnchor::Kind::rim:
            return is.a + (is.radius / was.radius) * (point - was.a);
        default:
            return is.a;
    }
}

Vec2 footOn(const Hold& line, Vec2 point) {
    const Vec2 way = line.b - line.a;
    return line.a + (dot(point - line.a, way) / dot(way, way)) * way;
}

void putNumber(DxfItems& record, int code, double value) {
    if (const auto found = findOwn(record, code); found && ownNumber(record, code, value) != value)
        record[*found].value = numberLike(value, record[*found].value);
}

/// An arc's dimension says, besides its points, in which directions its ends lie from the centre, in radians.
void turnArc(DxfItems& record, const std::map<int, Vec2>& points) {
    constexpr int centreCode = 15;
    const auto angleOf = [&](int pointCode, bool isNow) {
        const auto pointOf = [&](int code) {
            const auto found = points.find(code);
            return isNow && found != points.end()
                       ? found->second
                       : Vec2{ownNumber(record, code, 0.0), ownNumber(record, code + 10, 0.0)};
        };
        const Vec2 way = pointOf(pointCode) - pointOf(centreCode);
        return std::atan2(way.y, way.x);
    };
    for (const auto& [code, pointCode] : {std::pair(40, 13), std::pair(41, 14)})
        if (const double turn = angleOf(pointCode, true) - angleOf(pointCode, false); turn != 0.0) {
            const double angle = ownNumber(record, code, 0.0) + turn;
            putNumber(record, code, angle - kTurn * std::floor(angle / kTurn));
        }
}

}  // namespace

bool hasMoved(const DxfMeasure& measure, const DxfMeasuredIn& before, const DxfMeasuredIn& now) {
    for (const DxfAnchor& anchor : measure.anchors)
        if (const std::optional<Holds> holds = holdsOf(anchor, before, now); !holds || holds->before != holds->now)
            return true;
    return false;
}

bool rewriteDimension(DxfItems& record, const DxfMeasure& measure, const DxfMeasuredIn& before,
                      const DxfMeasuredIn& now) {
    std::map<int, Vec2> points;
    Vec2 above;  // where the anchor before a foot is now
    for (const DxfAnchor& anchor : measure.anchors) {
        const std::optional<Holds> holds = holdsOf(anchor, before, now);
        if (!holds)
            return false;
        const Vec2 point{ownNumber(record, anchor.code, 0.0), ownNumber(record, anchor.code + 10, 0.0)};
        if (anchor.kind == DxfAnchor::Kind::point)
            above = holds->now.a;
        if (anchor.kind == DxfAnchor::Kind::foot)
            points[anchor.code] = footOn(holds->now, above);
        else if (holds->before != holds->now)
            points[anchor.code] = movedAlong(point, *holds, anchor.kind);
    }
    if (record.front().value == "ARC_DIMENSION")
        turnArc(record, points);
    for (const auto& [code, point] : points) {
        putNumber(record, code, point.x);
        putNumber(record, code + 10, point.y);
    }
    // In degrees or radians, and in what unit its style says: it grows as the value does.
    const std::optional<double> was = before.constraint.value, is = now.constraint.value;
    if (was && is && *was != 0.0 && *was != *is)
        putNumber(record, kMeasurement, ownNumber(record, kMeasurement, 0.0) * (*is / *was));
    return true;
}

}  // namespace holdfast::formats
