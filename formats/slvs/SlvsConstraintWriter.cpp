#include "formats/slvs/SlvsConstraintWriter.h"

#include <cmath>

#include "document/Places.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

using Kind = SlvsConstraintKind;
using Use = SlvsWritten::Use;

// The planes that cut the axes out of the sketch's plane, and their normals, which stand along the other axis.
constexpr SlvsHandle kYzPlane = ofRequest(2, 0), kZxPlane = ofRequest(3, 0);
constexpr SlvsHandle kAlongX = ofRequest(2, kSlvsNormal), kAlongY = ofRequest(3, kSlvsNormal);

constexpr SlvsHandle planeOfAxis(bool isX) {
    return isX ? kZxPlane : kYzPlane;
}

bool isEndOfCurve(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}
Place whole(const Place& place) {
    return {.entity = place.entity};
}
Place endOf(const Place& curve, bool isEnd) {
    return {curve.entity, isEnd ? PlaceKind::end : PlaceKind::start, 0};
}

}  // namespace

bool SlvsConstraintWriter::put(SlvsConstraintKind kind, const Fields& fields) {
    SlvsConstraint record;
    record.handle = static_cast<SlvsHandle>(m_out.size() + 1);
    record.type = static_cast<int>(kind);
    record.group = SlvsSketchRecords::kGroup;
    record.plane = SlvsSketchRecords::kPlane;
    record.value = fields.value;
    record.pointA = fields.pointA;
    record.pointB = fields.pointB;
    record.entityA = fields.entityA;
    record.entityB = fields.entityB;
    record.other = fields.other;
    record.other2 = fields.other2;
    record.isReference = m_isReference;
    m_out.push_back(record);
    return true;
}

std::size_t SlvsConstraintWriter::numberOf(SlvsHandle point) {
    return m_numbers.emplace(point, m_numbers.size()).first->second;
}
void SlvsConstraintWriter::join(SlvsHandle a, SlvsHandle b) {
    m_meeting.join(numberOf(a), numberOf(b));
}
bool SlvsConstraintWriter::areOne(SlvsHandle a, SlvsHandle b) {
    return m_meeting.same(numberOf(a), numberOf(b));
}

void SlvsConstraintWriter::noteMeeting(const Constraint& constraint) {
    const bool isMeeting =
        constraint.type == ConstraintType::coincident || constraint.type == ConstraintType::concentric;
    if (!isMeeting || !constraint.active || constraint.refs.size() != 2)
        return;
    const auto a = m_handles.point(constraint.refs[0]), b = m_handles.point(constraint.refs[1]);
    if (a && b)
        join(*a, *b);
}

bool SlvsConstraintWriter::add(const Constraint& constraint) {
    using Type = ConstraintType;
    if (!constraint.active)
        return false;
    const std::vector<Place>& refs = constraint.refs;
    m_isReference = !constraint.driving && constraint.value.has_value();
    switch (constraint.type) {
        case Type::coincident:
        case Type::concentric:
            return addCoincidence(constraint);
        case Type::pointOnCurve:
            return addOnCurve(refs[0], refs[1]);
        case Type::fixed:
            return hold(refs[0]);
        case Type::horizontal:
            return addUpright(refs, Kind::horizontal);
        case Type::vertical:
            return addUpright(refs, Kind::vertical);
        case Type::parallel:
            return addParallel(constraint);
        case Type::perpendicular:
            return addPerpendicular(constraint);
        case Type::collinear:
            return addCollinear(constraint);
        case Type::tangent:
            return addTangency(constraint);
        case Type::equal:
            return addEqual(constraint);
        case Type::symmetric:
            return addSymmetry(constraint);
        case Type::midpoint:
            return addMidpoint(refs[0], refs[1]);
        case Type::distance:
            return addDistance(constraint);
        case Type::distanceX:
            return addCoordinate(constraint, true);
        case Type::distanceY:
            return addCoordinate(constraint, false);
        case Type::radius:
            return addSize(constraint, 2.0, true);
        case Type::diameter:
            return addSize(constraint, 1.0, false);
        case Type::angle:
            return addAngle(constraint);
        case Type::internal:
        case Type::g2Smooth:
        case Type::composite:
            break;
    }
    return false;
}

bool SlvsConstraintWriter::addCoincidence(const Constraint& constraint) {
    const Place &a = constraint.refs[0], &b = constraint.refs[1];
    if (a.kind == PlaceKind::mid)
        return addMidpoint(b, whole(a));
    if (b.kind == PlaceKind::mid)
        return addMidpoint(a, whole(b));
    const auto p = m_handles.point(a), q = m_handles.point(b);
    return p && q && put(Kind::coincident, {.pointA = *p, .pointB = *q});
}

bool SlvsConstraintWriter::addMidpoint(const Place& point, const Place& line) {
    const auto p = m_handles.point(point);
    return p && m_handles.curve<LineShape>(line) != nullptr &&
           put(Kind::midpoint, {.pointA = *p, .entityA = m_handles.curveHandle(line)});
}

bool SlvsConstraintWriter::addOnCurve(const Place& point, const Place& curve) {
    const auto p = m_handles.point(point);
    if (!p)
        return false;
    if (const auto isX = m_handles.axis(curve))
        return put(Kind::onPlane, {.pointA = *p, .entityA = planeOfAxis(*isX)});
    const auto* line = m_handles.curve<LineShape>(curve);
    if (line == nullptr && m_handles.curve<CircleShape>(curve) == nullptr &&
        m_handles.curve<ArcShape>(curve) == nullptr)
        return false;
    put(line != nullptr ? Kind::onLine : Kind::onCircle, {.pointA = *p, .entityA = m_handles.curveHandle(curve)});
    if (line != nullptr) {
        const std::optional<Vec2> at = pointAt(m_handles.find(point.entity)->entity->shape, point);
        const Vec2 along = line->end - line->start;
        const double square = dot(along, along);
        m_out.back().param = ofConstraint(m_out.back().handle);
        m_params.push_back(
            {m_out.back().param, square > 0.0 ? dot(at.value_or(line->start) - line->start, along) / square : 0.0});
    }
    return true;
}

bool SlvsConstraintWriter::drag(SlvsHandle point) {
    return !m_dragged.insert(point).second || put(Kind::dragged, {.pointA = point});
}

bool SlvsConstraintWriter::hold(const Place& place) {
    const SlvsWritten* written = m_handles.find(place.entity);
    if (written == nullptr)
        return false;
    if (place.kind != PlaceKind::whole) {
        const auto point = m_handles.point(place);
        return point && drag(*point);
    }
    if (written->use != Use::curve)
        return written->use != Use::pieces;  // the origin and the axes do not move
    const Shape& shape = written->entity->shape;
    const auto* spline = std::get_if<SplineShape>(&shape);
    const bool isPoint = std::holds_alternative<PointShape>(shape);
    const std::size_t points = isPoint || std::holds_alternative<CircleShape>(shape) ? 1
                               : std::holds_alternative<LineShape>(shape)            ? 2
                               : spline != nullptr                                   ? spline->control.size()
                                                                                     : 3;
    for (std::size_t i = 0; i < points; ++i)
        drag(ofRequest(written->first, static_cast<SlvsHandle>(i + (isPoint ? 0 : 1))));
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        put(Kind::diameter, {.entityA = ofRequest(written->first, 0), .value = 2.0 * circle->radius, .other = true});
    return true;
}

void SlvsConstraintWriter::joinPieces(const std::vector<std::pair<SlvsHandle, SlvsHandle>>& pieces) {
    m_isReference = false;
    for (const auto& [before, behind] : pieces)
        put(Kind::coincident, {.pointA = ofRequest(before, 4), .pointB = ofRequest(behind, 1)});
}

bool SlvsConstraintWriter::addUpright(const std::vector<Place>& refs, SlvsConstraintKind kind) {
    if (refs.size() == 1)
        return m_handles.curve<LineShape>(refs[0]) != nullptr && put(kind, {.entityA = m_handles.curveHandle(refs[0])});
    const auto p = m_handles.point(refs[0]), q = m_handles.point(refs[1]);
    return p && q && put(kind, {.pointA = *p, .pointB = *q});
}

bool SlvsConstraintWriter::addParallel(const Constraint& constraint) {
    const Place &a = constraint.refs[0], &b = constraint.refs[1];
    for (const auto& [axis, line] : {std::pair(a, b), std::pair(b, a)})
        if (const auto isX = m_handles.axis(axis))
            return addUpright({line}, *isX ? Kind::horizontal : Kind::vertical);
    return m_handles.curve<LineShape>(a) != nullptr && m_handles.curve<LineShape>(b) != nullptr &&
           put(Kind::parallel, {.entityA = m_handles.curveHandle(a), .entityB = m_handles.curveHandle(b)});
}

bool SlvsConstraintWriter::addPerpendicular(const Constraint& constraint) {
    const Place &a = constraint.refs[0], &b = constraint.refs[1];
    if (constraint.refs.size() != 2 || a.kind != PlaceKind::whole || b.kind != PlaceKind::whole)
        return false;
    for (const auto& [one, line] : {std::pair(a, b), std::pair(b, a)}) {
        if (const auto isX = m_handles.axis(one); isX && m_handles.curve<LineShape>(line) != nullptr)
            return addUpright({line}, *isX ? Kind::vertical : Kind::horizontal);
        const bool isRound = m_handles.curve<CircleShape>(one) != nullptr || m_handles.curve<ArcShape>(one) != nullptr;
        if (isRound)  // a line meets a circle upright when it goes through the centre
            return addOnCurve({one.entity, PlaceKind::centre, 0}, line);
    }
    return m_handles.curve<LineShape>(a) != nullptr && m_handles.curve<LineShape>(b) != nullptr &&
           put(Kind::perpendicular, {.entityA = m_handles.curveHandle(a), .entityB = m_handles.curveHandle(b)});
}

bool SlvsConstraintWriter::addCollinear(const Constraint& constraint) {
    const bool isFirstAxis = m_handles.axis(constraint.refs[0]).has_value();
    const Place &carrier = constraint.refs[isFirstAxis ? 0 : 1], &line = constraint.refs[isFirstAxis ? 1 : 0];
    if (m_handles.curve<LineShape>(line) == nullptr)
        return false;
    return addOnCurve(endOf(line, false), carrier) && addOnCurve(endOf(line, true), carrier);
}

bool SlvsConstraintWriter::addEqual(const Constraint& constraint) {
    const Place &a = constraint.refs[0], &b = constraint.refs[1];
    const auto isRound = [this](const Place& place) {
        return m_handles.curve<CircleShape>(place) != nullptr || m_handles.curve<ArcShape>(place) != nullptr;
    };
    const bool areLines = m_handles.curve<LineShape>(a) != nullptr && m_handles.curve<LineShape>(b) != nullptr;
    if (!areLines && (!isRound(a) || !isRound(b)))
        return false;
    return put(areLines ? Kind::equalLength : Kind::equalRadius,
               {.entityA = m_handles.curveHandle(a), .entityB = m_handles.curveHandle(b)});
}

bool SlvsConstraintWriter::addSymmetry(const Constraint& constraint) {
    const Place &a = constraint.refs[0], &b = constraint.refs[1], &mirror = constraint.refs[2];
    const auto p = m_handles.point(a), q = m_handles.point(b);
    if (!p || !q)
        return false;
    if (const auto isX = m_handles.axis(mirror))
        return put(*isX ? Kind::symmetricVertically : Kind::symmetricHorizontally, {.pointA = *p, .pointB = *q});
    if (m_handles.curve<LineShape>(mirror) != nullptr)
        return put(Kind::symmetricInLine, {.pointA = *p, .pointB = *q, .entityA = m_handles.curveHandle(mirror)});
    return a.entity == b.entity && addMidpoint(mirror, whole(a));
}

bool SlvsConstraintWriter::addDistance(const Constraint& constraint) {
    const std::vector<Place>& refs = constraint.refs;
    const double value = *constraint.value;
    const bool isLength = refs.size() == 1;
    if (isLength && m_handles.curve<LineShape>(refs[0]) == nullptr)
        return false;
    const Place a = isLength ? endOf(refs[0], false) : refs[0], b = isLength ? endOf(refs[0], true) : refs[1];
    const auto p = m_handles.point(a), q = m_handles.point(b);
    if (p && q)
        return value == 0.0 ? put(Kind::coincident, {.pointA = *p, .pointB = *q})
                            : put(Kind::distance, {.pointA = *p, .pointB = *q, .value = value});
    return p ? addGapOfLine(a, b, value) : q && addGapOfLine(b, a, value);
}

/// The value is above 0 to the right of a line and on the positive side of an axis, below 0 on the other side.
bool SlvsConstraintWriter::addGapOfLine(const Place& point, const Place& line, double value) {
    const SlvsHandle p = *m_handles.point(point);
    const std::optional<Vec2> at = pointAt(m_handles.find(point.entity)->entity->shape, point);
    if (!at)
        return false;
    if (const auto isX = m_handles.axis(line))
        return put(Kind::planeDistance,
                   {.pointA = p, .entityA = planeOfAxis(*isX), .value = std::copysign(value, *isX ? at->y : at->x)});
    const auto* segment = m_handles.curve<LineShape>(line);
    if (segment == nullptr)
        return false;
    const double side = cross(*at - segment->start, segment->end - segment->start);
    return put(Kind::lineDistance,
               {.pointA = p, .entityA = m_handles.curveHandle(line), .value = std::copysign(value, side)});
}

bool SlvsConstraintWriter::addCoordinate(const Constraint& constraint, bool isX) {
    const auto p = m_handles.point(constraint.refs[0]), q = m_handles.point(constraint.refs[1]);
    return p && q &&
           put(Kind::projectedDistance,
               {.pointA = *p, .pointB = *q, .entityA = isX ? kAlongX : kAlongY, .value = *constraint.value});
}

bool SlvsConstraintWriter::addSize(const Constraint& constraint, double factor, bool isRadius) {
    const Place& curve = constraint.refs[0];
    const bool isRound = m_handles.curve<CircleShape>(curve) != nullptr || m_handles.curve<ArcShape>(curve) != nullptr;
    return isRound &&
           put(Kind::diameter,
               {.entityA = m_handles.curveHandle(curve), .value = factor * *constraint.value, .other = isRadius});
}

bool SlvsConstraintWriter::addAngle(const Constraint& constraint) {
    const std::vector<Place>& refs = constraint.refs;
    const auto isDirection = [this](const Place& place) {
        return m_handles.axis(place) || m_handles.curve<LineShape>(whole(place)) != nullptr;
    };
    for (const Place& place : refs)
        if (!isDirection(place))
            return false;
    if (refs.size() == 2)
        return addAngleBetween(refs[0], refs[1], *constraint.value);
    return refs.size() == 1 && addAngleBetween(Place{}, refs[0], *constraint.value);
}

/// A place of no entity is the direction of the x axis.
bool SlvsConstraintWriter::addAngleBetween(const Place& a, const Place& b, double value) {
    constexpr double flat = 1e-9;  // the file's angles have no slope at 0 and at a half turn
    const auto isXAxis = [&](const Place& place) -> std::optional<bool> {
        return place.entity.empty() ? std::optional(true) : m_handles.axis(place);
    };
    const auto axisA = isXAxis(a), axisB = isXAxis(b);
    if (axisA && axisB)
        return false;
    if (std::abs(std::sin(value)) < flat && !m_isReference) {
        if (axisA || axisB)
            return addUpright({whole(axisA ? b : a)}, (axisA ? *axisA : *axisB) ? Kind::horizontal : Kind::vertical);
        return put(Kind::parallel, {.entityA = m_handles.curveHandle(a), .entityB = m_handles.curveHandle(b)});
    }
    const auto handleOf = [&](const std::optional<bool>& axis, const Place& place) {
        return axis ? (*axis ? kAlongX : kAlongY) : m_handles.curveHandle(place);
    };
    // Lines point from their end to their start there, normals along their axis.
    const bool isTurned =
        ((a.kind == PlaceKind::end) != (b.kind == PlaceKind::end)) != (axisA.has_value() != axisB.has_value());
    const double opening = std::abs(std::remainder(value, kTurn));
    return put(
        Kind::angle,
        {.entityA = handleOf(axisA, a), .entityB = handleOf(axisB, b), .value = inDegrees(opening), .other = isTurned});
}

bool SlvsConstraintWriter::addTangency(const Constraint& constraint) {
    const std::vector<Place>& refs = constraint.refs;
    if (refs.size() != 2)
        return false;
    if (isEndOfCurve(refs[0]) && isEndOfCurve(refs[1]))
        return touch(refs[0], refs[1], true);
    for (const bool isEndA : {false, true})
        for (const bool isEndB : {false, true}) {
            const Place a = isEndOfCurve(refs[0]) ? refs[0] : endOf(refs[0], isEndA);
            const Place b = isEndOfCurve(refs[1]) ? refs[1] : endOf(refs[1], isEndB);
            const auto p = m_handles.point(a), q = m_handles.point(b);
            if (p && q && areOne(*p, *q))
                return touch(a, b, false);
        }
    for (const auto& [end, line] : {std::pair(refs[0], refs[1]), std::pair(refs[1], refs[0])})
        if (isEndOfCurve(end) && m_handles.curve<LineShape>(line) != nullptr &&
            m_handles.curve<LineShape>(whole(end)) == nullptr)
            return m_handles.point(end) && addOnCurve(end, line) && touch(end, endOf(line, false), false);
    return false;
}

/// Two curves tangent at two of their ends, which are brought together where nothing else does.
bool SlvsConstraintWriter::touch(const Place& a, const Place& b, bool meetsThere) {
    using End = SlvsHandles::End;
    const std::optional<End> p = m_handles.endAt(a), q = m_handles.endAt(b);
    if (!p || !q)
        return false;
    if (meetsThere && !areOne(p->point, q->point)) {
        put(Kind::coincident, {.pointA = p->point, .pointB = q->point});
        join(p->point, q->point);
    }
    const bool isLineA = p->kind == End::Kind::line, isLineB = q->kind == End::Kind::line;
    if (isLineA && isLineB)
        return put(Kind::parallel, {.entityA = p->curve, .entityB = q->curve});
    if (!isLineA && !isLineB)
        return put(Kind::curvesTangent,
                   {.entityA = p->curve, .entityB = q->curve, .other = p->isEnd, .other2 = q->isEnd});
    const End &bent = isLineA ? *q : *p, &line = isLineA ? *p : *q;
    return put(bent.kind == End::Kind::arc ? Kind::arcLineTangent : Kind::cubicLineTangent,
               {.entityA = bent.curve, .entityB = line.curve, .other = bent.isEnd});
}

}  // namespace holdfast::formats
