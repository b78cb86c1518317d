#include "formats/fcstd/FcstdGeometryPatch.h"

#include <algorithm>
#include <string_view>
#include <variant>

#include "document/Names.h"
#include "formats/PieceNames.h"
#include "formats/fcstd/FcstdShapes.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

using Use = FcstdGeometryRecord::Use;

constexpr double kControlRadius = 1.0;  // of the circle that marks a control point without a weight

std::optional<std::size_t> originRecord(std::string_view name,
                                        const std::unordered_map<std::string_view, std::size_t>& records) {
    return originByName(name, [&](std::string_view known) {
        const auto record = records.find(known);
        return record == records.end() ? std::nullopt : std::optional(record->second);
    });
}

void putEntity(pugi::xml_node record, const Entity& now, const Entity& before) {
    if (!(now.shape == before.shape))
        putShape(record, now.shape);
    if (now.construction != before.construction)
        putConstruction(record, now.construction);
}

std::vector<double> distinctKnots(const SplineShape& spline) {
    std::vector<double> knots = spline.knots;
    knots.erase(std::unique(knots.begin(), knots.end()), knots.end());
    return knots;
}

}  // namespace

FcstdGeometryPatch::FcstdGeometryPatch(FcstdSketch& sketch, const Document& after, std::vector<std::string>& notes)
    : m_sketch(sketch),
      m_after(after),
      m_entitiesBefore(sketch.drawing),
      m_entities(after),
      m_list(sketch.geometry.list("GeometryList")),
      m_nextIdentifier(highestIdentifier(m_list)),
      m_notes(notes) {}

void FcstdGeometryPatch::apply() {
    sortEntities();
    patchRecords();
    numberRecords();
    addEntities();
}

/// The first piece of what is gone takes its place.
void FcstdGeometryPatch::sortEntities() {
    std::unordered_map<std::string_view, std::size_t> records;
    for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i)
        if (m_sketch.geometryRecords[i].use == Use::entity)
            records.emplace(m_sketch.geometryRecords[i].id, i);
    m_inPlace.assign(m_sketch.geometryRecords.size(), nullptr);
    for (const Entity& entity : m_after.entities)
        if (const auto record = records.find(entity.id); record != records.end() && canBeRecord(entity.shape))
            m_inPlace[record->second] = &entity;
    for (const Entity& entity : m_after.entities) {
        const Entity* known = m_entitiesBefore.find(entity.id);
        if (records.contains(entity.id) ? canBeRecord(entity.shape) : known != nullptr)
            continue;
        if (!canBeRecord(entity.shape)) {
            m_notes.push_back(entity.id + ", a " + std::string(typeName(entity.shape)) + ", was left out");
            continue;
        }
        const std::optional<std::size_t> origin = originRecord(entity.id, records);
        if (origin && m_inPlace[*origin] == nullptr)
            m_inPlace[*origin] = &entity;
        else
            m_added.push_back({&entity, origin});
    }
}

void FcstdGeometryPatch::patchRecords() {
    for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i) {
        const FcstdGeometryRecord& each = m_sketch.geometryRecords[i];
        if (each.use == Use::control || each.use == Use::knot) {
            followSpline(each);
        } else if (each.use == Use::entity && m_inPlace[i] == nullptr) {
            m_gone.insert(i);
        } else if (each.use == Use::entity) {
            putEntity(each.record, *m_inPlace[i], *m_entitiesBefore.find(each.id));
        }
    }
    for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i)
        if (isHelperOfNothing(m_sketch.geometryRecords[i]))
            m_gone.insert(i);
}

const SplineShape* FcstdGeometryPatch::splineOf(const FcstdGeometryRecord& helper) const {
    const Entity* spline = helper.spline < m_inPlace.size() ? m_inPlace[helper.spline] : nullptr;
    return spline == nullptr ? nullptr : std::get_if<SplineShape>(&spline->shape);
}

bool FcstdGeometryPatch::isHelperOfNothing(const FcstdGeometryRecord& each) const {
    if (each.use != Use::control && each.use != Use::knot)
        return false;
    const SplineShape* spline = splineOf(each);
    if (spline == nullptr)
        return each.spline >= m_sketch.geometryRecords.size() ||
               m_sketch.geometryRecords[each.spline].use != Use::unread;
    return each.index >= (each.use == Use::control ? spline->control.size() : distinctKnots(*spline).size());
}

/// A circle about a control point, whose radius is the weight; a point at a knot.
void FcstdGeometryPatch::followSpline(const FcstdGeometryRecord& helper) const {
    const SplineShape* spline = splineOf(helper);
    if (spline == nullptr || isHelperOfNothing(helper) ||
        m_entitiesBefore.find(m_sketch.geometryRecords[helper.spline].id)->shape == Shape(*spline))
        return;
    std::optional<Shape> shape = shapeIn(helper.record);
    if (!shape)
        return;
    if (auto* circle = std::get_if<CircleShape>(&*shape); circle != nullptr && helper.use == Use::control)
        circle->centre = spline->control[helper.index];
    else if (auto* point = std::get_if<PointShape>(&*shape))
        point->position = helper.use == Use::control ? spline->control[helper.index]
                                                     : splinePoint(*spline, distinctKnots(*spline)[helper.index]);
    putShape(helper.record, *shape);
}

void FcstdGeometryPatch::numberRecords() {
    m_numbers.assign(m_sketch.geometryRecords.size(), std::nullopt);
    for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i) {
        if (m_gone.contains(i))
            continue;
        const int number = m_count++;
        m_numbers[i] = number;
        if (m_inPlace[i] != nullptr)
            m_entityNumbers.emplace(m_inPlace[i]->id, number);
        const FcstdGeometryRecord& each = m_sketch.geometryRecords[i];
        if (each.use == Use::control && splineOf(each) != nullptr)
            m_circles.emplace(std::pair(m_inPlace[each.spline]->id, static_cast<int>(each.index)), number);
    }
}

void FcstdGeometryPatch::addEntities() {
    for (const auto& [entity, origin] : m_added) {
        const pugi::xml_node like = origin ? m_sketch.geometryRecords[*origin].record : pugi::xml_node();
        const pugi::xml_node record = addRecord(m_list, like, ++m_nextIdentifier);
        putShape(record, entity->shape);
        putConstruction(record, entity->construction);
        m_entityNumbers.emplace(entity->id, m_count++);
    }
    for (const std::size_t gone : m_gone)
        m_list.remove_child(m_sketch.geometryRecords[gone].record);
}

std::optional<FcstdRef> FcstdGeometryPatch::refOf(const Place& place) {
    if (place.entity == "origin")
        return FcstdRef{FcstdRef::kXAxis, FcstdRef::start};
    const std::optional<int> number = numberOf(place.entity);
    if (place.kind == PlaceKind::control)
        return number ? std::optional(FcstdRef{circleOf(place), FcstdRef::centre}) : std::nullopt;
    const Entity* entity = m_entities.find(place.entity);
    if (!number || entity == nullptr)
        return outsideRefOf(place);
    const bool isPoint = std::holds_alternative<PointShape>(entity->shape);
    switch (place.kind) {
        case PlaceKind::whole:
            return FcstdRef{*number, isPoint ? FcstdRef::start : FcstdRef::whole};
        case PlaceKind::start:
            return FcstdRef{*number, FcstdRef::start};
        case PlaceKind::end:
            return FcstdRef{*number, FcstdRef::end};
        case PlaceKind::centre:
            return FcstdRef{*number, FcstdRef::centre};
        default:
            return std::nullopt;
    }
}

std::optional<int> FcstdGeometryPatch::numberOf(const std::string& entity) const {
    if (entity == "x_axis")
        return FcstdRef::kXAxis;
    if (entity == "y_axis")
        return FcstdRef::kYAxis;
    if (const auto found = m_sketch.outsideNumbers.find(entity); found != m_sketch.outsideNumbers.end())
        return found->second.point == FcstdRef::whole ? std::optional(found->second.geometry) : std::nullopt;
    const auto found = m_entityNumbers.find(entity);
    return found == m_entityNumbers.end() ? std::nullopt : std::optional(found->second);
}

std::optional<FcstdRef> FcstdGeometryPatch::outsideRefOf(const Place& place) const {
    const auto found = m_sketch.outsideNumbers.find(place.entity);
    return found == m_sketch.outsideNumbers.end() ? std::nullopt : std::optional(found->second);
}

/// The circle that marks a control point, made where there is none yet.
int FcstdGeometryPatch::circleOf(const Place& control) {
    const auto key = std::pair(control.entity, control.index);
    if (const auto found = m_circles.find(key); found != m_circles.end())
        return found->second;
    const auto& spline = std::get<SplineShape>(m_entities.find(control.entity)->shape);
    const pugi::xml_node record = addRecord(m_list, {}, ++m_nextIdentifier);
    putShape(record, CircleShape{spline.control[static_cast<std::size_t>(control.index)], kControlRadius});
    putConstruction(record, true);
    putAlignment(record, static_cast<int>(FcstdAlignment::control));
    m_newCircles.push_back({m_count, m_entityNumbers.at(control.entity), control.index});
    return m_circles.emplace(key, m_count++).first->second;
}

std::optional<int> FcstdGeometryPatch::numberNow(int before) const {
    if (before < 0)
        return before;
    const auto record = static_cast<std::size_t>(before);
    return record < m_numbers.size() ? m_numbers[record] : std::nullopt;
}

void FcstdGeometryPatch::putUses(const FcstdUses& uses) {
    int number = 0;
    for (const pugi::xml_node& record : m_list.children("Geometry")) {
        const auto alignment = uses.alignments.find(number);
        putBlocked(record, uses.blocked.contains(number++));
        putAlignment(record, alignment == uses.alignments.end() ? 0 : alignment->second);
    }
}

}  // namespace holdfast::formats
