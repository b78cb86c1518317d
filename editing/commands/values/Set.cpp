#include <cmath>
#include <numbers>
#include <vector>

#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "editing/Evaluation.h"
#include "editing/Verbs.h"
#include "editing/commands/move/Moving.h"
#include "editing/commands/values/Properties.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"

namespace holdfast::editing {

namespace {

/// One change of a property, as the user typed it.
struct Change {
    std::string name;
    PropertyRow row;
    PropertyValue value;  ///< complete, also when only one coordinate was typed
    int coordinate = -1;  ///< 0 x, 1 y; -1: the whole point, or no point
};

bool isListed(Property property) {
    return property == Property::vertex || property == Property::control;
}

const PropertyRow& takeProperty(EditText& text, const std::string& name, const Shape& shape) {
    std::vector<std::string_view> words;
    for (const PropertyRow& row : propertiesOf(shape))
        words.push_back(row.word);
    const std::string what = "a property of " + name;
    const std::string word = text.oneOfWords(words, what);
    for (const PropertyRow& row : propertiesOf(shape))
        if (row.word == word)
            return row;
    return propertiesOf(shape).front();
}

int takeIndex(EditText& text, const Shape& shape) {
    const int index = text.integer("the number of the vertex or control point, counted from 0");
    const auto* polyline = std::get_if<PolylineShape>(&shape);
    const std::size_t count =
        polyline != nullptr ? polyline->vertices.size() : std::get<SplineShape>(shape).control.size();
    if (index < 0 || static_cast<std::size_t>(index) >= count)
        text.fail("expected a number from 0 to " + std::to_string(count - 1));
    return index;
}

/// "x,y", or one coordinate: "x 3".
void takePoint(EditText& text, Change& change, const Shape& shape) {
    change.value.point = propertyOf(shape, change.row.property, change.value.index).point;
    if (text.accept("x")) {
        change.coordinate = 0;
        change.value.point.x = text.number("the new x");
    } else if (text.accept("y")) {
        change.coordinate = 1;
        change.value.point.y = text.number("the new y");
    } else {
        change.value.point = text.point("the new point");
    }
}

Change takeChange(EditText& text, const EditContext& context) {
    Change change;
    change.name = takeEntity(text, context);
    refuseFixed(context, change.name);
    const Shape shape = context.drawing.shape(change.name);
    change.row = takeProperty(text, change.name, shape);
    if (isListed(change.row.property))
        change.value.index = takeIndex(text, shape);
    if (change.row.valueKind == ValueKind::point)
        takePoint(text, change, shape);
    else if (change.row.valueKind == ValueKind::angle)
        change.value.number = text.number("the new angle in degrees") * (std::numbers::pi / 180.0);
    else
        change.value.number = text.number("the new value");
    text.expectEnd();
    return change;
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
        return distance(unit(change.value.point - base), now.point - base) <= 1e-9;
    }
    if (change.row.valueKind == ValueKind::point)
        return distance(now.point, change.value.point) <= 1e-9 * size;
    if (change.row.valueKind == ValueKind::angle)
        return distance(polar(now.number), polar(change.value.number)) <= 1e-9;
    return std::abs(now.number - change.value.number) <= 1e-9 * size;
}

std::string spokenValue(const Change& change, const PropertyValue& value) {
    if (change.row.valueKind == ValueKind::point)
        return spoken(value.point);
    const bool isAngle = change.row.valueKind == ValueKind::angle;
    return spoken(isAngle ? value.number * (180.0 / std::numbers::pi) : value.number);
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
    if (std::abs(cross(along, change.value.point - from)) > 1e-9 * (1.0 + norm(change.value.point)))
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
                        spokenValue(change, change.value) + "; it would come to " +
                        spokenValue(change, propertyOf(now, change.row.property, change.value.index)));
}

/// True for what constraints may leave alone on a constrained entity: the host then changes it by itself.
bool canBeFree(const Change& change) {
    return change.row.property == Property::rotation || change.row.property == Property::vertex;
}

void runSet(EditText& text, EditContext& context) {
    const Change change = takeChange(text, context);
    const Shape before = context.drawing.shape(change.name);
    const Shape wanted = withProperty(before, change.row.property, change.value);
    refuseUnsound(change.name, wanted);
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
        throw EditError(spokenProperty(change) + " cannot become " + spokenValue(change, change.value) +
                        " while the entity is constrained");
    context.drawing.write(change.name, wanted);
}

}  // namespace

const EditVerb kSetVerb{"set", "set ENTITY PROPERTY VALUE", "set g5 radius 5",
                        "gives a property another value: an end, a centre, a radius, an angle, a vertex", &runSet};

}  // namespace holdfast::editing
