#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>

#include <holdfast/solver/Export.h>

namespace holdfast::solver {

/// An entity of a sketch. A sketch gives out each number once, also when entities are removed; an id of one sketch
/// means nothing to another, except to a copy.
class EntityId {
public:
    constexpr explicit EntityId(int number) : m_number(number) {}
    constexpr int number() const { return m_number; }

    friend constexpr bool operator==(EntityId, EntityId) = default;
    friend constexpr auto operator<=>(EntityId, EntityId) = default;

private:
    int m_number;
};

/// A constraint of a sketch; its numbers are its own, see EntityId.
class ConstraintId {
public:
    constexpr explicit ConstraintId(int number) : m_number(number) {}
    constexpr int number() const { return m_number; }

    friend constexpr bool operator==(ConstraintId, ConstraintId) = default;
    friend constexpr auto operator<=>(ConstraintId, ConstraintId) = default;

private:
    int m_number;
};

/// A point of an entity. The functions below name one; whether the entity has it, the sketch says when it is used.
class PointId {
public:
    enum class Place { self, start, end, centre, middle, control, vertex, segmentMiddle, segmentCentre };

    constexpr PointId(EntityId entity, Place place, int index = 0) : m_entity(entity), m_place(place), m_index(index) {}
    constexpr EntityId entity() const { return m_entity; }
    constexpr Place place() const { return m_place; }
    constexpr int index() const { return m_index; }  ///< control point, vertex or segment, from 0

    friend constexpr bool operator==(PointId, PointId) = default;
    friend constexpr auto operator<=>(PointId, PointId) = default;

private:
    EntityId m_entity;
    Place m_place;
    int m_index;
};

/// An entity as a curve, or one segment of a polyline.
class CurveId {
public:
    constexpr CurveId(EntityId entity)
        : m_entity(entity) {}  // NOLINT(google-explicit-constructor): an entity is a curve
    constexpr CurveId(EntityId polyline, int segment) : m_entity(polyline), m_segment(segment) {}
    constexpr EntityId entity() const { return m_entity; }
    constexpr bool isSegment() const { return m_segment >= 0; }
    constexpr int segment() const { return m_segment; }  ///< from 0; -1: the entity itself

    friend constexpr bool operator==(CurveId, CurveId) = default;
    friend constexpr auto operator<=>(CurveId, CurveId) = default;

private:
    EntityId m_entity;
    int m_segment = -1;
};

/// The position of a point or of a text.
constexpr PointId pointOf(EntityId pointOrText) {
    return {pointOrText, PointId::Place::self};
}
/// Of a line, arc, elliptical arc or spline; the base point of a ray or an unbounded line.
constexpr PointId startOf(EntityId entity) {
    return {entity, PointId::Place::start};
}
/// Of a line, arc, elliptical arc or spline.
constexpr PointId endOf(EntityId entity) {
    return {entity, PointId::Place::end};
}
/// Of a circle, arc, ellipse or elliptical arc.
constexpr PointId centreOf(EntityId entity) {
    return {entity, PointId::Place::centre};
}
/// Of a line or an arc.
constexpr PointId middleOf(EntityId entity) {
    return {entity, PointId::Place::middle};
}
/// Counted from 0.
constexpr PointId controlPointOf(EntityId spline, int index) {
    return {spline, PointId::Place::control, index};
}
constexpr PointId vertexOf(EntityId polyline, int index) {
    return {polyline, PointId::Place::vertex, index};
}
constexpr CurveId segmentOf(EntityId polyline, int index) {
    return {polyline, index};
}
constexpr PointId middleOfSegment(EntityId polyline, int index) {
    return {polyline, PointId::Place::segmentMiddle, index};
}
/// Of an arc segment.
constexpr PointId centreOfSegment(EntityId polyline, int index) {
    return {polyline, PointId::Place::segmentCentre, index};
}

/// "e3", "c5", "the start of e3", "segment 2 of e7": as messages name them.
HOLDFAST_SOLVER_EXPORT std::string toString(EntityId id);
HOLDFAST_SOLVER_EXPORT std::string toString(ConstraintId id);
HOLDFAST_SOLVER_EXPORT std::string toString(PointId id);
HOLDFAST_SOLVER_EXPORT std::string toString(CurveId id);

}  // namespace holdfast::solver

/// @cond
template <>
struct std::hash<holdfast::solver::EntityId> {
    std::size_t operator()(holdfast::solver::EntityId id) const noexcept { return std::hash<int>()(id.number()); }
};
template <>
struct std::hash<holdfast::solver::ConstraintId> {
    std::size_t operator()(holdfast::solver::ConstraintId id) const noexcept { return std::hash<int>()(id.number()); }
};
template <>
struct std::hash<holdfast::solver::PointId> {
    std::size_t operator()(holdfast::solver::PointId id) const noexcept {
        return (std::hash<holdfast::solver::EntityId>()(id.entity()) * 31 + static_cast<std::size_t>(id.place())) *
                   1009 +
               static_cast<std::size_t>(id.index());
    }
};
template <>
struct std::hash<holdfast::solver::CurveId> {
    std::size_t operator()(holdfast::solver::CurveId id) const noexcept {
        return std::hash<holdfast::solver::EntityId>()(id.entity()) * 1009 + static_cast<std::size_t>(id.segment() + 1);
    }
};
/// @endcond
