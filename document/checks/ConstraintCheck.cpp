#include "document/checks/ConstraintCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

#include "document/Names.h"
#include "document/Places.h"
#include "document/text/NumberText.h"
#include "document/text/Suggest.h"

namespace holdfast::document {
namespace {

/// What a place can serve as. One place may serve as several: the end of a line is a point, a curve's end and a
/// direction.
enum Role : unsigned {
    point = 1,
    curveEnd = 2,
    centrePoint = 4,
    boundedLine = 8,
    endlessLine = 16,
    circle = 32,
    arc = 64,
    ellipse = 128,
    spline = 256,
    text = 512,
    direction = 1024,
    smoothEnd = 2048,  ///< an end at which a curvature can be matched: of a line, arc, elliptical arc or spline
    lineLike = boundedLine | endlessLine,
    round = circle | arc,
    bent = round | ellipse,
    curve = lineLike | bent | spline,
    upright = lineLike | text,
    anything = ~0U
};

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

struct Signature {
    ConstraintType type;
    unsigned count;
    std::array<unsigned, 3> roles;
};

using enum ConstraintType;

// One row for each way in which a kind can hold; a row fits when every reference has one of its roles.
// clang-format off
constexpr Signature kSignatures[] = {
    {coincident,    2, {point, point}},
    {concentric,    2, {centrePoint, centrePoint}},
    {pointOnCurve,  2, {point, curve}},
    {fixed,         1, {anything}},
    {horizontal,    1, {upright}},
    {horizontal,    2, {point, point}},
    {vertical,      1, {upright}},
    {vertical,      2, {point, point}},
    {parallel,      2, {upright, upright}},
    {perpendicular, 2, {upright, upright}},
    {perpendicular, 2, {lineLike, bent}},
    {perpendicular, 2, {bent, lineLike}},
    {perpendicular, 2, {curveEnd, curveEnd | curve}},
    {perpendicular, 2, {curve, curveEnd}},
    {perpendicular, 3, {curve, curve, point}},
    {collinear,     2, {lineLike, lineLike}},
    {tangent,       2, {lineLike, bent | spline}},
    {tangent,       2, {bent, lineLike | bent | spline}},
    {tangent,       2, {spline, lineLike | bent}},
    {tangent,       2, {curveEnd, curveEnd | curve}},
    {tangent,       2, {curve, curveEnd}},
    {tangent,       3, {curve, curve, point}},
    {equal,         2, {boundedLine, boundedLine}},
    {equal,         2, {round, round}},
    {equal,         2, {ellipse, ellipse}},
    {symmetric,     3, {point, point, lineLike | point}},
    {symmetric,     3, {lineLike, lineLike, lineLike}},
    {symmetric,     3, {round, round, lineLike}},
    {midpoint,      2, {point, boundedLine}},
    {internal,      2, {boundedLine | point, ellipse}},
    {g2Smooth,      2, {smoothEnd, smoothEnd}},
    {composite,     0, {}},
    {distance,      1, {boundedLine | arc}},
    {distance,      2, {point, point | lineLike | round}},
    {distance,      2, {lineLike, point | round}},
    {distance,      2, {round, point | lineLike | round}},
    {distanceX,     2, {point, point}},
    {distanceY,     2, {point, point}},
    {radius,        1, {round}},
    {diameter,      1, {round}},
    {angle,         1, {direction | arc}},
    {angle,         2, {direction, direction}},
    {angle,         3, {curve | direction, curve | direction, point}},
};
// clang-format on

/// What each kind takes, in words.
std::string_view wantedBy(ConstraintType type) {
    switch (type) {
        case coincident:
            return "two points";
        case concentric:
            return "two centre points";
        case pointOnCurve:
            return "a point and a whole curve";
        case fixed:
            return "one entity or point";
        case horizontal:
        case vertical:
            return "one whole line or text, or two points";
        case parallel:
            return "two whole lines or texts";
        case perpendicular:
            return "two whole lines or texts, a whole line and a circle, arc or ellipse, ends of curves, or two curves "
                   "and a point";
        case collinear:
            return "two whole lines";
        case tangent:
            return "two whole curves that can touch (a line and a bent one, or two bent ones), ends of curves, or two "
                   "curves and a point";
        case equal:
            return "two bounded lines, two circles or arcs, or two ellipses";
        case symmetric:
            return "two points and a line or point to mirror at, or two lines or circles and a line";
        case midpoint:
            return "a point and a whole bounded line";
        case internal:
            return "a helper line or point and the ellipse that it belongs to";
        case g2Smooth:
            return "two ends of curves, one of them a spline's";
        case composite:
            return "no refs of its own; its geometry is that of its members";
        case distance:
            return "one bounded line or arc, or two of points, lines and circles (but not two lines)";
        case distanceX:
        case distanceY:
            return "two points";
        case radius:
        case diameter:
            return "one whole circle or arc";
        case angle:
            return "one line or arc, two lines, or two curves and a point";
    }
    return "";
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
        return Fault{"refs", found, type + " takes " + std::string(wantedBy(constraint.type))};
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
    if (constraint.type == distance && value < 0.0)
        return Fault{"value", numberText(value), "a distance of 0 or more; distance_x and distance_y have signs"};
    if ((constraint.type == radius || constraint.type == diameter) && value <= 0.0)
        return Fault{"value", numberText(value), "a " + type + " above 0"};
    return std::nullopt;
}

std::optional<Fault> faultInRole(const Constraint& constraint, const EntityIndex& entities) {
    constexpr std::string_view roles[] = {"major_diameter", "minor_diameter", "focus1", "focus2"};
    const std::string& role = constraint.role;
    if (constraint.type != internal) {
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
    if (constraint.type != g2Smooth)
        return std::nullopt;
    const auto isSpline = [&](const Place& place) {
        return std::holds_alternative<SplineShape>(entities.find(place.entity)->shape);
    };
    if (std::any_of(constraint.refs.begin(), constraint.refs.end(), isSpline))
        return std::nullopt;
    return Fault{"refs", "g2_smooth of " + spoken(constraint.refs, entities),
                 "g2_smooth takes " + std::string(wantedBy(g2Smooth))};
}

}  // namespace

bool canHold(ConstraintType type, const std::vector<Place>& refs, const EntityIndex& entities) {
    if (refs.size() > 3)
        return false;
    std::array<unsigned, 3> roles{};
    for (std::size_t i = 0; i < refs.size(); ++i)
        roles[i] = rolesOf(refs[i], entities.find(refs[i].entity)->shape);
    return std::any_of(std::begin(kSignatures), std::end(kSignatures), [&](const Signature& signature) {
        if (signature.type != type || signature.count != refs.size())
            return false;
        for (std::size_t i = 0; i < refs.size(); ++i) {
            if ((roles[i] & signature.roles[i]) == 0 && signature.roles[i] != anything)
                return false;
        }
        return true;
    });
}

std::optional<Fault> faultIn(const Constraint& constraint, const EntityIndex& entities) {
    if (std::optional<Fault> fault = faultInRefs(constraint.refs, entities))
        return fault;
    if (std::optional<Fault> fault = faultInKind(constraint, entities))
        return fault;
    if (std::optional<Fault> fault = faultInValue(constraint))
        return fault;
    if (std::optional<Fault> fault = faultInRole(constraint, entities))
        return fault;
    return faultInSmoothness(constraint, entities);
}

}  // namespace holdfast::document
