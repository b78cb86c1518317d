#include "formats/slvs/SlvsConstraintReader.h"

#include <cmath>
#include <initializer_list>

#include "document/Places.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

using Kind = SlvsConstraintKind;

struct KindName {
    int kind;
    const char* name;
};
constexpr KindName kKindNames[] = {{20, "coincident points"},
                                   {30, "distance"},
                                   {31, "distance from a plane"},
                                   {32, "distance from a line"},
                                   {33, "distance from a face"},
                                   {34, "projected distance"},
                                   {41, "point in a plane"},
                                   {42, "point on a line"},
                                   {43, "point on a face"},
                                   {50, "equal lengths"},
                                   {51, "ratio of lengths"},
                                   {52, "length equal to a distance"},
                                   {53, "equal distances"},
                                   {54, "equal angles"},
                                   {55, "line as long as an arc"},
                                   {56, "difference of lengths"},
                                   {60, "symmetric"},
                                   {61, "symmetric horizontally"},
                                   {62, "symmetric vertically"},
                                   {63, "symmetric in a line"},
                                   {70, "midpoint"},
                                   {80, "horizontal"},
                                   {81, "vertical"},
                                   {90, "diameter"},
                                   {100, "point on a circle"},
                                   {110, "same orientation"},
                                   {120, "angle"},
                                   {121, "parallel"},
                                   {122, "perpendicular"},
                                   {123, "tangent arc and line"},
                                   {124, "tangent cubic and line"},
                                   {125, "tangent curves"},
                                   {130, "equal radii"},
                                   {200, "where dragged"},
                                   {210, "ratio of arc lengths"},
                                   {211, "ratio of an arc's length to a line's"},
                                   {212, "difference of arc lengths"},
                                   {213, "difference of an arc's length and a line's"},
                                   {1000, "comment"}};

class SlvsConstraintReader {
public:
    SlvsConstraintReader(const SlvsConstraint& record, SlvsPlaces& places) : m_record(record), m_places(places) {}

    std::optional<Constraint> read() {
        const bool isFound = take();
        return isFound && m_isWhole ? std::optional(std::move(m_found)) : std::nullopt;
    }

private:
    /// A place that has to be there.
    Place at(SlvsHandle entity) {
        const std::optional<Place> place = entity == 0 ? std::nullopt : m_places.place(entity);
        m_isWhole = m_isWhole && place.has_value();
        return place.value_or(Place{});
    }

    bool hold(ConstraintType type, std::vector<Place> refs) {
        m_found.type = type;
        m_found.refs = std::move(refs);
        return true;
    }

    bool measure(ConstraintType type, std::vector<Place> refs, double value) {
        m_found.value = value;
        m_found.driving = !m_record.isReference;
        return hold(type, std::move(refs));
    }

    bool take() {
        const SlvsConstraint& r = m_record;
        switch (static_cast<Kind>(r.type)) {
            case Kind::coincident:
                return takeCoincidence();
            case Kind::distance:
                return takeDistance();
            case Kind::planeDistance:
                return takePlaneDistance();
            case Kind::lineDistance:
                return measure(ConstraintType::distance, {at(r.pointA), at(r.entityA)}, std::abs(r.value));
            case Kind::projectedDistance:
                return takeProjectedDistance();
            case Kind::onPlane:
                return takeOnPlane();
            case Kind::onLine:
            case Kind::onCircle:
                return hold(ConstraintType::pointOnCurve, {at(r.pointA), at(r.entityA)});
            case Kind::equalLength:
            case Kind::equalRadius:
                return hold(ConstraintType::equal, {at(r.entityA), at(r.entityB)});
            case Kind::symmetric:
                return takeSymmetry();
            case Kind::symmetricHorizontally:
            case Kind::symmetricVertically:
                return r.plane == m_places.workplane() &&
                       hold(ConstraintType::symmetric,
                            {at(r.pointA), at(r.pointB),
                             m_places.axis(static_cast<Kind>(r.type) == Kind::symmetricVertically)});
            case Kind::symmetricInLine:
                return hold(ConstraintType::symmetric, {at(r.pointA), at(r.pointB), at(r.entityA)});
            case Kind::midpoint:
                return r.pointA != 0 && hold(ConstraintType::midpoint, {at(r.pointA), at(r.entityA)});
            case Kind::horizontal:
            case Kind::vertical:
                return takeUpright();
            case Kind::diameter:
                return measure(r.other ? ConstraintType::radius : ConstraintType::diameter, {at(r.entityA)},
                               r.other ? 0.5 * r.value : r.value);
            case Kind::angle:
                return takeAngle();
            case Kind::parallel:
            case Kind::perpendicular:
                return takeDirections();
            case Kind::arcLineTangent:
            case Kind::cubicLineTangent:
            case Kind::curvesTangent:
                return takeTangency();
            case Kind::dragged:
                return hold(ConstraintType::fixed, {at(r.pointA)});
            case Kind::comment:
                break;
        }
        return false;
    }

    bool takeCoincidence() {
        const Place a = at(m_record.pointA), b = at(m_record.pointB);
        const bool areCentres = a.kind == PlaceKind::centre && b.kind == PlaceKind::centre;
        return hold(areCentres ? ConstraintType::concentric : ConstraintType::coincident, {a, b});
    }

    bool takeDistance() {
        const Place a = at(m_record.pointA), b = at(m_record.pointB);
        const bool isLength =
            a.entity == b.entity && m_isWhole && std::holds_alternative<LineShape>(m_places.shapeOf(a.entity));
        if (isLength)
            return measure(ConstraintType::distance, {{.entity = a.entity}}, m_record.value);
        return measure(ConstraintType::distance, {a, b}, m_record.value);
    }

    bool takePlaneDistance() {
        const std::optional<SlvsAxis> axis = m_places.plane().cutBy(m_places.file(), m_record.entityA);
        return axis && measure(ConstraintType::distance, {at(m_record.pointA), m_places.axis(axis->isX)},
                               std::abs(m_record.value));
    }

    bool takeProjectedDistance() {
        const std::optional<SlvsAxis> along = m_places.plane().alongNormal(m_places.file(), m_record.entityA);
        return along && measure(along->isX ? ConstraintType::distanceX : ConstraintType::distanceY,
                                {at(m_record.pointA), at(m_record.pointB)},
                                along->isReversed ? -m_record.value : m_record.value);
    }

    bool takeOnPlane() {
        const std::optional<SlvsAxis> axis = m_places.plane().cutBy(m_places.file(), m_record.entityA);
        return axis && hold(ConstraintType::pointOnCurve, {at(m_record.pointA), m_places.axis(axis->isX)});
    }

    bool takeSymmetry() {
        const std::optional<SlvsAxis> axis = m_places.plane().cutBy(m_places.file(), m_record.entityA);
        return axis &&
               hold(ConstraintType::symmetric, {at(m_record.pointA), at(m_record.pointB), m_places.axis(axis->isX)});
    }

    bool takeUpright() {
        if (m_record.plane != m_places.workplane())
            return false;
        const ConstraintType type = static_cast<Kind>(m_record.type) == Kind::horizontal ? ConstraintType::horizontal
                                                                                         : ConstraintType::vertical;
        if (m_record.entityA != 0)
            return hold(type, {at(m_record.entityA)});
        return hold(type, {at(m_record.pointA), at(m_record.pointB)});
    }

    /// Of a line, or the axis that a normal stands along.
    struct Direction {
        Place place;
        bool isReversed = false;
    };
    Direction direction(SlvsHandle entity) {
        if (const std::optional<SlvsAxis> axis = m_places.plane().alongNormal(m_places.file(), entity))
            return {m_places.axis(axis->isX), !axis->isReversed};  // lines point from their end to their start there
        return {at(entity), false};
    }

    bool takeDirections() {
        const ConstraintType type = static_cast<Kind>(m_record.type) == Kind::parallel ? ConstraintType::parallel
                                                                                       : ConstraintType::perpendicular;
        return hold(type, {direction(m_record.entityA).place, direction(m_record.entityB).place});
    }

    static Vec2 courseOf(const Shape& line) {
        if (const auto* axis = std::get_if<XlineShape>(&line))
            return axis->direction;
        const auto* segment = std::get_if<LineShape>(&line);
        return segment == nullptr ? Vec2{} : segment->end - segment->start;
    }

    /// The file's angle has no sense of rotation: that of the drawing counts.
    bool takeAngle() {
        Direction a = direction(m_record.entityA);
        const Direction b = direction(m_record.entityB);
        if (!m_isWhole)
            return false;
        const bool isTurned = m_record.other != (a.isReversed != b.isReversed);
        const Vec2 from = courseOf(m_places.shapeOf(a.place.entity)), to = courseOf(m_places.shapeOf(b.place.entity));
        const double turn = std::atan2(cross(from, to), dot(from, to)) + (isTurned ? kPi : 0.0);
        const double opening = inRadians(m_record.value);
        if (isTurned)
            a.place.kind = PlaceKind::end;
        return measure(ConstraintType::angle, {a.place, b.place}, std::sin(turn) < 0.0 ? -opening : opening);
    }

    Place endOf(SlvsHandle curve, bool isEnd) {
        Place place = at(curve);
        place.kind = isEnd ? PlaceKind::end : PlaceKind::start;
        return place;
    }

    /// The end of a line that is where another curve ends.
    std::optional<Place> endAt(const Place& line, const Place& other) {
        const std::optional<Vec2> point = pointAt(m_places.shapeOf(other.entity), other);
        const auto* shape = std::get_if<LineShape>(&m_places.shapeOf(line.entity));
        if (!point || shape == nullptr)
            return std::nullopt;
        const bool isEnd = distance(shape->end, *point) < distance(shape->start, *point);
        return Place{line.entity, isEnd ? PlaceKind::end : PlaceKind::start, 0};
    }

    bool meet(const Place& a, const Place& b) const {
        constexpr double together = 1e-6;  // of the larger of the coordinates, at least of 1
        const std::optional<Vec2> p = pointAt(m_places.shapeOf(a.entity), a),
                                  q = pointAt(m_places.shapeOf(b.entity), b);
        return p && q && distance(*p, *q) <= together * std::max({1.0, norm(*p), norm(*q)});
    }

    bool takeTangency() {
        const bool hasLine = static_cast<Kind>(m_record.type) != Kind::curvesTangent;
        const Place a = endOf(m_record.entityA, m_record.other);
        const Place b = hasLine ? at(m_record.entityB) : endOf(m_record.entityB, m_record.other2);
        if (!m_isWhole)
            return false;
        const std::optional<Place> end = hasLine ? endAt(b, a) : std::optional(b);
        if (!end)
            return false;
        if (meet(a, *end))
            return hold(ConstraintType::tangent, {a, *end});
        return hasLine && isOnLine(a, b) && hold(ConstraintType::tangent, {a, b});
    }

    bool isOnLine(const Place& end, const Place& line) const {
        const std::optional<Vec2> point = pointAt(m_places.shapeOf(end.entity), end);
        const auto* shape = std::get_if<LineShape>(&m_places.shapeOf(line.entity));
        constexpr double near = 1e-6;
        return point && shape != nullptr &&
               std::abs(cross(unit(shape->end - shape->start), *point - shape->start)) <=
                   near * std::max(1.0, norm(*point));
    }

    const SlvsConstraint& m_record;
    SlvsPlaces& m_places;
    Constraint m_found;
    bool m_isWhole = true;  // the drawing has all the places
};

}  // namespace

std::optional<Constraint> constraintIn(const SlvsConstraint& record, SlvsPlaces& places) {
    return SlvsConstraintReader(record, places).read();
}

std::string spokenSlvsKind(int kind) {
    for (const KindName& each : kKindNames)
        if (each.kind == kind)
            return each.name;
    return "kind " + std::to_string(kind);
}

}  // namespace holdfast::formats
