#include "editing/commands/network/NamedConstraints.h"

#include <algorithm>

#include "document/Names.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "document/text/Suggest.h"
#include "editing/Refusal.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// More than a message bears.
constexpr std::size_t kNamedConstraints = 10;

}  // namespace

void requireNewName(const Drawing& drawing, const Name& name) {
    const std::string taken = !drawing.id(name.value).isNull()                ? "an entity "
                              : !drawing.constraintCalled(name.value).empty() ? "a constraint "
                              : drawing.hasParameter(name.value)              ? "a parameter "
                              : drawing.references().find(name.value)         ? "a block reference "
                                                                              : "";
    if (!taken.empty())
        throw RefusedWord({"the drawing has " + taken + name.value + " already; choose another name", {}, name.column});
    if (name.value.find('.') != std::string::npos)
        throw RefusedWord({"a dot parts an entity from its places; choose a name without one", {}, name.column});
}

bool canBeGiven(ConstraintType type) {
    const ConstraintResidual residual = traitsOf(type).residual;
    return residual != ConstraintResidual::none && residual != ConstraintResidual::ellipseHelper;
}

Constraint requireConstraint(const Drawing& drawing, const Name& name) {
    if (const std::string id = drawing.constraintCalled(name.value); !id.empty())
        return *drawing.constraint(id);
    if (drawing.hasParameter(name.value))
        throw RefusedWord(
            {name.value + " is a parameter; say \"parameter " + name.value + " = ...\"", {}, name.column});
    if (!drawing.id(name.value).isNull())
        throw RefusedWord({name.value + " is an entity, not a constraint; \"erase\" takes entities", {}, name.column});
    const std::vector<std::string> ids = drawing.constraintIds();
    const std::vector<std::string_view> candidates(ids.begin(), ids.end());
    throw RefusedWord({"the drawing has no constraint " + name.value, suggestion(name.value, candidates), name.column});
}

Constraint requireDimension(const Drawing& drawing, const Name& name) {
    if (drawing.constraintCalled(name.value).empty() && !drawing.id(name.value).isNull())
        throw RefusedWord(
            {name.value + " is an entity; say which property of it to set, or name a dimension", {}, name.column});
    Constraint found = requireConstraint(drawing, name);
    if (!isDimension(found.type))
        throw RefusedWord(
            {found.id + " is no dimension (" + std::string(typeName(found.type)) + "); only dimensions have values",
             {},
             name.column});
    if (!found.active)
        throw RefusedWord({found.id + " is switched off; say \"unsuppress " + found.id + "\" first", {}, name.column});
    return found;
}

Constraint requireDriving(const Drawing& drawing, const Name& name) {
    Constraint dimension = requireDimension(drawing, name);
    if (!dimension.driving)
        throw EditError(dimension.id + " is measured and follows the drawing; say \"set " + dimension.id +
                        " driving\" first");
    return dimension;
}

std::optional<Fault> faultOn(const Drawing& drawing, const Constraint& constraint) {
    const Document part = drawing.around(entitiesOf(constraint));
    return faultIn(constraint, EntityIndex(part));
}

bool isLikeNumber(std::string_view word) {
    std::string lower;
    for (const char c : word)
        lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    std::string_view rest = lower;
    while (!rest.empty() && (rest.front() == '+' || rest.front() == '-' || rest.front() == '.'))
        rest.remove_prefix(1);
    return !rest.empty() && ((rest.front() >= '0' && rest.front() <= '9') || rest.starts_with("nan") || rest == "inf" ||
                             rest == "infinity");
}

std::optional<Vec2> directionIn(const Drawing& drawing, const Place& place) {
    const Shape shape = drawing.shape(place.entity);
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    if (polyline != nullptr && place.kind == PlaceKind::segment) {
        const auto number = static_cast<std::size_t>(place.index);
        if (polyline->bulges[number] != 0.0)
            return std::nullopt;
        return unit(polyline->vertices[segmentEndVertex(*polyline, number)] - polyline->vertices[number]);
    }
    if (place.kind != PlaceKind::whole)
        return std::nullopt;
    if (const auto* line = std::get_if<LineShape>(&shape))
        return unit(line->end - line->start);
    if (const auto* ray = std::get_if<RayShape>(&shape))
        return ray->direction;
    if (const auto* xline = std::get_if<XlineShape>(&shape))
        return xline->direction;
    return std::nullopt;
}

Document surroundingsOf(const Drawing& drawing, const Constraint& constraint) {
    return drawing.partAround(entitiesOf(constraint), kAllSteps).document;
}

Document withNew(const Drawing& drawing, const Constraint& wanted) {
    Document part = surroundingsOf(drawing, wanted);
    part.constraints.push_back(wanted);
    return part;
}

double measureOf(const Drawing& drawing, const Constraint& wanted) {
    Document part = drawing.around(entitiesOf(wanted));
    part.constraints = {wanted};
    return DocumentSketch(part).measured(0);
}

bool isHeld(const Document& part, std::size_t number) {
    const DocumentSketch sketch(part);
    return sketch.shortfallOf(number) <= kHolds * sketch.size();
}

std::string spokenConstraints(const Document& part, const std::vector<std::string>& ids) {
    std::string list;
    std::size_t named = 0;
    for (const Constraint& constraint : part.constraints)
        if (named < kNamedConstraints && std::find(ids.begin(), ids.end(), constraint.id) != ids.end())
            list += (named++ == 0 ? "" : ", ") + spokenConstraint(constraint);
    return ids.size() <= named ? list : list + " and " + std::to_string(ids.size() - named) + " more";
}

}  // namespace holdfast::editing
