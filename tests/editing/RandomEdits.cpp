#include "tests/editing/RandomEdits.h"

#include <array>
#include <cmath>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "editing/EditContext.h"
#include "editing/commands/values/Properties.h"
#include "geometry/GeometryError.h"
#include "geometry/construction/Extending.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

bool isCurve(const Entity& entity) {
    return !std::holds_alternative<PointShape>(entity.shape) && !std::holds_alternative<TextShape>(entity.shape);
}

/// A length that says how large things are: of the entity's bounds, not 0.
double sizeOf(const Shape& shape) {
    if (std::holds_alternative<PointShape>(shape) || std::holds_alternative<TextShape>(shape))
        return 1.0;
    const Box box = boundsOf(shape);
    const double size = box.isBounded() ? box.diagonal() : 10.0;
    return size > 0.0 ? size : 1.0;
}

/// Geometry refuses unsound curves and those without ends: they fulfil no condition.
template <typename Condition>
bool holds(Condition condition) {
    try {
        return condition();
    } catch (const GeometryError&) {
        return false;
    }
}

bool cross(const Shape& a, const Shape& b) {
    return holds([&] { return !intersect(a, b).empty(); });
}

bool reaches(const Shape& curve, CurveEnd end, const Shape& boundary) {
    return holds([&] { return extensionTo(curve, end, boundary).has_value(); });
}

/// Has one of them an end where the other has one?
bool meet(const Shape& a, const Shape& b) {
    return holds([&] {
        const ParamRange rangeA = paramRange(a), rangeB = paramRange(b);
        for (const double p : {rangeA.first, rangeA.last})
            for (const double q : {rangeB.first, rangeB.last})
                if (distance(pointAt(a, p), pointAt(b, q)) <= 1e-9 * sizeOf(a))
                    return true;
        return false;
    });
}

/// What a dimension says, as users give it.
double saidBy(const Constraint& dimension) {
    return spokenValue(dimension.type, *dimension.value);
}

}  // namespace

std::string RandomEdits::next(const Document& document) {
    static constexpr std::array<Maker, 26> makers{
        &RandomEdits::breakEdit,     &RandomEdits::trimEdit,     &RandomEdits::extendEdit,    &RandomEdits::filletEdit,
        &RandomEdits::joinEdit,      &RandomEdits::lengthenEdit, &RandomEdits::stretchEdit,   &RandomEdits::mirrorEdit,
        &RandomEdits::alignEdit,     &RandomEdits::rotateEdit,   &RandomEdits::dragEdit,      &RandomEdits::setEdit,
        &RandomEdits::moveEdit,      &RandomEdits::copyEdit,     &RandomEdits::scaleEdit,     &RandomEdits::chamferEdit,
        &RandomEdits::offsetEdit,    &RandomEdits::explodeEdit,  &RandomEdits::drawEdit,      &RandomEdits::eraseEdit,
        &RandomEdits::constrainEdit, &RandomEdits::deleteEdit,   &RandomEdits::dimensionEdit, &RandomEdits::formulaEdit,
        &RandomEdits::parameterEdit, &RandomEdits::defineEdit};
    if (chance(0.1))
        return chance(0.7) ? "undo" : "redo";
    const std::string edit = byOneOf(makers, document);
    return edit.empty() ? "undo" : edit;
}

std::string RandomEdits::moving(const Document& document) {
    static constexpr std::array<Maker, 5> makers{&RandomEdits::rotateEdit, &RandomEdits::setEdit,
                                                 &RandomEdits::stretchEdit, &RandomEdits::dragEdit,
                                                 &RandomEdits::mirrorEdit};
    return byOneOf(makers, document);
}

std::string RandomEdits::byOneOf(std::span<const Maker> makers, const Document& document) {
    for (int tries = 0; tries < 20; ++tries) {
        const Maker maker = makers[below(makers.size())];
        std::string edit;
        if (holds([&] { return !(edit = (this->*maker)(document)).empty(); }))
            return edit;
    }
    return "";
}

std::string RandomEdits::number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.5g", value);
    return text;
}

/// Points on curves need all their digits.
std::string RandomEdits::point(Vec2 p) {
    char text[80];
    std::snprintf(text, sizeof text, "%.17g,%.17g", p.x, p.y);
    return text;
}

std::string RandomEdits::vector(double size) {
    return number(between(-size, size)) + "," + number(between(-size, size));
}

const Entity* RandomEdits::anyCurve(const Document& document) {
    for (int tries = 0; tries < 8; ++tries)
        if (const Entity& entity = anyEntity(document); isCurve(entity) && !entity.fixed)
            return &entity;
    return nullptr;
}

const Entity* RandomEdits::otherCurve(const Document& document, const Entity& entity,
                                      const std::function<bool(const Shape&)>& suits) {
    for (int tries = 0; tries < 20; ++tries)
        if (const Entity& other = anyEntity(document); other.id != entity.id && isCurve(other) && suits(other.shape))
            return &other;
    return nullptr;
}

Vec2 RandomEdits::anyPointOn(const Shape& shape) {
    ParamRange range = paramRange(shape);
    range.first = std::max(range.first, -100.0);
    range.last = std::isfinite(range.last) ? range.last : range.first + 100.0;
    return pointAt(shape, range.first + share() * (range.last - range.first));
}

const Entity& RandomEdits::partnerOf(const Document& document, const Entity& entity) {
    const EntityIndex index(document);
    for (int tries = 0; tries < 30 && !document.constraints.empty(); ++tries) {
        const Constraint& constraint = document.constraints[below(document.constraints.size())];
        if (constraint.refs.size() < 2 || constraint.refs[0].entity == constraint.refs[1].entity)
            continue;
        for (const int other : {0, 1})
            if (constraint.refs[static_cast<std::size_t>(1 - other)].entity == entity.id)
                if (const Entity* partner = index.find(constraint.refs[static_cast<std::size_t>(other)].entity);
                    partner != nullptr && isCurve(*partner))
                    return *partner;
    }
    return anyEntity(document);
}

std::string RandomEdits::breakEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    std::string edit = "break " + curve->id + " at " + point(anyPointOn(curve->shape));
    return chance(0.5) ? edit : edit + " to " + point(anyPointOn(curve->shape));
}

std::string RandomEdits::trimEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    std::string edit = "trim " + curve->id + " at " + point(anyPointOn(curve->shape)) + " by";
    for (int edges = 0; edges < 2; ++edges)
        if (const Entity* edge = otherCurve(document, *curve, [&](const Shape& s) { return cross(curve->shape, s); }))
            edit += " " + edge->id;
    return edit;
}

std::string RandomEdits::extendEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const CurveEnd end = chance(0.5) ? CurveEnd::start : CurveEnd::end;
    const Entity* boundary =
        otherCurve(document, *curve, [&](const Shape& shape) { return reaches(curve->shape, end, shape); });
    return "extend " + curve->id + (end == CurveEnd::start ? " start" : " end") + " to " +
           (boundary != nullptr ? *boundary : anyEntity(document)).id;
}

std::string RandomEdits::filletEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const double radius = chance(0.2) ? 0.0 : sizeOf(curve->shape) * between(0.01, 0.3);
    const std::string keptCorner = chance(0.2) ? " keep corner" : "";
    if (const auto* polyline = std::get_if<PolylineShape>(&curve->shape); polyline != nullptr && chance(0.7)) {
        const auto any = [&] { return std::to_string(below(polyline->vertices.size())); };
        if (chance(0.5))
            return "fillet " + curve->id + " corner " + any() + " radius " + number(radius) + keptCorner;
        return "fillet " + curve->id + " segments " + any() + " " + any() + " radius " + number(radius);
    }
    return "fillet " + curve->id + " " + partnerOf(document, *curve).id + " radius " + number(radius) + keptCorner;
}

std::string RandomEdits::joinEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const Entity* next = otherCurve(document, *curve, [&](const Shape& shape) { return meet(curve->shape, shape); });
    return "join " + curve->id + " " + (next != nullptr ? *next : partnerOf(document, *curve)).id;
}

std::string RandomEdits::lengthenEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const double size = sizeOf(curve->shape);
    const std::string edit = "lengthen " + curve->id + (chance(0.5) ? " start" : " end");
    return chance(0.7) ? edit + " by " + number(size * between(-0.3, 0.5))
                       : edit + " to " + number(size * between(0.5, 1.5));
}

std::string RandomEdits::stretchEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const Vec2 p = anyPointOn(curve->shape);
    const double size = sizeOf(curve->shape);
    return "stretch window " + point({p.x - size * share(), p.y - size * share()}) + " " +
           point({p.x + size * share(), p.y + size * share()}) + " by " + vector(0.2 * size);
}

std::string RandomEdits::mirrorEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const auto isLine = [](const Shape& shape) { return std::holds_alternative<LineShape>(shape); };
    if (const Entity* line = chance(0.4) ? otherCurve(document, *curve, isLine) : nullptr)
        return "mirror " + curve->id + " about " + line->id + (chance(0.7) ? " keep" : "");
    const Vec2 p = anyPointOn(curve->shape);
    return "mirror " + curve->id + " about " + point(p) + " " + point({p.x + between(-1, 1), p.y + between(-1, 1)}) +
           (chance(0.3) ? " keep" : "");
}

std::string RandomEdits::alignEdit(const Document& document) {
    const Entity& entity = anyEntity(document);
    const double size = sizeOf(entity.shape);
    const Vec2 from{between(-size, size), between(-size, size)};
    if (chance(0.5))
        return "align " + entity.id + " from " + point(from) + " to " + vector(size);
    return "align " + entity.id + " from " + point(from) + " " + vector(size) + " to " + vector(size) + " " +
           vector(size);
}

std::string RandomEdits::rotateEdit(const Document& document) {
    const Entity& entity = anyEntity(document);
    return "rotate " + entity.id + " about " + vector(sizeOf(entity.shape)) + " by " +
           (chance(0.5) ? number(90.0 * static_cast<double>(below(4))) : number(between(-180, 180)));
}

std::string RandomEdits::dragEdit(const Document& document) {
    const Entity& entity = anyEntity(document);
    const std::string by = " by " + vector(0.2 * sizeOf(entity.shape));
    static constexpr std::array<PlaceKind, 3> grips{PlaceKind::start, PlaceKind::end, PlaceKind::centre};
    const Place place{entity.id, grips[below(grips.size())]};
    return chance(0.4) || !hasPlace(entity.shape, place) ? "drag " + entity.id + by
                                                         : "drag " + entity.id +
                                                               (place.kind == PlaceKind::start ? ".start"
                                                                : place.kind == PlaceKind::end ? ".end"
                                                                                               : ".centre") +
                                                               by;
}

std::string RandomEdits::setEdit(const Document& document) {
    const Entity& entity = anyEntity(document);
    const auto rows = propertiesOf(entity.shape);
    if (rows.empty())
        return "";
    const PropertyRow& row = rows[below(rows.size())];
    std::string edit = "set " + entity.id + " " + std::string(row.word);
    int index = 0;
    if (row.property == Property::vertex || row.property == Property::control) {
        const auto* polyline = std::get_if<PolylineShape>(&entity.shape);
        const std::size_t count =
            polyline != nullptr ? polyline->vertices.size() : std::get<SplineShape>(entity.shape).control.size();
        index = static_cast<int>(below(count));
        edit += " " + std::to_string(index);
    }
    const PropertyValue now = propertyOf(entity.shape, row.property, index);
    const double size = sizeOf(entity.shape);
    switch (row.valueKind) {
        case ValueKind::point:
            return edit + " " + number(now.point.x + between(-0.2, 0.2) * size) + "," +
                   number(now.point.y + between(-0.2, 0.2) * size);
        case ValueKind::length:
            return edit + " " + number(now.number * between(0.7, 1.4));
        case ValueKind::angle:
            return edit + " " + number(between(0, 360));
        case ValueKind::ratio:
            return edit + " " + number(between(0.1, 1.0));
    }
    return edit;
}

std::string RandomEdits::someEntities(const Document& document) {
    const Entity& entity = anyEntity(document);
    std::string names = entity.id;
    const Entity& partner = partnerOf(document, entity);
    return chance(0.5) && partner.id != entity.id ? names + " " + partner.id : names;
}

std::string RandomEdits::moveEdit(const Document& document) {
    return "move " + someEntities(document) + " by " + vector(0.2 * sizeOf(anyEntity(document).shape));
}

/// Few copies: a session of many edits is not to grow without end.
std::string RandomEdits::copyEdit(const Document& document) {
    const std::string names = "copy " + someEntities(document);
    const double size = sizeOf(anyEntity(document).shape);
    if (chance(0.5))
        return names + " around " + vector(size) + " by " + (chance(0.5) ? "90" : number(between(-180, 180)));
    return names + " by " + vector(size) + (chance(0.2) ? " times 2 and by " + vector(size) : "") +
           (chance(0.4) ? " linked" : "");
}

std::string RandomEdits::scaleEdit(const Document& document) {
    return "scale " + someEntities(document) + " about " + vector(sizeOf(anyEntity(document).shape)) + " by " +
           number(between(0.5, 2.0));
}

std::string RandomEdits::chamferEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    if (curve == nullptr)
        return "";
    const std::string by =
        " by " + number(sizeOf(curve->shape) * between(0.01, 0.3)) + (chance(0.2) ? " keep corner" : "");
    if (const auto* polyline = std::get_if<PolylineShape>(&curve->shape); polyline != nullptr && chance(0.7))
        return "chamfer " + curve->id + " corner " + std::to_string(below(polyline->vertices.size())) + by;
    return "chamfer " + curve->id + " " + partnerOf(document, *curve).id + by;
}

std::string RandomEdits::offsetEdit(const Document& document) {
    return "offset " + someEntities(document) + " by " +
           number(between(-0.1, 0.1) * sizeOf(anyEntity(document).shape)) + (chance(0.5) ? " rounded" : "");
}

std::string RandomEdits::explodeEdit(const Document& document) {
    const Entity* curve = anyCurve(document);
    const bool isPolyline = curve != nullptr && std::holds_alternative<PolylineShape>(curve->shape);
    return isPolyline ? "explode " + curve->id : "";
}

std::string RandomEdits::drawEdit(const Document& document) {
    const Entity& near = anyEntity(document);
    const double size = sizeOf(near.shape);
    const std::string from = chance(0.4) ? pointOf(near) : vector(size);
    const std::string how = chance(0.2) ? " construction" : "";
    switch (below(7)) {
        case 0:
            return "draw circle " + from + " radius " + number(size * between(0.05, 0.5)) + how;
        case 1:
            return "draw polyline " + from + " " + vector(size) + " bulge " + number(between(-1.0, 1.0)) + " " +
                   vector(size) + " " + vector(size) + (chance(0.3) ? " closed" : "") + how;
        case 2:
            return "draw arc centre 0,0 from " + number(between(0.1, 1.0) * size) + ",0 to " + vector(size) + how;
        case 3:
            return "draw point " + vector(size) + how;
        case 4:
            return "draw spline " + from + " " + vector(size) + " " + vector(size) + " " + vector(size) + how;
        default:
            return "draw line " + from + " " + vector(size) + how;
    }
}

/// Of a drawing with few entities nothing is left soon, and the session ends.
std::string RandomEdits::eraseEdit(const Document& document) {
    return document.entities.size() < 4 ? "" : "erase " + someEntities(document);
}

std::string RandomEdits::pieceOf(const Entity& entity) {
    const auto* polyline = std::get_if<PolylineShape>(&entity.shape);
    return polyline == nullptr
               ? entity.id
               : spokenPlace({entity.id, PlaceKind::segment, static_cast<int>(below(polyline->vertices.size()))});
}

std::string RandomEdits::pointOf(const Entity& entity) {
    static constexpr std::array<PlaceKind, 7> kinds{PlaceKind::start,     PlaceKind::end,     PlaceKind::centre,
                                                    PlaceKind::mid,       PlaceKind::control, PlaceKind::segmentStart,
                                                    PlaceKind::segmentEnd};
    for (int tries = 0; tries < 20; ++tries)
        if (const Place place{entity.id, kinds[below(kinds.size())], static_cast<int>(chance(0.5) ? 0 : below(4))};
            hasPlace(entity.shape, place))
            return spokenPlace(place);
    return entity.id;
}

std::string RandomEdits::constraintOfOne(const Document& document) {
    static constexpr std::array<std::string_view, 7> kinds{"horizontal", "vertical", "fixed", "distance",
                                                           "radius",     "diameter", "angle"};
    const Entity& entity = anyEntity(document);
    const std::string kind = oneOf(kinds);
    return kind + " " + (kind == "fixed" && chance(0.7) ? pointOf(entity) : pieceOf(entity));
}

std::string RandomEdits::constraintOfTwo(const Document& document) {
    static constexpr std::array<std::string_view, 7> kinds{"parallel",  "perpendicular", "equal", "tangent",
                                                           "collinear", "distance",      "angle"};
    const Entity& entity = anyEntity(document);
    return oneOf(kinds) + " " + pieceOf(entity) + " " + pieceOf(partnerOf(document, entity));
}

std::string RandomEdits::constraintOfPoints(const Document& document) {
    static constexpr std::array<std::string_view, 7> kinds{"coincident", "concentric", "horizontal", "vertical",
                                                           "distance",   "distance_x", "distance_y"};
    const Entity& entity = anyEntity(document);
    return oneOf(kinds) + " " + pointOf(entity) + " " +
           pointOf(chance(0.5) ? partnerOf(document, entity) : anyEntity(document));
}

std::string RandomEdits::constraintOfMixed(const Document& document) {
    const Entity &entity = anyEntity(document), &other = anyEntity(document);
    static constexpr std::array<std::string_view, 3> kinds{"point_on_curve", "midpoint", "distance"};
    if (chance(0.7))
        return oneOf(kinds) + " " + pointOf(entity) + " " + pieceOf(other);
    return "symmetric " + pointOf(entity) + " " + pointOf(other) + " " + pieceOf(anyEntity(document));
}

/// Of every kind; what cannot be between its places is refused.
std::string RandomEdits::constrainEdit(const Document& document) {
    static constexpr std::array<Maker, 4> makers{&RandomEdits::constraintOfOne, &RandomEdits::constraintOfTwo,
                                                 &RandomEdits::constraintOfPoints, &RandomEdits::constraintOfMixed};
    const std::string what = (this->*makers[below(makers.size())])(document);
    const bool takesLength = what.starts_with("distance") || what.starts_with("radius") || what.starts_with("diameter");
    const std::string value =
        takesLength && chance(0.3) ? " " + number(sizeOf(anyEntity(document).shape) * between(0.2, 1.0)) : "";
    return "constrain " + what + value + (chance(0.1) ? " anyway" : "");
}

std::string RandomEdits::deleteEdit(const Document& document) {
    if (!document.parameters.empty() && chance(0.1))
        return "delete " + document.parameters[below(document.parameters.size())].name;
    if (document.constraints.empty())
        return "";
    return "delete " + document.constraints[below(document.constraints.size())].id;
}

const Constraint* RandomEdits::anyDimension(const Document& document) {
    for (int tries = 0; tries < 20 && !document.constraints.empty(); ++tries)
        if (const Constraint& constraint = document.constraints[below(document.constraints.size())];
            isDimension(constraint.type) && constraint.value && constraint.active)
            return &constraint;
    return nullptr;
}

std::string RandomEdits::dimensionEdit(const Document& document) {
    const Constraint* dimension = anyDimension(document);
    if (dimension == nullptr)
        return "";
    if (chance(0.2))
        return "set " + dimension->id + (dimension->driving ? " measured" : " driving");
    return "set " + dimension->id + " " + number(saidBy(*dimension) * between(0.8, 1.25));
}

std::string RandomEdits::formulaEdit(const Document& document) {
    const Constraint *dimension = anyDimension(document), *other = anyDimension(document);
    if (dimension == nullptr || other == nullptr)
        return "";
    const std::string edit = "set " + dimension->id + " = ";
    if (!document.parameters.empty() && chance(0.6))
        return edit + document.parameters[below(document.parameters.size())].name + " * " + number(saidBy(*dimension));
    if (saidBy(*other) == 0.0)
        return "";
    return edit + "\"" + other->id + "\" * " + number(saidBy(*dimension) / saidBy(*other));
}

/// Plain numbers about 1, which formulas multiply.
std::string RandomEdits::parameterEdit(const Document&) {
    return "parameter factor" + std::to_string(below(3)) + " = " + number(between(0.8, 1.25));
}

/// Of a few entities: what is fully determined hardly lets itself be edited.
std::string RandomEdits::defineEdit(const Document& document) {
    return "define " + someEntities(document) + (chance(0.2) ? " rounded 3" : "");
}

std::string RandomEdits::linkedCopy(const Document& document) {
    const Entity& entity = anyEntity(document);
    const Entity& partner = partnerOf(document, entity);
    const std::string names = partner.id == entity.id ? entity.id : entity.id + " " + partner.id;
    return "copy " + names + " by " + number(2.0 * sizeOf(entity.shape)) + ",0" + (chance(0.3) ? " times 2" : "") +
           " linked";
}

}  // namespace holdfast::editing
