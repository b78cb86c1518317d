#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "document/text/DrawingError.h"
#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// False for kinds that other constraints and entities bring along.
bool canBeGiven(ConstraintType type);

/// The constraint that an edit names by its id or by the name of a dimension. RefusedWord with the nearest one for a
/// name that none has.
Constraint requireConstraint(const Drawing& drawing, const Name& name);

/// The same for a dimension that its author has not switched off; RefusedWord for any other constraint.
Constraint requireDimension(const Drawing& drawing, const Name& name);

/// The same for one that drives the drawing; EditError for one that is measured.
Constraint requireDriving(const Drawing& drawing, const Name& name);

/// RefusedWord for the name of something new that something else has, or that reads like a place of it.
void requireNewName(const Drawing& drawing, const Name& name);

/// What keeps a constraint from meaning something on the drawing, which need not have it.
std::optional<Fault> faultOn(const Drawing& drawing, const Constraint& constraint);

/// True for a word that begins like a number or is one of those that are none: "5mm", "nan".
bool isLikeNumber(std::string_view word);

/// The direction of a line, a straight segment or a line without ends, with length 1; nothing for another place.
std::optional<Vec2> directionIn(const Drawing& drawing, const Place& place);

/// A constraint with everything that hangs together with its entities.
Document surroundingsOf(const Drawing& drawing, const Constraint& constraint);

/// The same with a constraint that the drawing does not have, or has switched off, behind all others.
Document withNew(const Drawing& drawing, const Constraint& wanted);

/// What such a dimension measures.
double measureOf(const Drawing& drawing, const Constraint& wanted);

/// Whether a constraint of a part of the drawing holds as drawn.
bool isHeld(const Document& part, std::size_t number);

/// "c3 (horizontal a), c7 (length b, 12)": constraints of a part of the drawing by their ids.
std::string spokenConstraints(const Document& part, const std::vector<std::string>& ids);

}  // namespace holdfast::editing
