#include "editing/commands/drag/Hold.h"

#include <algorithm>
#include <utility>

#include "document/Names.h"
#include "document/Places.h"
#include "document/text/Suggest.h"
#include "editing/EditContext.h"
#include "editing/commands/drag/Grips.h"
#include "editing/commands/move/Moving.h"
#include "editing/text/EditText.h"
#include "geometry/Transforms.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

namespace {

/// A place at which the entity does not change its form is as good as all of it.
bool movesWhole(const Shape& shape, const std::vector<int>& grips) {
    const Vec2 by{1.0, 1.0};
    return withGripsMoved(shape, grips, by) == transformed(shape, translation(by));
}

/// "whole, start or end"
std::string gripsInWords(const Shape& shape) {
    const auto* spline = std::get_if<SplineShape>(&shape);
    if (std::holds_alternative<PolylineShape>(shape) || spline != nullptr)
        return placesOf(shape);
    std::vector<std::string_view> words{"whole"};
    using Row = std::pair<PlaceKind, std::string_view>;
    for (const auto& [kind, word] : {Row{PlaceKind::start, "start"}, Row{PlaceKind::end, "end"},
                                     Row{PlaceKind::mid, "mid"}, Row{PlaceKind::centre, "centre"}})
        if (!gripsAt(shape, {{}, kind}).empty())
            words.push_back(word);
    return oneOf(words);
}

Hold heldPlace(const Sourced<Place>& held, const Drawing& drawing) {
    const Place& place = held.value;
    const Name entity(place.entity, held.column);
    if (const std::string whole = spokenPlace(place); drawing.id(entity.value).isNull() && !drawing.id(whole).isNull())
        return {requireSelection(drawing, {{whole, held.column}}), {}};
    requireEntity(drawing, entity);
    refuseFixed(drawing, place.entity);
    const Shape shape = drawing.shape(place.entity);
    if (place.kind == PlaceKind::whole)
        return {{place.entity}, {}};
    const std::vector<int> grips = gripsAt(shape, place);
    if (grips.empty())
        throw EditError(spokenPlace(place) + " has no grip to drag; " + place.entity + " can be dragged " +
                        gripsInWords(shape));
    return {{place.entity}, movesWhole(shape, grips) ? std::vector<int>() : grips};
}

/// A first name with a dot that no entity has was meant for a place.
void refuseNoPlace(const std::vector<Name>& names, const Drawing& drawing) {
    if (names.empty() || names.front().column == 0 || !drawing.id(names.front().value).isNull())
        return;
    const Name& name = names.front();
    const std::size_t dot = name.value.find('.');
    if (dot == std::string::npos)
        return;
    const std::string_view kind = std::string_view(name.value).substr(dot + 1);
    if (!parsePlace(kind))
        throw RefusedWord(
            {"expected a place to drag" + std::string(kPlaceExamples), placeSuggestion(kind), name.column});
    requireEntity(drawing, {name.value.substr(0, dot), name.column});
    throw RefusedWord({"expected \"by\"", {}, names.size() > 1 ? names[1].column : name.column});
}

}  // namespace

Hold heldBy(const Drag& edit, const Drawing& drawing) {
    Hold held;
    if (const auto* place = std::get_if<Sourced<Place>>(&edit.held)) {
        held = heldPlace(*place, drawing);
    } else {
        const auto& names = std::get<std::vector<Name>>(edit.held);
        refuseNoPlace(names, drawing);
        held.names = requireSelection(drawing, names, "by");
    }
    if (edit.steps.value < 1 || edit.steps.value > 1000)
        throw RefusedWord({"a drag takes 1 to 1000 steps", {}, edit.steps.column});
    return held;
}

void refuseTurning(const Drawing& drawing, const Hold& held) {
    const Shape shape = drawing.shape(held.names.front());
    const bool isAxis = std::holds_alternative<RayShape>(shape) || std::holds_alternative<XlineShape>(shape);
    if (isAxis && !held.grips.empty())
        throw EditError(held.names.front() + " is constrained and cannot be turned by a drag; use \"set " +
                        held.names.front() + " through\" with a point that it is to pass");
}

std::vector<Vec2> Hold::pointsIn(const Drawing& drawing) const {
    std::vector<Vec2> points;
    if (grips.empty())
        return points;
    const std::vector<Grip> all = pointGrips(drawing.shape(names.front()));
    for (const int number : grips)
        for (const Grip& grip : all)
            if (grip.number == number)
                points.push_back(grip.point);
    return points;
}

}  // namespace holdfast::editing
