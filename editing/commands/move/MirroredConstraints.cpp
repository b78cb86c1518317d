#include "editing/commands/move/MirroredConstraints.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "document/EntityIndex.h"
#include "editing/HoldingConstraints.h"
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

double directionAfter(const Constraint& constraint, const PlaneTransform& mirror) {
    return std::remainder(mirror.angleAfter(constraint.value.value()), kTurn);
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

/// What the constraint says of the reflected entities. The sense of signed dimensions turns with the order of places,
/// so that the copy shows the same number.
Constraint turned(Constraint constraint, const PlaneTransform& mirror, const EntityIndex& entities) {
    const AxisImages images = axisImages(mirror);
    const bool isDistance =
        constraint.type == ConstraintType::distanceX || constraint.type == ConstraintType::distanceY;
    const double sense = constraint.type == ConstraintType::distanceX ? images.x : images.y;
    const bool turnsAngle = constraint.type == ConstraintType::angle && constraint.refs.size() > 1;
    if (isDirection(constraint, entities))
        constraint.value = directionAfter(constraint, mirror);
    if (turnsAngle || (isDistance && sense < 0.0))
        std::swap(constraint.refs[0], constraint.refs[1]);
    if (images.change && isAlongAxis(constraint.type))
        constraint.type = alongOtherAxis(constraint.type);
    return constraint;
}

/// Reflected arcs run counter-clockwise again: they start where the original ends.
Place placeOnCopy(Place place, const std::string& copy, const EntityIndex& entities) {
    const Shape& shape = entities.find(place.entity)->shape;
    if (std::holds_alternative<ArcShape>(shape) || std::holds_alternative<EllipticalArcShape>(shape)) {
        if (place.kind == PlaceKind::start)
            place.kind = PlaceKind::end;
        else if (place.kind == PlaceKind::end)
            place.kind = PlaceKind::start;
    }
    place.entity = copy;
    return place;
}

bool canBeCopied(const Constraint& constraint, const std::unordered_map<std::string, std::string>& copies) {
    using enum ConstraintType;
    if (constraint.refs.empty() || !constraint.active || constraint.type == fixed || constraint.type == g2Smooth)
        return false;
    return std::all_of(constraint.refs.begin(), constraint.refs.end(),
                       [&](const Place& place) { return copies.contains(place.entity); });
}

}  // namespace

void copyConstraints(Drawing& drawing, const std::unordered_map<std::string, std::string>& copies,
                     const PlaneTransform& mirror) {
    std::vector<std::string> names;
    for (const auto& [original, copy] : copies)
        names.insert(names.end(), {original, copy});
    Document document = drawing.around(names);
    const EntityIndex entities(document);
    const std::size_t count = document.constraints.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!canBeCopied(document.constraints[i], copies))
            continue;
        Constraint copy = turned(document.constraints[i], mirror, entities);
        copy.id.clear();
        copy.name.clear();
        for (Place& place : copy.refs)
            place = placeOnCopy(place, copies.at(place.entity), entities);
        document.constraints.push_back(std::move(copy));
    }
    addHolding(drawing, document, count);
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
        if (std::all_of(constraint.refs.begin(), constraint.refs.end(),
                        [&](const Place& place) { return moved.contains(place.entity); }))
            if (const std::optional<double> value = valueAfter(constraint, transform, entities))
                drawing.setMeasure(constraint.id, *value);
}

}  // namespace holdfast::editing
