#include "document/checks/ConstraintCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "document/Names.h"
#include "document/Places.h"
#include "document/text/NumberText.h"
#include "document/text/Suggest.h"

namespace holdfast::document {
namespace {

using namespace roles;

struct Roles {
    unsigned operator()(const LineShape&) const {
        if (kind == PlaceKind::whole)
            return boundedLine | direction;
        return kind == PlaceKind::mid ? point : point | curveEnd | direction | smoothEnd;
    }
    unsigned operator()(const ArcShape&) const { return arcRoles(arc); }
    unsigned operator()(const CircleShape&) const { return arcRoles(circle); }
    unsigned operator()(const EllipseShape&) const { return arcRoles(ellipse); }
    unsigned operator()(const EllipticalArcShape&) const { return arcRoles(ellipse); }
    unsigned operator()(const SplineShape&) const {
        if (kind == PlaceKind::whole)
            return spline;
        return kind == PlaceKind::control ? point : point | curveEnd | smoothEnd;
    }
    unsigned operator()(const PointShape&) const { return point; }
    unsigned operator()(const XlineShape&) const { return endlessRoles(); }
    unsigned operator()(const RayShape&) const { return endlessRoles() | (kind == PlaceKind::start ? curveEnd : 0U); }
    unsigned operator()(const TextShape&) const { return kind == PlaceKind::whole ? text : point; }
    unsigned operator()(const PolylineShape& polyline) const {
        const bool straight =
            kind != PlaceKind::whole && polyline.bulges[static_cast<std::size_t>(place->index)] == 0.0;
        switch (kind) {
            case PlaceKind::segment:
                return straight ? boundedLine | direction : unsigned{arc};
            case PlaceKind::segmentStart:
            case PlaceKind::segmentEnd:
                return point | curveEnd | smoothEnd | (straight ? direction : 0U);
            case PlaceKind::segmentCentre:
                return point | centrePoint;
            case PlaceKind::segmentMid:
                return point;
            default:
                return 0;  // a whole polyline can only be fixed
        }
    }

    unsigned arcRoles(unsigned whole) const {
        switch (kind) {
            case PlaceKind::whole:
                return whole;
            case PlaceKind::centre:
                return point | centrePoint;
            case PlaceKind::mid:
                return point;
            default:
                return point | curveEnd | smoothEnd;
        }
    }
    unsigned endlessRoles() const {
        if (kind == PlaceKind::whole)
            return endlessLine | direction;
        return kind == PlaceKind::start ? point | direction : unsigned{direction};
    }

    const Place* place;
    PlaceKind kind;
};

unsigned rolesOf(const Place& place, const Shape& shape) {
    return std::visit(Roles{&place, place.kind}, shape);
}

std::string spoken(const Place& place, const EntityIndex& entities) {
    const Entity* entity = entities.find(place.entity);
    std::string text(typeName(entity->shape));
    if (place.kind != PlaceKind::whole)
        text = placeText(place) + " of " + text;
    return text + " " + inQuotes(place.entity);
}

std::string spoken(const std::vector<Place>& refs, const EntityIndex& entities) {
    std::string text;
    for (std::size_t i = 0; i < refs.size() && i < 4; ++i)
        text += (i == 0 ? "" : ", ") + spoken(refs[i], entities);
    return refs.size() > 4 ? text + ", ..." : text;
}

std::string refPlace(std::size_t index, std::string_view field) {
    return "refs/" + std::to_string(index) + "/" + std::string(field);
}

std::optional<Fault> faultInRef(const Place& place, std::size_t index, const EntityIndex& entities) {
    const Entity* entity = entities.find(place.entity);
    if (entity == nullptr)
        return Fault{refPlace(index, "entity"), "the id " + inQuotes(place.entity) + ", which no entity has",
                     "the id of an entity" + entities.suggestionFor(place.entity)};
    if (!hasPlace(entity->shape, place))
        return Fault{refPlace(index, "point"),
                     "the place " + inQuotes(placeText(place)) + ", which the " + std::string(typeName(entity->shape)) +
                         " " + inQuotes(place.entity) + " does not have",
                     placesOf(entity->shape)};
    return std::nullopt;
}

std::optional<Fault> faultInRefs(const std::vector<Place>& refs, const EntityIndex& entities) {
    for (std::size_t i = 0; i < refs.size(); ++i) {
        if (std::optional<Fault> fault = faultInRef(refs[i], i, entities))
            return fault;
    }
    return std::nullopt;
}

/// Few refs hold a meaning (three at most), so the count is judged before the pairs are looked at.
std::optional<Fault> faultInKind(const Constraint& constraint, const EntityIndex& entities) {
    const std::string type(typeName(constraint.type));
    const std::vector<Place>& refs = constraint.refs;
    if (!canHold(constraint.type, refs, entities)) {
        const std::string found = refs.empty() ? type + " without refs" : type + " of " + spoken(refs, entities);
        return Fault{"refs", found, type + " takes " + std::string(traitsOf(constraint.type).takes)};
    }
    for (std::size_t i = 1; i < refs.size(); ++i) {
        if (std::find(refs.begin(), refs.begin() + static_cast<std::ptrdiff_t>(i), refs[i]) !=
            refs.begin() + static_cast<std::ptrdiff_t>(i))
            return Fault{"refs/" + std::to_string(i), spoken(refs[i], entities) + " a second time",
                         "different places in one constraint"};
    }
    return std::nullopt;
}

std::optional<Fault> faultInValue(const Constraint& constraint) {
    const std::string type(typeName(constraint.type));
    if (!isDimension(constraint.type)) {
        if (constraint.value)
            return Fault{"value", "a value on a constraint of type " + type, "values on dimensions only"};
        if (!constraint.driving)
            return Fault{"driving", "a measured constraint of type " + type, "only dimensions can be measured"};
        return std::nullopt;
    }
    if (!constraint.value)
        return Fault{"", "the dimension " + inQuotes(constraint.id) + " of type " + type + " without a value",
                     "the field \"value\""};
    const double value = *constraint.value;
    if (!std::isfinite(value))
        return Fault{"value", "a value that is not finite", "a finite number"};
    const ConstraintValue kind = traitsOf(constraint.type).value;
    if (kind == ConstraintValue::length && value < 0.0)
        return Fault{"value", numberText(value), "a " + type + " of 0 or more; distance_x and distance_y have signs"};
    if (kind == ConstraintValue::positiveLength && value <= 0.0)
        return Fault{"value", numberText(value), "a " + type + " above 0"};
    return std::nullopt;
}

/// Whether its names mean something only the whole drawing can tell.
std::optional<Fault> faultInFormula(const Constraint& constraint) {
    if (constraint.formula.empty())
        return std::nullopt;
    if (!isDimension(constraint.type))
        return Fault{"formula", "a formula on a constraint of type " + std::string(typeName(constraint.type)),
                     "formulas on dimensions only"};
    if (!constraint.driving)
        return Fault{"formula", "a formula on a measured dimension", "formulas on driving dimensions only"};
    return std::nullopt;
}

std::optional<Fault> faultInRole(const Constraint& constraint, const EntityIndex& entities) {
    constexpr std::string_view roles[] = {"major_diameter", "minor_diameter", "focus1", "focus2"};
    const std::string& role = constraint.role;
    if (constraint.type != ConstraintType::internal) {
        if (role.empty())
            return std::nullopt;
        return Fault{"role", "a role on a constraint of type " + std::string(typeName(constraint.type)),
                     "roles on internal constraints only"};
    }
    if (std::find(std::begin(roles), std::end(roles), role) == std::end(roles))
        return Fault{role.empty() ? "" : "role", role.empty() ? "no role" : inQuotes(role),
                     oneOf(roles) + suggestion(role, roles)};
    const bool helperIsLine =
        (rolesOf(constraint.refs[0], entities.find(constraint.refs[0].entity)->shape) & boundedLine) != 0;
    if (helperIsLine == role.ends_with("diameter"))
        return std::nullopt;
    return Fault{"role", inQuotes(role) + " for " + spoken(constraint.refs[0], entities),
                 helperIsLine ? "major_diameter or minor_diameter for a line" : "focus1 or focus2 for a point"};
}

/// A smooth joint of curves without a spline would only be a tangency.
std::optional<Fault> faultInSmoothness(const Constraint& constraint, const EntityIndex& entities) {
    if (constraint.type != ConstraintType::g2Smooth)
        return std::nullopt;
    const auto isSpline = [&](const Place& place) {
        return std::holds_alternative<SplineShape>(entities.find(place.entity)->shape);
    };
    if (std::any_of(constraint.refs.begin(), constraint.refs.end(), isSpline))
        return std::nullopt;
    return Fault{"refs", "g2_smooth of " + spoken(constraint.refs, entities),
                 "g2_smooth takes " + std::string(traitsOf(constraint.type).takes)};
}

}  // namespace

bool canHold(ConstraintType type, const std::vector<Place>& refs, const EntityIndex& entities) {
    if (refs.size() > 3)
        return false;
    std::array<unsigned, 3> found{};
    for (std::size_t i = 0; i < refs.size(); ++i)
        found[i] = rolesOf(refs[i], entities.find(refs[i].entity)->shape);
    return traitsOf(type).accepts(std::span(found).first(refs.size()));
}

std::optional<Fault> faultIn(const Constraint& constraint, const EntityIndex& entities) {
    if (std::optional<Fault> fault = faultInRefs(constraint.refs, entities))
        return fault;
    if (std::optional<Fault> fault = faultInKind(constraint, entities))
        return fault;
    if (std::optional<Fault> fault = faultInValue(constraint))
        return fault;
    if (std::optional<Fault> fault = faultInFormula(constraint))
        return fault;
    if (std::optional<Fault> fault = faultInRole(constraint, entities))
        return fault;
    return faultInSmoothness(constraint, entities);
}

}  // namespace holdfast::document
