#include "editing/commands/move/TransformedConstraints.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "document/Names.h"
#include "editing/constraints/HoldingConstraints.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"

namespace holdfast::editing {

namespace {

/// Where a transform sends the directions of the axes.
struct AxisImages {
    bool stay, change;  ///< each stays along its axis, or along the other one; neither for a slanted one
    double x, y;        ///< 1, or -1 where the sense turns round
};

AxisImages axisImages(const PlaneTransform& mirror) {
    const bool stay = std::abs(mirror.xAxis.y) <= kSameDirection, change = std::abs(mirror.xAxis.x) <= kSameDirection;
    return {stay, change, stay ? mirror.xAxis.x : mirror.xAxis.y, stay ? mirror.yAxis.y : mirror.yAxis.x};
}

bool isAlongAxis(ConstraintType type) {
    using enum ConstraintType;
    return type == horizontal || type == vertical || type == distanceX || type == distanceY;
}

ConstraintType alongOtherAxis(ConstraintType type) {
    using enum ConstraintType;
    switch (type) {
        case horizontal:
            return vertical;
        case vertical:
            return horizontal;
        case distanceX:
            return distanceY;
        default:
            return distanceX;
    }
}

/// The direction of one line; an arc alone has an angle of its own, which no reflection changes.
bool isDirection(const Constraint& constraint, const EntityIndex& entities) {
    if (constraint.type != ConstraintType::angle || constraint.refs.size() != 1)
        return false;
    const Place& place = constraint.refs.front();
    const Entity* entity = entities.find(place.entity);
    if (const auto* polyline = std::get_if<PolylineShape>(&entity->shape))
        return polyline->bulges[static_cast<std::size_t>(place.index)] == 0.0;
    return !std::holds_alternative<ArcShape>(entity->shape);
}

double directionAfter(const Constraint& constraint, const PlaneTransform& transform) {
    const double before = constraint.value.value();
    const bool turns = transform.mirrors || transform.angleAfter(0.0) != 0.0;
    return turns ? std::remainder(transform.angleAfter(before), kTurn) : before;
}

/// The value of a signed dimension on the same places; nothing for what the transform leaves, or cannot express so.
std::optional<double> valueAfter(const Constraint& constraint, const PlaneTransform& transform,
                                 const EntityIndex& entities) {
    const AxisImages images = axisImages(transform);
    if (constraint.type == ConstraintType::distanceX && images.stay)
        return images.x * constraint.value.value();
    if (constraint.type == ConstraintType::distanceY && images.stay)
        return images.y * constraint.value.value();
    if (isDirection(constraint, entities))
        return directionAfter(constraint, transform);
    if (transform.mirrors && constraint.type == ConstraintType::angle && constraint.refs.size() > 1)
        return -constraint.value.value();
    return std::nullopt;
}

/// What the constraint says of the transformed entities. The sense of signed dimensions turns with the order of places,
/// so that the copy shows the same number.
Constraint turned(Constraint constraint, const PlaneTransform& transform, const EntityIndex& entities) {
    const AxisImages images = axisImages(transform);
    const bool isDistance =
        constraint.type == ConstraintType::distanceX || constraint.type == ConstraintType::distanceY;
    const double sense = constraint.type == ConstraintType::distanceX ? images.x : images.y;
    const bool turnsAngle = transform.mirrors && constraint.type == ConstraintType::angle && constraint.refs.size() > 1;
    if (isDirection(constraint, entities))
        constraint.value = directionAfter(constraint, transform);
    if (turnsAngle || (isDistance && sense < 0.0))
        std::swap(constraint.refs[0], constraint.refs[1]);
    if (images.change && isAlongAxis(constraint.type))
        constraint.type = alongOtherAxis(constraint.type);
    return constraint;
}

/// Reflected arcs run counter-clockwise again: they start where the original ends.
Place placeOnCopy(const Place& place, const std::string& copy, bool mirrors, const EntityIndex& entities) {
    const Shape& shape = entities.find(place.entity)->shape;
    const bool isArc = std::holds_alternative<ArcShape>(shape) || std::holds_alternative<EllipticalArcShape>(shape);
    return {copy, mirrors && isArc ? otherEnd(place.kind) : place.kind, place.index};
}

bool isAmong(const Constraint& constraint, const std::unordered_set<std::string_view>& names) {
    return !constraint.refs.empty() && std::all_of(constraint.refs.begin(), constraint.refs.end(),
                                                   [&](const Place& place) { return names.contains(place.entity); });
}

bool canBeCopied(const Constraint& constraint) {
    using enum ConstraintType;
    return constraint.active && constraint.type != fixed && constraint.type != g2Smooth;
}

bool areCopied(const Constraint& constraint, const CopyNames& copies) {
    return std::all_of(constraint.refs.begin(), constraint.refs.end(),
                       [&](const Place& place) { return copies.contains(place.entity); });
}

}  // namespace

CopiedConstraints::CopiedConstraints(const Drawing& drawing, const std::vector<std::string>& originals)
    : m_document(drawing.around(originals)), m_entities(m_document) {
    const std::unordered_set<std::string_view> names(originals.begin(), originals.end());
    for (const Constraint& constraint : m_document.constraints)
        if (canBeCopied(constraint) && isAmong(constraint, names))
            m_among.push_back(&constraint);
}

Constraint CopiedConstraints::copyOf(const Constraint& original, const CopyNames& copies,
                                     const PlaneTransform& transform) const {
    Constraint copy = turned(original, transform, m_entities);
    copy.id.clear();
    copy.name.clear();
    if (copy.value != original.value)
        copy.formula.clear();
    for (Place& place : copy.refs)
        place = placeOnCopy(place, copies.at(place.entity), transform.mirrors, m_entities);
    return copy;
}

std::vector<Constraint> CopiedConstraints::of(const CopyNames& copies, const PlaneTransform& transform) const {
    std::vector<Constraint> copied;
    for (const Constraint* original : m_among)
        if (areCopied(*original, copies))
            copied.push_back(copyOf(*original, copies, transform));
    return copied;
}

std::vector<std::string> CopiedConstraints::addTo(Drawing& drawing, const CopyNames& copies,
                                                  const PlaneTransform& transform, CopiedKinds kinds) const {
    std::vector<std::string> names;
    names.reserve(copies.size());
    for (const auto& [original, copy] : copies)
        names.push_back(copy);
    Document part = drawing.around(names);
    const std::size_t first = part.constraints.size();
    std::vector<const Constraint*> tried;
    for (const Constraint* original : m_among) {
        if ((kinds == CopiedKinds::geometric && isDimension(original->type)) || !areCopied(*original, copies))
            continue;
        tried.push_back(original);
        part.constraints.push_back(copyOf(*original, copies, transform));
    }
    std::vector<std::string> leftOut;
    for (const std::size_t number : addHolding(drawing, part, first))
        leftOut.push_back(tried[number - first]->id);
    return leftOut;
}

void turnMeasures(Drawing& drawing, const std::vector<std::string>& names, const PlaneTransform& transform) {
    const AxisImages images = axisImages(transform);
    const bool isHalfTurn = !transform.mirrors && images.stay && images.x < 0.0;
    if (transform.scale != 1.0 || (!transform.mirrors && !isHalfTurn))
        return;
    const std::unordered_set<std::string_view> moved(names.begin(), names.end());
    const Document document = drawing.around(names);
    const EntityIndex entities(document);
    for (const Constraint& constraint : document.constraints)
        if (isAmong(constraint, moved))
            if (const std::optional<double> value = valueAfter(constraint, transform, entities)) {
                drawing.setMeasure(constraint.id, *value);
                if (!constraint.formula.empty() && *value == -*constraint.value)
                    drawing.setFormula(constraint.id, "-(" + constraint.formula + ")");
            }
}

std::vector<Constraint> lengthsAmong(const Drawing& drawing, const std::vector<std::string>& names) {
    const std::unordered_set<std::string_view> among(names.begin(), names.end());
    std::vector<Constraint> lengths;
    for (const Constraint& constraint : drawing.around(names).constraints) {
        const ConstraintTraits& traits = traitsOf(constraint.type);
        if (traits.isDimension() && traits.value != ConstraintValue::angle && isAmong(constraint, among))
            lengths.push_back(constraint);
    }
    return lengths;
}

}  // namespace holdfast::editing
