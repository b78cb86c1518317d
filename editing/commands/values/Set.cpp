#include <algorithm>
#include <cmath>
#include <vector>

#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "document/text/Suggest.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/values/Properties.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

/// One change of a property, as the user wants it.
struct Change {
    std::string name;
    PropertyRow row;
    PropertyValue value;  ///< complete, also when only one coordinate was given
    int coordinate = -1;  ///< 0 x, 1 y; -1: the whole point, or no point
};

const PropertyRow& requireProperty(const Set& edit, const Shape& shape) {
    const auto rows = propertiesOf(shape);
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const PropertyRow& row) { return row.property == edit.property.value; });
    if (found == rows.end())
        refuseProperty(edit.entity.value, shape, {std::string(wordOf(edit.property.value)), edit.property.column});
    return *found;
}

int requireIndex(const Sourced<int>& index, const Shape& shape) {
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    const std::size_t count =
        polyline != nullptr ? polyline->vertices.size() : std::get<SplineShape>(shape).control.size();
    if (index.value < 0 || static_cast<std::size_t>(index.value) >= count)
        throw RefusedWord({"expected a number from 0 to " + std::to_string(count - 1), {}, index.column});
    return index.value;
}

/// "x,y", or one coordinate: the other one stays.
void givePoint(Change& change, const Set& edit, const Shape& shape) {
    if (const auto* point = std::get_if<Vec2>(&edit.value)) {
        change.value.point = *point;
        return;
    }
    const auto& coordinate = std::get<Coordinate>(edit.value);
    const bool isX = coordinate.axis == Coordinate::Axis::x;
    change.value.point = propertyOf(shape, change.row.property, change.value.index).point;
    change.coordinate = isX ? 0 : 1;
    (isX ? change.value.point.x : change.value.point.y) = coordinate.value;
}

void giveValue(Change& change, const Set& edit, const Shape& shape) {
    const bool isPoint = change.row.valueKind == ValueKind::point;
    const auto* number = std::get_if<double>(&edit.value);
    if (isPoint == (number != nullptr))
        throw EditError("the " + std::string(change.row.word) + " of " + change.name + " takes " +
                        (isPoint ? "a point or one of its coordinates" : "a number"));
    if (isPoint)
        return givePoint(change, edit, shape);
    const bool isAngle = change.row.valueKind == ValueKind::angle;
    change.value.number = isAngle ? inRadians(*number) : *number;
}

/// The change, and the shape that it asks for.
struct WantedShape {
    Change change;
    Shape before, wanted;
};

WantedShape resolved(const Set& edit, const Drawing& drawing) {
    Change change;
    change.name = edit.entity.value;
    requireEntity(drawing, edit.entity);
    refuseFixed(drawing, change.name);
    const Shape shape = drawing.shape(change.name);
    change.row = requireProperty(edit, shape);
    if (isListed(change.row.property))
        change.value.index = requireIndex(edit.index, shape);
    giveValue(change, edit, shape);
    const Shape wanted = withProperty(shape, change.row.property, change.value);
    refuseUnsound(change.name, wanted);
    return {change, shape, wanted};
}

/// Tells the centre as the palette's list of vertices does, one coordinate a row.
bool reportVertex(ConstraintPropertiesCmdCenter& centre, const YxDbObjectId& id, const Change& change) {
    const int firstRow = 4 * change.value.index;
    const bool isSpline = change.row.property == Property::control;
    const double coordinates[] = {change.value.point.x, change.value.point.y, 0.0};
    for (int i = 0; i < (isSpline ? 3 : 2); ++i)
        if (centre.addExpanderOriInfo(id, 0, change.row.hostNumber, firstRow + i, coordinates[i]) < 0)
            return false;
    return true;
}

bool report(ConstraintPropertiesCmdCenter& centre, const YxDbObjectId& id, const Change& change) {
    if (isListed(change.row.property))
        return reportVertex(centre, id, change);
    if (change.row.valueKind != ValueKind::point && change.row.property != Property::direction)
        return centre.addOriInfo(id, change.row.hostNumber, 0, change.value.number);
    const Vec2 p = change.value.point;
    if (change.coordinate >= 0)
        return centre.addOriInfo(id, change.row.hostNumber, change.coordinate, change.coordinate == 0 ? p.x : p.y);
    return centre.addOriInfo(id, change.row.hostNumber, std::vector<double>{p.x, p.y, 0.0});
}

/// An angle is told as a point in its direction.
Change asReported(Change change, const Shape& shape) {
    if (change.row.property == Property::direction)
        change.value.point = propertyOf(shape, Property::start, 0).point + polar(change.value.number);
    return change;
}

bool isThere(const Shape& shape, const Change& change) {
    const PropertyValue now = propertyOf(shape, change.row.property, change.value.index);
    const double size = 1.0 + norm(change.value.point) + std::abs(change.value.number);
    if (change.row.property == Property::through) {
        const Vec2 base = propertyOf(shape, Property::start, 0).point;
        return distance(unit(change.value.point - base), now.point - base) <= kSameDirection;
    }
    if (change.row.valueKind == ValueKind::point)
        return distance(now.point, change.value.point) <= kSamePoint * size;
    if (change.row.valueKind == ValueKind::angle)
        return distance(polar(now.number), polar(change.value.number)) <= kSameDirection;
    return std::abs(now.number - change.value.number) <= kSamePoint * size;
}

std::string propertyInWords(const Change& change, const PropertyValue& value) {
    if (change.row.valueKind == ValueKind::point)
        return spoken(value.point);
    const bool isAngle = change.row.valueKind == ValueKind::angle;
    return spoken(isAngle ? inDegrees(value.number) : value.number);
}

std::string spokenProperty(const Change& change) {
    const std::string number = isListed(change.row.property) ? " " + std::to_string(change.value.index) : "";
    return "the " + std::string(change.row.word) + number + " of " + change.name;
}

void refuseSlidingOff(const ConstraintPropertiesCmdCenter& centre, const YxDbObjectId& id, const Change& change,
                      const Shape& shape) {
    if (change.row.valueKind != ValueKind::point && change.row.property != Property::direction)
        return;
    if (!centre.hasFixOfLine(id))
        return;
    const Vec2 from = pointAt(shape, 0.0), along = tangentAt(shape, 0.0);
    if (std::abs(cross(along, change.value.point - from)) > kSamePoint * (1.0 + norm(change.value.point)))
        throw EditError(change.name +
                        " carries a fixed constraint, so its points can only slide along it; give a "
                        "point on its line, or delete the constraint");
}

/// True when the evaluator has moved the entity. A turn may have reached it in the other sense, so that its failure
/// says nothing about what the user has typed.
bool isSolved(const EditContext& context, const Change& change) {
    try {
        evaluate(context);
        return true;
    } catch (const EditError&) {
        if (change.row.property != Property::direction && change.row.property != Property::through)
            throw;
        return false;
    }
}

/// The evaluator moves the entity. Where it read the change in another sense than it was meant (a turn clockwise
/// arrives as one the other way), the host writes the value itself and has the others follow.
void setConstrained(const EditContext& context, const Change& change, const Shape& wanted) {
    const DrawingChange before = context.drawing.change();
    if (isSolved(context, change) && isThere(context.drawing.shape(change.name), change))
        return;
    putBack(context, before);
    context.drawing.write(change.name, wanted);
    followPlaced(context, {change.name});
    refuseLess(context);
    const Shape now = context.drawing.shape(change.name);
    if (!isThere(now, change))
        throw EditError("the constraints do not let " + spokenProperty(change) + " be " +
                        propertyInWords(change, change.value) + "; it would come to " +
                        propertyInWords(change, propertyOf(now, change.row.property, change.value.index)));
}

/// True for what constraints may leave alone on a constrained entity: the host then changes it by itself.
bool canBeFree(const Change& change) {
    return change.row.property == Property::rotation || change.row.property == Property::vertex;
}

}  // namespace

void refuseProperty(const std::string& entity, const Shape& shape, const Sourced<std::string>& word) {
    std::vector<std::string_view> words;
    for (const PropertyRow& row : propertiesOf(shape))
        words.push_back(row.word);
    std::string message = "expected a property of " + entity + " (" + oneOf(words) + ")";
    if (word.column == 0)
        message += ", found \"" + word.value + "\"";
    throw RefusedWord({message, suggestion(word.value, words), word.column});
}

void require(const Set& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Set& edit, EditContext& context) {
    const auto [change, before, wanted] = resolved(edit, context.drawing);
    context.edited.push_back(change.name);
    if (change.row.hostNumber == 0 || !isConstrained(context, change.name))
        return context.drawing.write(change.name, wanted);
    const YxDbObjectId id = context.drawing.id(change.name);
    const Change told = asReported(change, before);
    ConstraintPropertiesCmdCenter centre;
    refuseSlidingOff(centre, id, told, before);
    if (report(centre, id, told)) {
        centre.addDataToWork();
        return setConstrained(context, change, wanted);
    }
    if (!canBeFree(change))
        throw EditError(spokenProperty(change) + " cannot become " + propertyInWords(change, change.value) +
                        " while the entity is constrained");
    context.drawing.write(change.name, wanted);
}

}  // namespace holdfast::editing
