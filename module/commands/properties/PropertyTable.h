#pragma once

#include <YxDbConstraints/LvEvaDataConverter.h>

namespace holdfast::module {

/// What the user types when a property is edited.
enum class Edited {
    position,  ///< the point that places the entity: position, centre, base point or start point
    otherEnd,  ///< the end point of a line
    secondPoint,
    radius,
    diameter,
    circumference,
    area,
    startAngle,
    endAngle,
    rotation,
    majorRadius,
    minorRadius,
    radiusRatio,
    vertex
};

/// One property of the host's palette that can be followed.
struct EditableProperty {
    LvEvaDataConverterGripEdit::EntType entType;
    int property;  ///< the palette's number
    Edited edited;
    int changeKind;  ///< what the evaluator calls the change; a vertex has its own number there
};

/// Null when the type has no such property.
const EditableProperty* findProperty(LvEvaDataConverterGripEdit::EntType entType, int property);

}  // namespace holdfast::module
