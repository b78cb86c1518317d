#include "editing/text/Parse.h"

#include <algorithm>

#include "document/Places.h"
#include "editing/Commands.h"
#include "editing/Verbs.h"
#include "editing/text/EntityAt.h"
#include "editing/text/ParseProperty.h"
#include "geometry/Segments.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

namespace {

void refuseUnknown(const EditSyntaxError& error, const Drawing& drawing) {
    for (const NamedEntity& named : error.named())
        requireEntity(drawing, named.name, named.ends);
}

/// Of a dimension a word was meant for its value.
void refuseDimensionValue(const PropertyFault& error, const Drawing& drawing) {
    const std::string& name = error.entity().value;
    if (!drawing.id(name).isNull() || drawing.constraintCalled(name).empty())
        return;
    throw RefusedWord({"expected the value of " + name +
                           ", a number such as 2.5, or \"driving\" or \"measured\"; with a "
                           "unit or a name it is a formula, such as set " +
                           name + " = 5 mm",
                       {},
                       error.word().column});
}

void refuseForeign(const PropertyFault& error, const Drawing& drawing) {
    const Shape shape = drawing.shape(error.entity().value);
    const auto rows = propertiesOf(shape);
    const auto isMeant = [&](const PropertyRow& row) { return row.word == error.word().value; };
    if (std::none_of(rows.begin(), rows.end(), isMeant))
        refuseProperty(error.entity().value, shape, error.word());
}

}  // namespace

namespace {

std::string nameAt(const Drawing& drawing, const std::string& word, Vec2 point, std::size_t column,
                   std::vector<std::string>* remarks) {
    if (!drawing.id(word).isNull())
        return word;
    EntityAt found = entityAt(drawing, point, column);
    const bool isSaid = remarks == nullptr || found.remark.empty() ||
                        std::find(remarks->begin(), remarks->end(), found.remark) != remarks->end();
    if (!isSaid)
        remarks->push_back(found.remark);
    return found.name;
}

/// The last vertex of an open polyline begins no segment.
Place vertexOf(const Drawing& drawing, const std::string& polyline, int vertex) {
    const Shape shape = drawing.id(polyline).isNull() ? Shape() : drawing.shape(polyline);
    const auto* found = std::get_if<PolylineShape>(&shape);
    const bool isLast =
        found != nullptr && !found->closed && vertex > 0 && static_cast<std::size_t>(vertex) == segmentCount(*found);
    return isLast ? Place{polyline, PlaceKind::segmentEnd, vertex - 1}
                  : Place{polyline, PlaceKind::segmentStart, vertex};
}

std::optional<Vec2> pointIn(const Drawing& drawing, const Sourced<Place>& place) {
    const bool isWord = place.value.kind == PlaceKind::whole;
    if (drawing.id(place.value.entity).isNull()) {
        if (!isWord)
            requireEntity(drawing, {place.value.entity, place.column});
        return std::nullopt;
    }
    const Shape shape = drawing.shape(place.value.entity);
    const std::optional<Vec2> point = hasPlace(shape, place.value) ? pointAt(shape, place.value) : std::nullopt;
    if (!point && !isWord)
        throw RefusedWord({place.value.entity + " has no such point", {}, place.column});
    return point;
}

Edit parsed(EditText& words) {
    Edit edit = takeVerb(words).parse(words);
    words.expectEnd();
    return edit;
}

}  // namespace

Edit parse(std::string_view text) {
    EditText words(text);
    return parsed(words);
}

Edit parseFor(std::string_view text, const Drawing& drawing, std::vector<std::string>* remarks) {
    EditText words(text);
    words.findBy(
        {[&](const std::string& word, Vec2 point, std::size_t column) {
             return nameAt(drawing, word, point, column, remarks);
         },
         [&](const std::string& name) { return !drawing.id(name).isNull() || !drawing.constraintCalled(name).empty(); },
         [&](const std::string& polyline, int vertex) { return vertexOf(drawing, polyline, vertex); },
         [&](const Sourced<Place>& place) { return pointIn(drawing, place); }});
    try {
        return parsed(words);
    } catch (const PropertyFault& error) {
        refuseDimensionValue(error, drawing);
        refuseUnknown(error, drawing);
        refuseForeign(error, drawing);
        throw;
    } catch (const EditSyntaxError& error) {
        refuseUnknown(error, drawing);
        throw;
    }
}

}  // namespace holdfast::editing
